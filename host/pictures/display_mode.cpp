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

/// The modulus; where the square fits into a double without the C library's care, which takes many times as long.
double modulus_of(std::complex<double> value)
{
    using limits = std::numeric_limits<double>;
    const double square = std::norm(value);
    return square > limits::min() && square < limits::max() ? std::sqrt(square) : std::abs(value);
}

float displayed(std::complex<double> value, display_mode mode)
{
    switch (mode) {
        case display_mode::real: return static_cast<float>(value.real());
        case display_mode::imaginary: return static_cast<float>(value.imag());
        case display_mode::modulus: return static_cast<float>(modulus_of(value));
        case display_mode::log_modulus:
        case display_mode::phase: break;  // in pairs
    }
    return 0;
}

using two = xsimd::batch<double, xsimd::sse2>;

/// Two pixels at a time: the C library of Windows takes eight times as long. `both(real, imaginary)` works on vectors;
/// where its result is not finite, as for zero, `lone(value)` decides.
template <class Both, class Lone>
std::vector<float> in_pairs(const image& pixels, Both both, Lone lone)
{
    std::vector<float> values;
    values.reserve(std::size_t{pixels.size(0)} * pixels.size(1));
    std::complex<double> former;
    bool waiting = false;
    const auto add = [&](std::complex<double> value, double result) {
        values.push_back(static_cast<float>(std::isfinite(result) ? result : lone(value)));
    };
    for_each_pixel_of_plane(pixels, 0, [&](std::complex<double> value) {
        if (waiting) {
            const two results = both(two{former.real(), value.real()}, two{former.imag(), value.imag()});
            add(former, results.get(0));
            add(value, results.get(1));
        }
        former = value;
        waiting = !waiting;
    });
    if (waiting) values.push_back(static_cast<float>(lone(former)));
    return values;
}

std::vector<float> phases(const image& pixels)
{
    return in_pairs(
        pixels, [](two re, two im) { return xsimd::atan2(im, re); },
        [](std::complex<double> value) { return std::arg(value); });
}

std::vector<float> log_moduli(const image& pixels)
{
    return in_pairs(
        pixels, [](two re, two im) { return 0.5 * xsimd::log(re * re + im * im); },
        [](std::complex<double> value) { return std::log(std::abs(value)); });
}

}  // namespace

std::optional<display_mode> parse_display_mode(const std::string& word)
{
    for (const auto& [name, mode] : mode_words)
        if (word == name) return mode;
    return std::nullopt;
}

std::vector<float> displayed_values(const image& pixels, display_mode mode)
{
    if (mode == display_mode::phase) return phases(pixels);
    if (mode == display_mode::log_modulus) return log_moduli(pixels);
    std::vector<float> values;
    values.reserve(std::size_t{pixels.size(0)} * pixels.size(1));
    for_each_pixel_of_plane(pixels, 0, [&](std::complex<double> value) { values.push_back(displayed(value, mode)); });
    return values;
}

}  // namespace zentrix::host
