#include "host/pictures/display_mode.h"

#include <cmath>
#include <complex>
#include <limits>
#include <utility>
#include <xsimd/xsimd.hpp>

#include "host/pictures/for_each_pixel.h"

namespace zentrix::host {

namespace {

constexpr std::pair<const char*, display_mode> mode_words[] = {{"real", display_mode::real},
                                                               {"imaginary", display_mode::imaginary},
                                                               {"modulus", display_mode::modulus},
                                                               {"log", display_mode::log_modulus},
                                                               {"phase", display_mode::phase}};

/// std::abs, several times as fast where the square of the modulus is neither too small nor too large for a double.
double modulus_of(std::complex<double> value)
{
    using limits = std::numeric_limits<double>;
    const double square = std::norm(value);
    return square > limits::min() && square < limits::max() ? std::sqrt(square) : std::abs(value);
}

using two = xsimd::batch<double, xsimd::sse2>;

/// Two pixels at a time, because the C library of Windows takes eight times as long. `both(real, imaginary)` works on
/// vectors; where its result is not finite, as for zero, `one(value)` is used.
template <class Both, class One>
void in_pairs(const image& pixels, std::uint32_t y, float* values, Both both, One one)
{
    std::complex<double> pair[2];
    std::uint32_t count = 0;
    const auto compute = [&](std::uint32_t used) {
        const two results = both(two{pair[0].real(), pair[1].real()}, two{pair[0].imag(), pair[1].imag()});
        for (std::uint32_t i = 0; i < used; ++i)
            *values++ = static_cast<float>(std::isfinite(results.get(i)) ? results.get(i) : one(pair[i]));
    };
    for_each_pixel_of_row(pixels, y, 0, [&](std::complex<double> value) {
        pair[count++ % 2] = value;
        if (count % 2 == 0) compute(2);
    });
    if (count % 2 != 0) compute(1);
}

}  // namespace

std::optional<display_mode> parse_display_mode(const std::string& word)
{
    for (const auto& [name, mode] : mode_words)
        if (word == name) return mode;
    return std::nullopt;
}

void displayed_row(const image& pixels, std::uint32_t y, display_mode mode, float* values)
{
    const auto each = [&](auto value_of) {
        for_each_pixel_of_row(pixels, y, 0, [&](std::complex<double> pixel) { *values++ = value_of(pixel); });
    };
    using complex = std::complex<double>;
    switch (mode) {
        case display_mode::real: return each([](complex pixel) { return static_cast<float>(pixel.real()); });
        case display_mode::imaginary: return each([](complex pixel) { return static_cast<float>(pixel.imag()); });
        case display_mode::modulus: return each([](complex pixel) { return static_cast<float>(modulus_of(pixel)); });
        case display_mode::log_modulus:
            return in_pairs(
                pixels, y, values, [](two re, two im) { return 0.5 * xsimd::log(re * re + im * im); },
                [](complex pixel) { return std::log(std::abs(pixel)); });
        case display_mode::phase:
            return in_pairs(
                pixels, y, values, [](two re, two im) { return xsimd::atan2(im, re); },
                [](complex pixel) { return std::arg(pixel); });
    }
}

std::vector<float> displayed_values(const image& pixels, display_mode mode)
{
    std::vector<float> values(std::size_t{pixels.size(0)} * pixels.size(1));
    for (std::uint32_t y = 0; y < pixels.size(1); ++y)
        displayed_row(pixels, y, mode, &values[std::size_t{y} * pixels.size(0)]);
    return values;
}

}  // namespace zentrix::host
