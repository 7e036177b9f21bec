#include "functions/reciprocal/bragg_mask.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <limits>
#include <numbers>
#include <utility>

#include "image/errors.h"
#include "image/interruption.h"
#include "image/overlap.h"
#include "numeric/complex.h"

namespace qorv::functions {
namespace {

using dm::image;

struct vector2
{
    double x, y;
};
vector2 operator-(vector2 a, vector2 b) { return {a.x - b.x, a.y - b.y}; }
vector2 operator*(double s, vector2 v) { return {s * v.x, s * v.y}; }
double dot(vector2 a, vector2 b) { return a.x * b.x + a.y * b.y; }

void require_valid(const disc& shape)
{
    const auto valid = [](double length) { return std::isfinite(length) && length >= 0; };
    dm::require(valid(shape.radius) && valid(shape.rim), dm::errors::parameters_invalid);
}

/// The two shortest vectors that span the same lattice (Lagrange and Gauss). With these, the lattice point nearest to
/// any position is a corner of the cell that contains the position.
class reduced_basis
{
  public:
    explicit reduced_basis(const lattice& points) : a_{points.a_x, points.a_y}, b_{points.b_x, points.b_y}
    {
        const double longest = std::sqrt(std::max(dot(a_, a_), dot(b_, b_)));
        dm::require(longest > 0, dm::errors::parameters_invalid);
        for (;;) {
            if (dot(b_, b_) < dot(a_, a_)) std::swap(a_, b_);
            // From parallel vectors only rounding errors remain.
            dm::require(std::sqrt(dot(a_, a_)) > 1e-9 * longest, dm::errors::parameters_invalid);
            const double part = dot(a_, b_) / dot(a_, a_);
            if (std::abs(part) <= 0.5 + 1e-9) break;  // at exactly a half the exchange would go on for ever
            b_ = b_ - std::round(part) * a_;
        }
        const double determinant = a_.x * b_.y - a_.y * b_.x;
        to_a_ = {b_.y / determinant, -b_.x / determinant};
        to_b_ = {-a_.y / determinant, a_.x / determinant};
    }

    double distance(vector2 from_origin) const
    {
        const double first = std::floor(dot(to_a_, from_origin)), second = std::floor(dot(to_b_, from_origin));
        double nearest = std::numeric_limits<double>::infinity();
        for (const double h : {first, first + 1})
            for (const double k : {second, second + 1}) {
                const vector2 rest = from_origin - h * a_ - k * b_;
                nearest = std::min(nearest, dot(rest, rest));
            }
        return std::sqrt(nearest);
    }

