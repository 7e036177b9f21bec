#include "host/pictures/display_mode.h"

#include <algorithm>
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

/// Real and imaginary parts of some pixels, few enough for the first-level cache.
template <class Real>
struct pixel_parts
{
    static constexpr std::size_t capacity = 256;
    using lanes = xsimd::batch<Real, xsimd::sse2>;

    std::size_t count = 0;
    alignas(lanes) Real real[capacity], imaginary[capacity];

    std::complex<double> pixel(std::size_t i) const { return {real[i], imaginary[i]}; }
};

/// Several pixels at a time, because the C library of Windows takes eight times as long. `lanes_of(real, imaginary)`
/// works on vectors; where its result is not finite, as for zero, `value_of(pixel)` is used.
template <class Real, class Lanes, class Value>
void in_lanes(pixel_parts<Real>& from, float* values, Lanes lanes_of, Value value_of)
{
    using lanes = typename pixel_parts<Real>::lanes;
    for (std::size_t i = from.count; i % lanes::size != 0; ++i) from.real[i] = from.imaginary[i] = 1;
    const lanes zero(Real{0});
    auto is_finite = zero == zero;
    alignas(lanes) Real results[pixel_parts<Real>::capacity];
    for (std::size_t i = 0; i < from.count; i += lanes::size) {
        const lanes result = lanes_of(lanes::load_aligned(from.real + i), lanes::load_aligned(from.imaginary + i));
        is_finite = is_finite & (result - result == zero);
        result.store_aligned(results + i);
    }
    for (std::size_t i = 0; i < from.count; ++i) values[i] = static_cast<float>(results[i]);
    if (xsimd::all(is_finite)) return;
    for (std::size_t i = 0; i < from.count; ++i)
        if (!std::isfinite(results[i])) values[i] = static_cast<float>(value_of(from.pixel(i)));
}

/// std::abs is several times slower. The square of a modulus that a float can hold is in the range of a double.
template <class Real>
void show_modulus(const pixel_parts<Real>& from, float* values)
{
    for (std::size_t i = 0; i < from.count; ++i) values[i] = static_cast<float>(std::sqrt(std::norm(from.pixel(i))));
}

template <class Real>
void show(pixel_parts<Real>& from, display_mode mode, float* values)
{
    using lanes = typename pixel_parts<Real>::lanes;
    using limits = std::numeric_limits<Real>;
    const auto narrowed = [](Real value) { return static_cast<float>(value); };
    switch (mode) {
        case display_mode::real: std::transform(from.real, from.real + from.count, values, narrowed); return;
        case display_mode::imaginary:
            std::transform(from.imaginary, from.imaginary + from.count, values, narrowed);
            return;
        case display_mode::modulus: return show_modulus(from, values);
        case display_mode::log_modulus:
            return in_lanes(
                from, values,
                [](lanes re, lanes im) {
                    const lanes square = re * re + im * im;
                    const auto is_exact = square > lanes(limits::min()) && square < lanes(limits::max());
                    return select(is_exact, lanes(Real{0.5}) * xsimd::log(square), lanes(limits::quiet_NaN()));
                },
                [](std::complex<double> pixel) { return std::log(std::abs(pixel)); });
        case display_mode::phase:
            return in_lanes(
                from, values, [](lanes re, lanes im) { return xsimd::atan2(im, re); },
                [](std::complex<double> pixel) { return std::arg(pixel); });
    }
}

/// `pixel(i)` returns number i of `count` pixels.
template <class Pixel>
void show_all(std::size_t count, Pixel pixel, display_mode mode, float* values)
{
    using real = decltype(std::real(pixel(0)));  // of float for float, of double for doubles and integers
    pixel_parts<real> part;
    for (std::size_t start = 0; start < count; start += part.count) {
        part.count = std::min(count - start, pixel_parts<real>::capacity);
        for (std::size_t i = 0; i < part.count; ++i) {
            const auto one = pixel(start + i);
            part.real[i] = static_cast<real>(std::real(one));
            part.imaginary[i] = static_cast<real>(std::imag(one));
        }
        show(part, mode, values + start);
    }
}

}  // namespace

std::optional<display_mode> parse_display_mode(const std::string& word)
{
    for (const auto& [name, mode] : mode_words)
        if (word == name) return mode;
    return std::nullopt;
}

const char* word_for(display_mode mode)
{
    for (const auto& [name, named] : mode_words)
        if (named == mode) return name;
    return "";
}

void displayed_row(const image& pixels, std::uint32_t y, display_mode mode, float* values)
{
    with_numbers_of(pixels, [&](const auto* origin) {
        const auto* const row = origin + y * pixels.stride(1);
        const std::ptrdiff_t stride = pixels.stride(0);
        const auto column = [](std::size_t x) { return static_cast<std::ptrdiff_t>(x); };
        if (stride == 1)  // apart, so that the compiler makes vectors
            show_all(
                pixels.size(0), [=](std::size_t x) { return row[column(x)]; }, mode, values);
        else
            show_all(
                pixels.size(0), [=](std::size_t x) { return row[column(x) * stride]; }, mode, values);
    });
}

void displayed_values(const image& pixels, std::span<const pixel_place> places, display_mode mode, float* values)
{
    with_numbers_of(pixels, [&](const auto* origin) {
        const std::ptrdiff_t right = pixels.stride(0), down = pixels.stride(1);
        const auto pixel = [=](std::size_t i) { return origin[places[i].x * right + places[i].y * down]; };
        show_all(places.size(), pixel, mode, values);
    });
}

}  // namespace zentrix::host
