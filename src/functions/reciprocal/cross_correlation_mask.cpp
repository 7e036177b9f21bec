#include "functions/reciprocal/cross_correlation_mask.h"

#include <cmath>
#include <complex>
#include <cstddef>
#include <limits>
#include <numbers>
#include <vector>

#include "image/errors.h"
#include "image/overlap.h"
#include "numeric/complex.h"

namespace qorv::functions {
namespace {

using dm::image;
using numeric::product;
using numeric::rounded;
using wide = std::complex<double>;

/// Products of floats cannot overflow as doubles, nor can their squares; those of doubles can.
template <class Real>
double modulus(wide v)
{
    if constexpr (sizeof(Real) < sizeof(double))
        return std::sqrt(v.real() * v.real() + v.imag() * v.imag());
    else
        return std::hypot(v.real(), v.imag());
}

/// The factor that changes an element of modulus m to the modulus of the mode.
double scale_of(double m, correlation_mode mode)
{
    if (mode == correlation_mode::plain) return 1;
    if (m < std::numeric_limits<double>::min()) return 0;  // 1 / m would overflow
    return mode == correlation_mode::phase_only ? 1 / m : 1 / std::sqrt(m);
}

wide defocus_phase(double square, double defocus)
{
    const double angle = std::numbers::pi * defocus * square;
    return {std::cos(angle), std::sin(angle)};
}

}  // namespace

correlation_mode correlation_mode_of(std::int32_t number)
{
    dm::require(number >= 0 && number <= 2, dm::errors::invalid_mode);
    return static_cast<correlation_mode>(number);
}

template <class T>
double cross_correlation_mask(const image<const T>& target, const image<const T>& reference,
                              const correlation_filter& filter, correlation_mode mode, const image<T>& destination)
{
    using real = numeric::real_of<T>;
    const auto& [grid, defocus, radius] = filter;
    dm::require(target.sizes() == reference.sizes() && target.sizes() == destination.sizes(),
                dm::errors::different_size);
    dm::require(std::isfinite(grid.scale_x) && std::isfinite(grid.scale_y) && std::isfinite(defocus) && radius >= 0,
                dm::errors::parameters_invalid);
    dm::require_in_place_or_apart(target, destination);
    dm::require_in_place_or_apart(reference, destination);

    std::vector<double> squares;
    std::vector<wide> phases;  // g^2 is a sum over the axes, so its phase factor is a product
    for (std::ptrdiff_t x = 0; x < target.width(); ++x) {
        squares.push_back(grid.square_x(x));
        phases.push_back(defocus_phase(squares.back(), defocus));
    }
    double sum = 0;
    std::int64_t count = 0;
    for (std::ptrdiff_t z = 0; z < target.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < target.height(); ++y) {
            const double square_y = grid.square_y(y);
            const wide phase_y = defocus_phase(square_y, defocus);
            for (std::ptrdiff_t x = 0; x < target.width(); ++x) {
                const auto column = static_cast<std::size_t>(x);
                if (!(squares[column] + square_y <= radius * radius)) {
                    destination(x, y, z) = T{};
                    continue;
                }
                const wide cross = product(wide{target(x, y, z)}, std::conj(wide{reference(x, y, z)}));
                const double m = modulus<real>(cross), scale = scale_of(m, mode);
                const wide turned = product(cross, product(phases[column], phase_y));
                destination(x, y, z) = rounded<T>(product(turned, scale));
                sum += m * scale;
                ++count;
            }
        }
    return count == 0 ? 0.0 : sum / static_cast<double>(count);
}

#define INSTANTIATE(T)                                                                                              \
    template double cross_correlation_mask(const image<const T>&, const image<const T>&, const correlation_filter&, \
                                           correlation_mode, const image<T>&)
INSTANTIATE(std::complex<float>);
INSTANTIATE(std::complex<double>);
#undef INSTANTIATE

}  // namespace qorv::functions
