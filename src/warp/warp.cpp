#include "warp/warp.h"

#include <cmath>
#include <cstddef>
#include <tuple>

#include "image/errors.h"
#include "image/overlap.h"
#include "numeric/complex.h"

namespace qorv::warp {
namespace {

using dm::image;
using std::ptrdiff_t;

/// A place along one axis: the pixel at or below it and the fraction beyond that pixel, 0 <= part < 1.
struct place
{
    ptrdiff_t below;
    double part;
};

/// Returns false for a coordinate outside the image, and for NaN.
bool locate(double coordinate, ptrdiff_t size, place& found)
{
    if (!(coordinate >= 0 && coordinate <= static_cast<double>(size - 1))) return false;
    found.below = static_cast<ptrdiff_t>(coordinate);
    found.part = coordinate - static_cast<double>(found.below);
    return true;
}

/// Interpolates between `at(0)` and `at(step)`; the second is not evaluated for a place on a pixel.
template <class At>
auto between(double part, ptrdiff_t step, At&& at)
{
    const auto low = at(ptrdiff_t{0});
    return part == 0 ? low : low * (1 - part) + at(step) * part;
}

template <class T>
T value_at(const image<const T>& source, const place& x, const place& y, const place& z)
{
    const auto& [step_x, step_y, step_z] = source.strides();
    const T* const corner = &source(x.below, y.below, z.below);
    if (x.part == 0 && y.part == 0 && z.part == 0) return *corner;
    return numeric::rounded<T>(between(z.part, step_z, [&, sy = step_y, sx = step_x](ptrdiff_t plane) {
        return between(y.part, sy, [&](ptrdiff_t row) {
            return between(x.part, sx,
                           [&](ptrdiff_t column) { return numeric::widened(corner[plane + row + column]); });
        });
    }));
}

template <class T>
void require_usable(const image<T>& view)
{
    dm::require(view.data() != nullptr && view.size() > 0, dm::errors::parameters_invalid);
}

template <class T, class Other>
void require_apart(const image<T>& destination, const image<Other>& other)
{
    dm::require(!dm::overlap(destination, other), dm::errors::out_of_place);
}

/// A displacement, read at the destination's coordinates. The stride is 0 along axes of size 1.
template <class Real>
class field
{
  public:
    field(const image<const Real>& values, const std::array<ptrdiff_t, 3>& sizes) : data_{values.data()}
    {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            dm::require(values.sizes()[axis] == sizes[axis] || values.sizes()[axis] == 1, dm::errors::different_size);
            strides_[axis] = values.sizes()[axis] == 1 ? 0 : values.strides()[axis];
        }
    }
    double operator()(ptrdiff_t x, ptrdiff_t y, ptrdiff_t z) const
    {
        return data_[x * strides_[0] + y * strides_[1] + z * strides_[2]];
    }

  private:
    const Real* data_;
    std::array<ptrdiff_t, 3> strides_{};
};

/// The displacement along an axis that stays.
struct no_displacement
{
    double operator()(ptrdiff_t, ptrdiff_t, ptrdiff_t) const { return 0; }
};

template <class T, class Dx, class Dy, class Dz>
void warp(const image<const T>& source, const Dx& dx, const Dy& dy, const Dz& dz, const image<T>& destination, T fill)
{
    for (ptrdiff_t z = 0; z < destination.depth(); ++z)
        for (ptrdiff_t y = 0; y < destination.height(); ++y)
            for (ptrdiff_t x = 0; x < destination.width(); ++x) {
                place px{}, py{}, pz{};
                const bool inside = locate(static_cast<double>(x) + dx(x, y, z), source.width(), px) &&
                                    locate(static_cast<double>(y) + dy(x, y, z), source.height(), py) &&
                                    locate(static_cast<double>(z) + dz(x, y, z), source.depth(), pz);
                destination(x, y, z) = inside ? value_at(source, px, py, pz) : fill;
            }
}

/// Checks the arguments of a displacement warp, then calls `work` with the displacements as fields.
template <class T, class Work, class... Displacement>
image<T>& checked(const image<const T>& source, image<T>& destination, Work&& work, const Displacement&... moves)
{
    require_usable(source);
    require_usable(destination);
    (require_usable(moves), ...);
    const std::tuple fields{field<typename real_of<T>::type>{moves, destination.sizes()}...};
    require_apart(destination, source);
    (require_apart(destination, moves), ...);
    std::apply(work, fields);
    return destination;
}

}  // namespace

