#include "lens/wave_criteria.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace zentrix::lens {

namespace {

/// Sums in double precision of many terms, in lanes that a compiler can keep in vector registers.
class lanes
{
  public:
    static constexpr std::size_t count = 8;

    void add(std::size_t lane, double term) { sums_[lane] += term; }
    double total() const
    {
        double sum = 0;
        for (const double lane : sums_) sum += lane;
        return sum;
    }

  private:
    double sums_[count] = {};
};

/// The sum of term(i) for 0 <= i < count.
template <class Term>
double sum_of(std::size_t count, const Term& term)
{
    lanes sums;
    std::size_t i = 0;
    for (; i + lanes::count <= count; i += lanes::count)
        for (std::size_t lane = 0; lane < lanes::count; ++lane) sums.add(lane, term(i + lane));
    for (; i < count; ++i) sums.add(0, term(i));
    return sums.total();
}

float modulus(std::complex<float> pixel)
{
    return std::sqrt(pixel.real() * pixel.real() + pixel.imag() * pixel.imag());
}

}  // namespace

double modulus_variance(const weighted_wave& wave, std::complex<float>* gradient)
{
    const auto* const pixels = wave.pixels;
    const auto* const weights = wave.weights;
    const std::size_t count = wave.count;
    const double mean = sum_of(count, [&](std::size_t i) { return double{weights[i] * modulus(pixels[i])}; });
    if (!(mean > 0)) return 0;
    const auto centre = static_cast<float>(mean);
    const double variance = sum_of(count, [&](std::size_t i) {
        const float off = modulus(pixels[i]) - centre;
        return double{weights[i] * off * off};
    });
    if (gradient != nullptr) {
        // d var / d m = 2 w (m - mean), d mean / d m = w
        const auto slope = static_cast<float>(2 / (mean * mean));
        const auto shift = static_cast<float>(mean + variance / mean);
        constexpr float tiny = 1e-30F;
        for (std::size_t i = 0; i < count; ++i) {
            const float size = modulus(pixels[i]);
            const float factor = slope * weights[i] * (size - shift) / std::max(size, tiny);
            gradient[i] = {pixels[i].real() * factor, pixels[i].imag() * factor};
        }
    }
    return variance / (mean * mean);
}

double phase_skewness(const weighted_wave& wave, std::complex<float>* gradient)
{
    const auto* const pixels = wave.pixels;
    const auto* const weights = wave.weights;
    const std::size_t count = wave.count;
    const std::complex<double> mean_pixel{
        sum_of(count, [&](std::size_t i) { return double{weights[i] * pixels[i].real()}; }),
        sum_of(count, [&](std::size_t i) { return double{weights[i] * pixels[i].imag()}; })};
    const double size = std::abs(mean_pixel);
    if (!(size > 0)) return 0;
    const auto c = static_cast<float>(mean_pixel.real() / size), s = static_cast<float>(mean_pixel.imag() / size);
    std::vector<float> phases(count);
    for (std::size_t i = 0; i < count; ++i) {
        const float x = pixels[i].real(), y = pixels[i].imag();
        phases[i] = std::atan2(y * c - x * s, x * c + y * s);
    }
    const double mean = sum_of(count, [&](std::size_t i) { return double{weights[i] * phases[i]}; });
    const auto centre = static_cast<float>(mean);
    const double variance = sum_of(count, [&](std::size_t i) {
        const float off = phases[i] - centre;
        return double{weights[i] * off * off};
    });
    if (!(variance > 0)) return 0;
    const double third = sum_of(count, [&](std::size_t i) {
        const float off = phases[i] - centre;
        return double{weights[i] * off * off * off};
    });
    const double skewness = third / (variance * std::sqrt(variance));
    if (gradient != nullptr) {
        const auto inverse = static_cast<float>(1 / std::sqrt(variance));
        const auto skew = static_cast<float>(skewness);
        // A pixel whose modulus is near zero has no phase; it shall not decide.
        const auto least = static_cast<float>(0.01 * size * size);
        for (std::size_t i = 0; i < count; ++i) {
            const float x = pixels[i].real(), y = pixels[i].imag();
            const float off = (phases[i] - centre) * inverse;
            const float slope = 3 * weights[i] * inverse * (off * off - 1 - skew * off);
            const float factor = slope / std::max(x * x + y * y, least);
            gradient[i] = {-y * factor, x * factor};
        }
    }
    return skewness;
}

std::vector<float> slopes_of_modulus(const std::complex<float>* pixels, std::size_t width, std::size_t height)
{
    std::vector<float> moduli(width * height), slopes(width * height);
    for (std::size_t i = 0; i < moduli.size(); ++i) moduli[i] = modulus(pixels[i]);
    for (std::size_t y = 0; y < height; ++y) {
        const float* const row = moduli.data() + y * width;
        const float* const above = moduli.data() + (y == 0 ? height - 1 : y - 1) * width;
        const float* const below = moduli.data() + (y + 1 == height ? 0 : y + 1) * width;
        for (std::size_t x = 0; x < width; ++x) {
            const float dx = row[x + 1 == width ? 0 : x + 1] - row[x == 0 ? width - 1 : x - 1];
            const float dy = below[x] - above[x];
            slopes[y * width + x] = std::sqrt(dx * dx + dy * dy);
        }
    }
    return slopes;
}

double tamura_of_gradient(const weighted_wave& wave, std::size_t width, std::size_t height)
{
    const auto* const weights = wave.weights;
    const std::size_t count = wave.count;
    const auto slopes = slopes_of_modulus(wave.pixels, width, height);
    const double mean = sum_of(count, [&](std::size_t i) { return double{weights[i] * slopes[i]}; });
    if (!(mean > 0)) return 0;
    const double variance = sum_of(count, [&](std::size_t i) {
        const double off = slopes[i] - mean;
        return weights[i] * off * off;
    });
    return std::sqrt(std::sqrt(variance) / mean);
}

}  // namespace zentrix::lens
