#include "host/fft/fft.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <future>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

using namespace zentrix::host;

namespace {

using pixels = std::vector<std::complex<float>>;

pixels noise(int width, int height)
{
    std::mt19937 random{static_cast<unsigned>(width * 1000 + height)};
    std::normal_distribution<float> normal;
    pixels result(static_cast<std::size_t>(width * height));
    for (auto& value : result) value = {normal(random), normal(random)};
    return result;
}

/// The sum itself, at the signed frequency of each pixel of a centred spectrum.
pixels summed(const pixels& image, int width, int height)
{
    pixels result(image.size());
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column) {
            const int u = column - width / 2, v = row - height / 2;
            std::complex<double> sum;
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    const double turns = (u * x % width) / double(width) + (v * y % height) / double(height);
                    sum += std::complex<double>{image[y * width + x]} * std::polar(1.0, -2 * std::numbers::pi * turns);
                }
            result[row * width + column] = std::complex<float>{sum};
        }
    return result;
}

double largest_difference(const pixels& a, const pixels& b)
{
    double largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i) largest = std::max<double>(largest, std::abs(a[i] - b[i]));
    return largest;
}

}  // namespace

TEST(Fft, IsTheSumWithTheZeroFrequencyInTheMiddle)
{
    for (auto [width, height] :
         {std::pair{1, 1}, {1, 7}, {8, 1}, {2, 3}, {16, 8}, {15, 9}, {17, 32}, {31, 1}, {33, 6}}) {
        const auto image = noise(width, height);
        auto spectrum = image;
        forward_fft(spectrum.data(), width, height);
        EXPECT_LT(largest_difference(spectrum, summed(image, width, height)),
                  60 * std::numeric_limits<float>::epsilon() * std::sqrt(width * height))
            << width << " x " << height;
    }
}

TEST(Fft, BackwardUndoesForward)
{
    for (auto [width, height] : {std::pair{512, 256}, {255, 257}, {1, 1}, {97, 64}, {5, 66000}, {1021, 1031}}) {
        const auto image = noise(width, height);
        auto there_and_back = image;
        forward_fft(there_and_back.data(), width, height);
        backward_fft(there_and_back.data(), width, height);
        EXPECT_LT(largest_difference(there_and_back, image), 30 * std::numeric_limits<float>::epsilon());
    }
}

TEST(Fft, OfManyThreadsIsThatOfOneLineAfterTheOther)
{
    constexpr int width = 1021, height = 1031;  // prime, and enough pixels for several threads
    auto image = noise(width, height), by_lines = image;
    forward_fft(image.data(), width, height);
    fft_plan row{width, 1}, column{1, height};
    for (int y = 0; y < height; ++y) row.forward(&by_lines[y * width]);
    pixels line(height);
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) line[y] = by_lines[y * width + x];
        column.forward(line.data());
        for (int y = 0; y < height; ++y) by_lines[y * width + x] = line[y];
    }
    EXPECT_EQ(largest_difference(image, by_lines), 0);
}

TEST(Fft, TellsWhetherImagesAreFinite)
{
    fft_plan plan{70, 20};
    const auto is_finite = [&](std::complex<float> one, std::complex<float> others) {
        pixels before(70 * 20, others), spectrum(70 * 20);
        before[69] = spectrum[40 * 20 + 10] = one;
        return std::pair{plan.forward(before.data()), plan.backward(spectrum.data())};
    };
    constexpr float infinite = std::numeric_limits<float>::infinity(), largest = std::numeric_limits<float>::max();
    EXPECT_EQ(is_finite({1, -1}, {2, 3}), std::pair(true, true));
    EXPECT_EQ(is_finite({0, -infinite}, {}), std::pair(false, false));
    EXPECT_EQ(is_finite({std::nanf(""), 0}, {}), std::pair(false, false));
    EXPECT_EQ(is_finite({largest, largest}, {largest, 0}), std::pair(true, false))
        << "turned by 45 degrees, it is too large";
}

TEST(Fft, ThreadsMayTransformDifferentSizesAtOnce)
{
    const auto spectrum = [](int width) {
        auto image = noise(width, 3);
        forward_fft(image.data(), width, 3);
        return image;
    };
    std::vector<std::future<bool>> others;
    for (int width : {60, 61, 62, 63, 64, 65})
        others.push_back(std::async(std::launch::async, [=, alone = spectrum(width)] {
            bool same = true;
            for (int turn = 0; turn < 40; ++turn) same = spectrum(width) == alone && same;
            return same;
        }));
    for (auto& other : others) EXPECT_TRUE(other.get());
}