template <class T>
image<T>& LinearWarp(const image<const T>& source, const displacement<T>& dx, const displacement<T>& dy,
                     const displacement<T>& dz, image<T>& destination, std::type_identity_t<T> fill)
{
    const auto work = [&](const auto& x, const auto& y, const auto& z) { warp(source, x, y, z, destination, fill); };
    return checked(source, destination, work, dx, dy, dz);
}

template <class T>
image<T>& LinearWarpX(const image<const T>& source, const displacement<T>& dx, image<T>& destination,
                      std::type_identity_t<T> fill)
{
    const auto work = [&](const auto& x) { warp(source, x, no_displacement{}, no_displacement{}, destination, fill); };
    return checked(source, destination, work, dx);
}

template <class T>
image<T>& LinearWarpY(const image<const T>& source, const displacement<T>& dy, image<T>& destination,
                      std::type_identity_t<T> fill)
{
    const auto work = [&](const auto& y) { warp(source, no_displacement{}, y, no_displacement{}, destination, fill); };
    return checked(source, destination, work, dy);
}

template <class T>
image<T>& LinearWarpZ(const image<const T>& source, const displacement<T>& dz, image<T>& destination,
                      std::type_identity_t<T> fill)
{
    const auto work = [&](const auto& z) { warp(source, no_displacement{}, no_displacement{}, z, destination, fill); };
    return checked(source, destination, work, dz);
}

template <class T>
image<T>& LinearWarpXY(const image<const T>& source, const displacement<T>& dx, const displacement<T>& dy,
                       image<T>& destination, std::type_identity_t<T> fill)
{
    const auto work = [&](const auto& x, const auto& y) { warp(source, x, y, no_displacement{}, destination, fill); };
    return checked(source, destination, work, dx, dy);
}

template <class T>
image<T>& AffineWarp(const image<const T>& source, const affine_matrix& matrix, image<T>& destination,
                     std::type_identity_t<T> fill)
{
    require_usable(source);
    require_usable(destination);
    for (const auto& row : matrix)
        for (const double element : row) dm::require(std::isfinite(element), dm::errors::parameters_invalid);
    require_apart(destination, source);
    for (ptrdiff_t z = 0; z < destination.depth(); ++z)
        for (ptrdiff_t y = 0; y < destination.height(); ++y) {
            std::array<double, 3> start{};
            for (std::size_t axis = 0; axis < 3; ++axis)
                start[axis] = matrix[axis][1] * static_cast<double>(y) + matrix[axis][2] * static_cast<double>(z) +
                              matrix[axis][3];
            for (ptrdiff_t x = 0; x < destination.width(); ++x) {
                // Multiplied for each element: a running sum would accumulate rounding errors.
                const auto along = static_cast<double>(x);
                place px{}, py{}, pz{};
                const bool inside = locate(matrix[0][0] * along + start[0], source.width(), px) &&
                                    locate(matrix[1][0] * along + start[1], source.height(), py) &&
                                    locate(matrix[2][0] * along + start[2], source.depth(), pz);
                destination(x, y, z) = inside ? value_at(source, px, py, pz) : fill;
            }
        }
    return destination;
}

#define INSTANTIATE(T)                                                                                               \
    template ZENTRIX_WARP_API image<T>& LinearWarp<T>(const image<const T>&, const displacement<T>&,                 \
                                                      const displacement<T>&, const displacement<T>&, image<T>&, T); \
    template ZENTRIX_WARP_API image<T>& LinearWarpX<T>(const image<const T>&, const displacement<T>&, image<T>&, T); \
    template ZENTRIX_WARP_API image<T>& LinearWarpY<T>(const image<const T>&, const displacement<T>&, image<T>&, T); \
    template ZENTRIX_WARP_API image<T>& LinearWarpZ<T>(const image<const T>&, const displacement<T>&, image<T>&, T); \
    template ZENTRIX_WARP_API image<T>& LinearWarpXY<T>(const image<const T>&, const displacement<T>&,               \
                                                        const displacement<T>&, image<T>&, T);                       \
    template ZENTRIX_WARP_API image<T>& AffineWarp<T>(const image<const T>&, const affine_matrix&, image<T>&, T)
INSTANTIATE(float);
INSTANTIATE(double);
INSTANTIATE(std::complex<float>);
INSTANTIATE(std::complex<double>);
#undef INSTANTIATE

}  // namespace qorv::warp
