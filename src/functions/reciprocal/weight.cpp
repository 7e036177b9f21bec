#include "functions/reciprocal/weight.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <vector>

#include "image/errors.h"
#include "image/overlap.h"
#include "numeric/complex.h"

namespace qorv::functions {
namespace {

using dm::image;

/// One row of the curve, ready to be read at any radius.
class reader
{
  public:
    template <class Curve>
    reader(const image<const Curve>& curve, std::ptrdiff_t row, weight_mode mode) : mode_{mode}
    {
        for (std::ptrdiff_t r = 0; r < curve.width(); ++r) values_.push_back(static_cast<double>(curve(r, row)));
    }

    double factor(double radius) const
    {
        const double value = linear() ? between(radius) : at(radius + 0.5);
        if (!inverse()) return value;
        return value == 0 ? 0.0 : 1.0 / value;
    }

  private:
    bool linear() const { return mode_ == weight_mode::linear || mode_ == weight_mode::inverse_linear; }
    bool inverse() const { return mode_ == weight_mode::inverse_nearest || mode_ == weight_mode::inverse_linear; }

    double at(double radius) const
    {
        return radius < static_cast<double>(values_.size()) ? values_[static_cast<std::size_t>(radius)]
                                                            : values_.back();
    }
    double between(double radius) const
    {
        if (!(radius < static_cast<double>(values_.size() - 1))) return values_.back();
        const auto below = static_cast<std::size_t>(radius);
        const double part = radius - static_cast<double>(below);
        return part == 0 ? values_[below] : values_[below] * (1 - part) + values_[below + 1] * part;
    }

    weight_mode mode_;
    std::vector<double> values_;
};

}  // namespace

weight_mode weight_mode_of(std::int32_t number)
{
    dm::require(number >= 0 && number <= 3, dm::errors::invalid_mode);
    return static_cast<weight_mode>(number);
}

template <class T, class Curve>
void weight(const image<const T>& source, const image<const Curve>& curve, const radial_grid& grid, weight_mode mode,
            const image<T>& destination)
{
    dm::require(source.sizes() == destination.sizes(), dm::errors::different_size);
    dm::require(curve.width() > 0 && curve.depth() == 1 && (curve.height() == 1 || curve.height() == source.depth()),
                dm::errors::invalid_image_size);
    dm::require(std::isfinite(grid.scale_x) && std::isfinite(grid.scale_y), dm::errors::parameters_invalid);
    dm::require_in_place_or_apart(source, destination);

    std::vector<reader> readers;
    for (std::ptrdiff_t row = 0; row < curve.height(); ++row) readers.emplace_back(curve, row, mode);
    std::vector<double> radii(static_cast<std::size_t>(source.width())), factors(radii.size());
    for (std::ptrdiff_t y = 0; y < source.height(); ++y) {
        for (std::size_t x = 0; x < radii.size(); ++x) radii[x] = grid.radius(static_cast<std::ptrdiff_t>(x), y);
        for (std::ptrdiff_t z = 0; z < source.depth(); ++z) {
            if (z < curve.height())  // planes that share a row share its factors
                std::transform(radii.begin(), radii.end(), factors.begin(),
                               [&](double radius) { return readers[static_cast<std::size_t>(z)].factor(radius); });
            for (std::ptrdiff_t x = 0; x < source.width(); ++x)
                destination(x, y, z) = numeric::rounded<T>(
                    numeric::product(numeric::widened(source(x, y, z)), factors[static_cast<std::size_t>(x)]));
        }
    }
}

#define INSTANTIATE(T)                                                                                       \
    template void weight(const image<const T>&, const image<const float>&, const radial_grid&, weight_mode,  \
                         const image<T>&);                                                                   \
    template void weight(const image<const T>&, const image<const double>&, const radial_grid&, weight_mode, \
                         const image<T>&)
INSTANTIATE(float);
INSTANTIATE(double);
INSTANTIATE(std::complex<float>);
INSTANTIATE(std::complex<double>);
#undef INSTANTIATE

}  // namespace qorv::functions
