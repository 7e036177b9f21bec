#include "host/fft/fft.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

using namespace zentrix::host;

namespace {

template <class T>
using pixels = std::vector<std::complex<T>>;

template <class T>
pixels<T> noise(int width, int height)
{
    std::mt19937 random{static_cast<unsigned>(width * 1000 + height)};
    std::normal_distribution<T> normal;
    pixels<T> result(static_cast<std::size_t>(width * height));
    for (auto& value : result) value = {normal(random), normal(random)};
    return result;
}

/// The sum itself, at the signed frequency of each pixel of a centred spectrum.
template <class T>
pixels<T> summed(const pixels<T>& image, int width, int height)
{
    pixels<T> result(image.size());
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column) {
            const int u = column - width / 2, v = row - height / 2;
            std::complex<double> sum;
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    const double turns = (u * x % width) / double(width) + (v * y % height) / double(height);
                    sum += std::complex<double>{image[y * width + x]} * std::polar(1.0, -2 * std::numbers::pi * turns);
                }
            result[row * width + column] = std::complex<T>{sum};
        }
    return result;
}

template <class T>
double largest_difference(const pixels<T>& a, const pixels<T>& b)
{
    double largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i) largest = std::max<double>(largest, std::abs(a[i] - b[i]));
    return largest;
}

}  // namespace

template <class T>
class fft : public testing::Test
{};
using precisions = testing::Types<float, double>;
TYPED_TEST_SUITE(fft, precisions);

TYPED_TEST(fft, IsTheSumWithTheZeroFrequencyInTheMiddle)
{
    for (auto [width, height] : {std::pair{1, 1}, {1, 7}, {8, 1}, {2, 3}, {16, 8}, {15, 9}, {17, 32}, {31, 1}}) {
        const auto image = noise<TypeParam>(width, height);
        auto spectrum = image;
        forward_fft(spectrum.data(), width, height);
        EXPECT_LT(largest_difference(spectrum, summed(image, width, height)),
                  60 * std::numeric_limits<TypeParam>::epsilon() * std::sqrt(width * height))
            << width << " x " << height;
    }
}

TYPED_TEST(fft, BackwardUndoesForward)
{
    for (auto [width, height] : {std::pair{512, 256}, {255, 257}, {1, 1}, {97, 64}}) {
        const auto image = noise<TypeParam>(width, height);
        auto there_and_back = image;
        forward_fft(there_and_back.data(), width, height);
        backward_fft(there_and_back.data(), width, height);
        EXPECT_LT(largest_difference(there_and_back, image), 30 * std::numeric_limits<TypeParam>::epsilon());
    }
}
