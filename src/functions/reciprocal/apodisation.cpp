#include "functions/reciprocal/apodisation.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "image/errors.h"
#include "image/overlap.h"
#include "numeric/complex.h"

namespace qorv::functions {
namespace {

using dm::image;
using numeric::product;
using numeric::rounded;
using numeric::widened;
using std::numbers::pi;

/// a0 - a1 cos(t) + a2 cos(2t) - ... with t = 2 pi n / size.
double cosine_sum(std::initializer_list<double> terms, std::ptrdiff_t n, std::ptrdiff_t size)
{
    double sum = 0, sign = 1;
    std::ptrdiff_t multiple = 0;  // k * n modulo the size: the cosine is most accurate for small angles
    for (const double term : terms) {
        sum += sign * term * std::cos(2 * pi * static_cast<double>(multiple) / static_cast<double>(size));
        sign = -sign;
        multiple = (multiple + n) % size;
    }
    return sum;
}

double tukey_at(std::ptrdiff_t n, std::ptrdiff_t size)
{
    constexpr double taper = 0.25;  // of the width, at each end
    const double from_edge = static_cast<double>(std::min(n, size - n)) / static_cast<double>(size);
    return from_edge < taper ? 0.5 * (1 - std::cos(pi * from_edge / taper)) : 1.0;
}

/// Modified Bessel function of the first kind, order 0, by its power series, which has positive terms only.
double bessel_i0(double x)
{
    const double quarter_square = x * x / 4;
    double sum = 1, term = 1;
    for (int k = 1; term > sum * 1e-17; ++k) {
        term *= quarter_square / (static_cast<double>(k) * k);
        sum += term;
    }
    return sum;
}

double kaiser_at(std::ptrdiff_t n, std::ptrdiff_t size)
{
    constexpr double beta = 8.6;  // side lobes about as low as the Blackman window's
    const double from_middle = 2 * static_cast<double>(n) / static_cast<double>(size) - 1;
    return bessel_i0(beta * std::sqrt(1 - from_middle * from_middle)) / bessel_i0(beta);
}

double sine_at(std::ptrdiff_t n, std::ptrdiff_t size)
{
    const auto from_edge =
        static_cast<double>(std::min(n, size - 1 - n));  // the same number in both halves, which makes them symmetric
    return std::sin(pi * (from_edge + 0.5) / static_cast<double>(size));
}

double window_at(window shape, std::ptrdiff_t n, std::ptrdiff_t size)
{
    switch (shape) {
        case window::hann: return cosine_sum({0.5, 0.5}, n, size);
        case window::hamming: return cosine_sum({0.54, 0.46}, n, size);
        case window::blackman: return cosine_sum({0.42, 0.5, 0.08}, n, size);
        case window::tukey: return tukey_at(n, size);
        case window::kaiser: return kaiser_at(n, size);
        case window::flat_top:
            return cosine_sum({0.21557895, 0.41663158, 0.277263158, 0.083578947, 0.006947368}, n, size);
        case window::blackman_harris: return cosine_sum({0.35875, 0.48829, 0.14128, 0.01168}, n, size);
        case window::nuttall: return cosine_sum({0.3635819, 0.4891775, 0.1365995, 0.0106411}, n, size);
        case window::sine: return sine_at(n, size);
        case window::vorbis: return std::sin(pi / 2 * sine_at(n, size) * sine_at(n, size));
    }
    return 1;
}

}  // namespace

window ft_window_of(std::int32_t mode)
{
    dm::require(mode >= 0 && mode <= static_cast<std::int32_t>(window::nuttall), dm::errors::invalid_mode);
    return static_cast<window>(mode);
}

std::vector<double> window_curve(window shape, std::ptrdiff_t size)
{
    if (size == 1) return {1.0};
    std::vector<double> curve;
    for (std::ptrdiff_t n = 0; n < size; ++n) curve.push_back(window_at(shape, n, size));
    return curve;
}

template <class From, class To, class Number>
void apply_window(const image<const From>& source, window shape, const window_offsets<Number>& offsets,
                  const image<To>& destination)
{
    dm::require(source.sizes() == destination.sizes(), dm::errors::different_size);
    dm::require_in_place_or_apart(source, destination);
    const auto along_x = window_curve(shape, source.width());
    const auto along_y = window_curve(shape, source.height());
    const auto along_z = window_curve(shape, source.depth());
    const auto [a, b, c] = offsets;
    for (std::ptrdiff_t z = 0; z < source.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < source.height(); ++y) {
            const double row = along_y[static_cast<std::size_t>(y)] * along_z[static_cast<std::size_t>(z)];
            for (std::ptrdiff_t x = 0; x < source.width(); ++x) {
                const double factor = along_x[static_cast<std::size_t>(x)] * row;
                destination(x, y, z) = rounded<To>(product(product(widened(source(x, y, z)) - a, factor), b) + c);
            }
        }
}

#define INSTANTIATE(From, To, Number) \
    template void apply_window(const image<const From>&, window, const window_offsets<Number>&, const image<To>&)
INSTANTIATE(float, float, double);
INSTANTIATE(double, double, double);
INSTANTIATE(std::complex<float>, std::complex<float>, double);
INSTANTIATE(std::complex<double>, std::complex<double>, double);
INSTANTIATE(float, std::complex<float>, std::complex<double>);
INSTANTIATE(double, std::complex<double>, std::complex<double>);
INSTANTIATE(std::complex<float>, std::complex<float>, std::complex<double>);
INSTANTIATE(std::complex<double>, std::complex<double>, std::complex<double>);
#undef INSTANTIATE

}  // namespace qorv::functions