  private:
    vector2 a_, b_;
    vector2 to_a_{}, to_b_{};  ///< rows of the inverse matrix
};

/// Of the image: a disc of a few rows mostly contains none of these, a large one always does.
constexpr std::ptrdiff_t rows_per_question = 32;

template <class T>
T masked(T value, double factor)
{
    if (factor == 0) return {};
    return numeric::rounded<T>(numeric::product(numeric::widened(value), factor));
}

}  // namespace

template <class Element>
lattice lattice::from(const image<const Element>& matrix, std::ptrdiff_t width, std::ptrdiff_t height)
{
    dm::require((matrix.width() == 2 || matrix.width() == 3) && matrix.height() == 2 && matrix.depth() == 1,
                dm::errors::invalid_matrix_size);
    for (std::ptrdiff_t y = 0; y < 2; ++y)
        for (std::ptrdiff_t x = 0; x < matrix.width(); ++x)
            dm::require(std::isfinite(matrix(x, y)), dm::errors::parameters_invalid);
    const bool placed_by_matrix = matrix.width() == 3;
    const auto middle = [](std::ptrdiff_t size) { return static_cast<double>(size / 2); };
    return {matrix(0, 0),
            matrix(0, 1),
            matrix(1, 0),
            matrix(1, 1),
            placed_by_matrix ? static_cast<double>(matrix(2, 0)) : middle(width),
            placed_by_matrix ? static_cast<double>(matrix(2, 1)) : middle(height)};
}

double disc::at(double distance) const
{
    const double outside = distance - radius;
    if (rim == 0) return outside <= 0 ? 1.0 : 0.0;
    if (outside <= -rim) return 1;
    if (outside >= rim) return 0;
    return 0.5 * (1 - std::sin(std::numbers::pi / 2 * outside / rim));
}

mask_plane lattice_mask(const lattice& points, const disc& shape, std::ptrdiff_t width, std::ptrdiff_t height)
{
    require_valid(shape);
    const reduced_basis basis{points};
    mask_plane mask;
    mask.reserve(static_cast<std::size_t>(width * height));
    for (std::ptrdiff_t y = 0; y < height; ++y) {
        dm::stop_if_interrupted();
        for (std::ptrdiff_t x = 0; x < width; ++x)
            mask.push_back(shape.at(
                basis.distance({static_cast<double>(x) - points.origin_x, static_cast<double>(y) - points.origin_y})));
    }
    return mask;
}

mask_plane peak_mask(const std::vector<peak>& peaks, const disc& shape, std::ptrdiff_t width, std::ptrdiff_t height)
{
    require_valid(shape);
    mask_plane mask(static_cast<std::size_t>(width * height));
    const double reach = shape.radius + shape.rim;
    const auto first = [&](double middle, std::ptrdiff_t size) {
        return static_cast<std::ptrdiff_t>(std::ceil(std::clamp(middle - reach, 0.0, static_cast<double>(size))));
    };
    const auto last = [&](double middle, std::ptrdiff_t size) {
        return static_cast<std::ptrdiff_t>(std::floor(std::clamp(middle + reach, -1.0, static_cast<double>(size - 1))));
    };
    for (const peak& p : peaks) {
        if (!std::isfinite(p.x) || !std::isfinite(p.y)) continue;
        for (std::ptrdiff_t y = first(p.y, height); y <= last(p.y, height); ++y) {
            if (y % rows_per_question == 0) dm::stop_if_interrupted();
            for (std::ptrdiff_t x = first(p.x, width); x <= last(p.x, width); ++x) {
                double& factor = mask[static_cast<std::size_t>(y * width + x)];
                const double dx = static_cast<double>(x) - p.x, dy = static_cast<double>(y) - p.y;
                factor = std::max(factor, shape.at(std::sqrt(dx * dx + dy * dy)));
            }
        }
    }
    return mask;
}

std::vector<peak> placed(const std::vector<peak>& indices, const lattice& points)
{
    std::vector<peak> peaks;
    for (const auto& [h, k] : indices)
        peaks.push_back(
            {points.a_x * h + points.b_x * k + points.origin_x, points.a_y * h + points.b_y * k + points.origin_y});
    return peaks;
}

template <class T>
void apply_mask(const image<const T>& source, const mask_plane& mask, const image<T>& destination)
{
    dm::require(source.sizes() == destination.sizes() &&
                    mask.size() == static_cast<std::size_t>(source.width() * source.height()),
                dm::errors::different_size);
    dm::require_in_place_or_apart(source, destination);
    for (std::ptrdiff_t z = 0; z < source.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < source.height(); ++y)
            for (std::ptrdiff_t x = 0; x < source.width(); ++x)
                destination(x, y, z) = masked(source(x, y, z), mask[static_cast<std::size_t>(y * source.width() + x)]);
}

template lattice lattice::from(const image<const float>&, std::ptrdiff_t, std::ptrdiff_t);
template lattice lattice::from(const image<const double>&, std::ptrdiff_t, std::ptrdiff_t);
template void apply_mask(const image<const std::complex<float>>&, const mask_plane&, const image<std::complex<float>>&);
template void apply_mask(const image<const std::complex<double>>&, const mask_plane&,
                         const image<std::complex<double>>&);

}  // namespace qorv::functions
