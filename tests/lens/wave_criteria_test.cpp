#include "lens/wave_criteria.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>

namespace {

using namespace zentrix::lens;

struct sample
{
    std::vector<std::complex<float>> pixels;
    std::vector<float> weights;

    weighted_wave wave() const { return {pixels.data(), weights.data(), pixels.size()}; }
};

/// Not a multiple of the vector's length; unequal weights.
sample some_wave()
{
    sample one;
    std::mt19937 random{3};
    std::normal_distribution<float> normal;
    for (int i = 0; i < 103; ++i) {
        one.pixels.push_back(std::polar(2 + 0.2F * normal(random), 1 + 0.3F * std::exp(0.8F * normal(random))));
        one.weights.push_back(1 + 0.5F * std::sin(static_cast<float>(i)));
    }
    const float sum = std::accumulate(one.weights.begin(), one.weights.end(), 0.0F);
    for (float& weight : one.weights) weight /= sum;
    return one;
}

TEST(WaveCriteria, GradientsAreDerivatives)
{
    for (const auto criterion : {modulus_variance, phase_skewness}) {
        sample one = some_wave();
        std::vector<std::complex<float>> gradient(one.pixels.size());
        criterion(one.wave(), gradient.data());
        for (const std::size_t at : {std::size_t{0}, std::size_t{50}, one.pixels.size() - 1})
            for (const std::complex<float> change : {std::complex{0.01F, 0.0F}, std::complex{0.0F, 0.01F}}) {
                const auto here = one.pixels[at];
                one.pixels[at] = here + change;
                const double ahead = criterion(one.wave(), nullptr);
                one.pixels[at] = here - change;
                const double behind = criterion(one.wave(), nullptr);
                one.pixels[at] = here;
                const double expected =
                    (std::conj(std::complex<double>{gradient[at]}) * std::complex<double>{change}).real();
                EXPECT_NEAR((ahead - behind) / 2, expected, 0.02 * std::abs(expected) + 2e-7) << at;
            }
    }
}

TEST(WaveCriteria, DoNotDependOnPhaseAndScaleOfTheWave)
{
    const sample one = some_wave();
    sample other = one;
    for (auto& pixel : other.pixels) pixel *= std::polar(3.0F, 2.5F);
    EXPECT_NEAR(modulus_variance(other.wave(), nullptr), modulus_variance(one.wave(), nullptr), 1e-6);
    EXPECT_NEAR(phase_skewness(other.wave(), nullptr), phase_skewness(one.wave(), nullptr), 1e-4);
    EXPECT_GT(phase_skewness(one.wave(), nullptr), 0.5);  // peaks are positive
    EXPECT_NEAR(modulus_variance(one.wave(), nullptr), 0.01, 0.003);
}

TEST(WaveCriteria, TamuraIsGreatestForTheSharpestEdges)
{
    constexpr std::size_t width = 24, height = 10;
    const auto edges = [&](float softness) {
        sample one;
        for (std::size_t i = 0; i < width * height; ++i)
            one.pixels.emplace_back(0, 2 + std::tanh((std::abs(static_cast<float>(i % width) - 11.5F) - 5) / softness));
        one.weights.assign(width * height, 1.0F / (width * height));
        return tamura_of_gradient(one.wave(), width, height);
    };
    EXPECT_GT(edges(0.5F), 1.2 * edges(2));
    EXPECT_GT(edges(2), 1.1 * edges(4));
    const std::complex<float> slope[] = {1, 2, 4, 1, 2, 4, 4, 5, 7};
    const auto found = slopes_of_modulus(slope, 3, 3);
    const float along[] = {2, 3, 1}, down[] = {3, 3, 0};  // from the other side, too
    for (std::size_t i = 0; i < found.size(); ++i)
        EXPECT_FLOAT_EQ(found[i], std::hypot(along[i % 3], down[i / 3])) << i;
}

}  // namespace
