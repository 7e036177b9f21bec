#include "host/correction/cut_spectrum.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <numeric>
#include <vector>

namespace zentrix::host {

namespace {

using pixel = std::complex<float>;

bool has_small_primes(int number)
{
    for (const int prime : {2, 3, 5, 7})
        while (number % prime == 0) number /= prime;
    return number == 1;
}

int next_with_small_primes(int least, int most)
{
    for (int number = least; number < most; ++number)
        if (has_small_primes(number)) return number;
    return most;
}

double area(spectrum_size size) { return static_cast<double>(size.width) * size.height; }

const pixel* first_of_middle(const image& spectrum, int width, int height, int y)
{
    const int all_columns = static_cast<int>(spectrum.size(0)), all_rows = static_cast<int>(spectrum.size(1));
    const std::ptrdiff_t row = all_rows / 2 - height / 2 + y;
    return static_cast<const pixel*>(spectrum.data()) + row * all_columns + (all_columns / 2 - width / 2);
}

/// The factors along one axis that move pixels from the corner of their part of the wave to the middle.
std::vector<std::complex<double>> shift_along(int whole, int multiplied, int transformed)
{
    const double offset = (static_cast<double>(whole) / transformed - 1) / 2;  // pixels of the wave
    std::vector<std::complex<double>> factors;
    for (int i = 0; i < multiplied; ++i)
        factors.push_back(std::polar(1.0, 2 * std::numbers::pi * (i - multiplied / 2) * offset / whole));
    return factors;
}

}  // namespace

spectrum_cut cut_for(spectrum_size whole, double zoom)
{
    constexpr double worth_cutting = 0.75, nearly_equal = 1.25;  // of an area
    const auto side = [&](int length) {
        const auto least = static_cast<int>(std::ceil(std::clamp(zoom * length, 1.0, static_cast<double>(length))));
        return next_with_small_primes(least, length);
    };
    const spectrum_size transformed{side(whole.width), side(whole.height)};
    if (area(transformed) > worth_cutting * area(whole)) return {whole, whole};
    const int divisor = std::gcd(whole.width, whole.height);
    const spectrum_size unit{whole.width / divisor, whole.height / divisor};
    const auto covering = [](int length, int part) { return (length + part - 1) / part; };
    const int least = std::max(covering(transformed.width, unit.width), covering(transformed.height, unit.height));
    const auto times = [&](int count) { return spectrum_size{count * unit.width, count * unit.height}; };
    for (int count = least; count <= divisor && area(times(count)) <= nearly_equal * area(transformed); ++count)
        if (const auto size = times(count); has_small_primes(size.width) && has_small_primes(size.height))
            return {size, size};
    return {times(std::min(least, divisor)), transformed};
}

image_ref middle_of(const image& spectrum, const spectrum_cut& cut)
{
    const spectrum_size whole{static_cast<int>(spectrum.size(0)), static_cast<int>(spectrum.size(1))};
    const auto [width, height] = cut.multiplied;
    const std::uint32_t sizes[] = {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
    auto middle = image::create("middle of the spectrum", spectrum.code(), sizes);
    const auto along_x = shift_along(whole.width, width, cut.transformed.width),
               along_y = shift_along(whole.height, height, cut.transformed.height);
    const double scale = area(cut.transformed) / area(whole);
    auto* to = static_cast<pixel*>(middle->data());
    for (int y = 0; y < height; ++y) {
        const pixel* from = first_of_middle(spectrum, width, height, y);
        const std::complex<double> of_row = scale * along_y[static_cast<std::size_t>(y)];
        for (const auto of_column : along_x) *to++ = pixel{std::complex<double>{*from++} * (of_row * of_column)};
    }
    return middle;
}

void copy_middle(const image& spectrum, image& to)
{
    const int width = static_cast<int>(to.size(0)), height = static_cast<int>(to.size(1));
    auto* const pixels = static_cast<pixel*>(to.data());
    for (int y = 0; y < height; ++y)
        std::copy_n(first_of_middle(spectrum, width, height, y), width, pixels + std::ptrdiff_t{y} * width);
}

}  // namespace zentrix::host
