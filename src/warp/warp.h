#pragma once

#include <array>
#include <complex>
#include <type_traits>

#include "image/image.h"

/// Linear resampling of typed images by displacements or by an affine map. The library exports these functions. A
/// module that uses them includes this header and links Zentrix64, on Windows with ZENTRIX_WARP_IMPORT defined. It must
/// be built by the same compiler, because names, image<T> and exceptions are C++.
///
/// T is float, double, std::complex<float> or std::complex<double>; the complex variants interpolate real and imaginary
/// parts. All functions share these rules:
/// - Element (x, y, z) of the destination is read at a place of the source. Pixel centres have whole coordinates;
///   between them the value is linear along each axis, a weighted mean of the 2, 4 or 8 surrounding pixels.
/// - A coordinate below 0, above size - 1 or NaN is outside: the element becomes `fill`.
/// - On a whole coordinate no neighbour along that axis is read. A shift by whole pixels is therefore exact to the bit,
///   and a NaN or infinity in the next pixel has no effect.
/// - Computed in double and rounded once to T.
/// - Views may have any strides. Source and destination may differ in size but must not overlap in memory.
/// - The destination is returned. When a check fails, nothing is written.
/// Throws std::runtime_error, in this order:
/// - "Parameters are invalid." for an image without data or elements, and for a matrix that is not finite
/// - "Images of different size cannot appear in this function." for a displacement that has neither the destination's
///   size nor size 1 along an axis
/// - "Output should be out-of-place." when the destination overlaps the source or a displacement

#if defined(_WIN32)
#if defined(ZENTRIX_WARP_IMPORT)
#define ZENTRIX_WARP_API __declspec(dllimport)
#else
#define ZENTRIX_WARP_API __declspec(dllexport)
#endif
#else
#define ZENTRIX_WARP_API __attribute__((visibility("default")))
#endif

namespace qorv::warp {

template <class T>
struct real_of
{
    using type = T;
};
template <class Real>
struct real_of<std::complex<Real>>
{
    using type = Real;
};

/// A displacement along one axis for each element of the destination, [pixel], in the precision of T. Along each axis
/// it has the destination's size, or size 1 for one value along that axis: 1 x 1 x 1 shifts the whole image, 1 x height
/// whole rows.
template <class T>
using displacement = dm::image<const typename real_of<T>::type>;

/// destination(x, y, z) = source at (x + dx, y + dy, z + dz).
template <class T>
dm::image<T>& LinearWarp(const dm::image<const T>& source, const displacement<T>& dx, const displacement<T>& dy,
                         const displacement<T>& dz, dm::image<T>& destination, std::type_identity_t<T> fill = T{});

/// As LinearWarp, with a displacement along x only; likewise the others.
template <class T>
dm::image<T>& LinearWarpX(const dm::image<const T>& source, const displacement<T>& dx, dm::image<T>& destination,
                          std::type_identity_t<T> fill = T{});

template <class T>
dm::image<T>& LinearWarpY(const dm::image<const T>& source, const displacement<T>& dy, dm::image<T>& destination,
                          std::type_identity_t<T> fill = T{});

template <class T>
dm::image<T>& LinearWarpZ(const dm::image<const T>& source, const displacement<T>& dz, dm::image<T>& destination,
                          std::type_identity_t<T> fill = T{});

/// As LinearWarp within each plane.
template <class T>
dm::image<T>& LinearWarpXY(const dm::image<const T>& source, const displacement<T>& dx, const displacement<T>& dy,
                           dm::image<T>& destination, std::type_identity_t<T> fill = T{});

/// Rows of a 3 x 4 matrix: where the destination's element (x, y, z) lies in the source is
/// (row . (x, y, z, 1)) for each of the three rows.
using affine_matrix = std::array<std::array<double, 4>, 3>;

/// The matrix of a map within the plane: x' = xx x + xy y + x1, y' = yx x + yy y + y1.
constexpr affine_matrix affine_in_plane(double xx, double xy, double x1, double yx, double yy, double y1)
{
    return {{{xx, xy, 0, x1}, {yx, yy, 0, y1}, {0, 0, 1, 0}}};
}

/// destination(x, y, z) = source at matrix * (x, y, z, 1).
template <class T>
dm::image<T>& AffineWarp(const dm::image<const T>& source, const affine_matrix& matrix, dm::image<T>& destination,
                         std::type_identity_t<T> fill = T{});

#define ZENTRIX_WARPS(T)                                                                                              \
    extern template ZENTRIX_WARP_API dm::image<T>& LinearWarp<T>(const dm::image<const T>&, const displacement<T>&,   \
                                                                 const displacement<T>&, const displacement<T>&,      \
                                                                 dm::image<T>&, T);                                   \
    extern template ZENTRIX_WARP_API dm::image<T>& LinearWarpX<T>(const dm::image<const T>&, const displacement<T>&,  \
                                                                  dm::image<T>&, T);                                  \
    extern template ZENTRIX_WARP_API dm::image<T>& LinearWarpY<T>(const dm::image<const T>&, const displacement<T>&,  \
                                                                  dm::image<T>&, T);                                  \
    extern template ZENTRIX_WARP_API dm::image<T>& LinearWarpZ<T>(const dm::image<const T>&, const displacement<T>&,  \
                                                                  dm::image<T>&, T);                                  \
    extern template ZENTRIX_WARP_API dm::image<T>& LinearWarpXY<T>(const dm::image<const T>&, const displacement<T>&, \
                                                                   const displacement<T>&, dm::image<T>&, T);         \
    extern template ZENTRIX_WARP_API dm::image<T>& AffineWarp<T>(const dm::image<const T>&, const affine_matrix&,     \
                                                                 dm::image<T>&, T)
ZENTRIX_WARPS(float);
ZENTRIX_WARPS(double);
ZENTRIX_WARPS(std::complex<float>);
ZENTRIX_WARPS(std::complex<double>);
#undef ZENTRIX_WARPS

}  // namespace qorv::warp
