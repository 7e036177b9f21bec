#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <complex>
#include <cstddef>
#include <type_traits>

/// Box (moving-average) filters of float, double, complex<float> and complex<double> images. The window has
/// 2 * radius + 1 samples along each filtered axis and is clipped at the border; a running sum makes the cost
/// independent of the radius. Sums, factors and divisors are kept in the precision of the image (of the component for
/// complex images, whose parts are averaged with the same window).
///
/// from     the source; strides of any size and sign
/// to       the destination: width and height of the source; the planes that both have are written
/// radius   pixels; any value to 2^31 - 1, also beyond the size
///
/// A NaN or an infinity never leaves a running sum: from the sample at which it enters the window, every later result
/// of its line is NaN (after an infinity the results are infinite until it leaves the window). In the two-dimensional
/// filter its column keeps it for all later rows. All variants agree on which results are NaN; the payload is not
/// specified.
namespace qorv::functions {

/// Mean over all axes. Images apart: each plane is divided by the true number of pixels in the clipped rectangle, and
/// when at least two planes are written, they are then averaged along z in place. Images that share memory: one pass
/// along each axis that has at least two samples, with the divisors of `box_pass_kernel`, so that both ways differ for
/// lines shorter than the window. Radius 0 copies.
/// Throws  errors::parameters_invalid on null data or a negative radius, before anything is written
template <class T>
void moving_average(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to,
                    std::ptrdiff_t radius);

/// Mean along one axis. In place or out of place. With a radius below 1, or fewer than two samples along the axis, the
/// destination stays as it is. Along z the windows span all planes of the source, even when the destination has fewer.
/// Throws  errors::parameters_invalid on null data
template <class T>
void moving_average_x(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to,
                      std::ptrdiff_t radius);
template <class T>
void moving_average_y(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to,
                      std::ptrdiff_t radius);
template <class T>
void moving_average_z(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to,
                      std::ptrdiff_t radius);

/// Mean of the values and mean of the squared values (the complex square for complex images) of the first plane, with
/// the window and the divisor of the two-dimensional filter.
/// Throws  errors::parameters_invalid on null data or a negative radius; errors::out_of_place when two of the three
///         images share memory
template <class T>
void moving_average2(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& mean,
                     const dm::image<T>& squares, std::ptrdiff_t radius);

enum class axis
{
    x,
    y,
    z
};

/// One pass along an axis; in place (`to` is `from`) or out of place. A line of N samples x[] with W = 2 * radius + 1:
///     i <  min(N - radius, radius + 1)   sum * (1 / W) * (W / (i + radius + 1))
///     i <  N - radius                    sum * (1 / W)
///     others                             sum * (1 / W) * (W / (N - i + radius))
/// from left to right, with 1 / W and the quotient rounded to the element precision. The sum moves by one difference,
/// sum + (x[i + radius] - x[i - radius - 1]), and by a single sample where the line has no other. The divisors are
/// those of a window clipped on one side only; on lines shorter than W they exceed the number of samples in the sum.
/// radius   >= 0
template <class T>
using box_pass_kernel = void(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius);

/// One plane. Column sums drop row y - radius - 1, then gain row y + radius; the sum along the row does the same with
/// them. Result: sum / (cx * cy), the integer product converted once. radius >= 0; images apart.
template <class T>
using box_slice_kernel = void(const dm::image<const T>& from, const dm::image<T>& mean, std::ptrdiff_t radius);

/// The same for values and squared values at once.
template <class T>
using box_slice2_kernel = void(const dm::image<const T>& from, const dm::image<T>& mean, const dm::image<T>& squares,
                               std::ptrdiff_t radius);

template <class T>
void box_pass_plain(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius);
template <class T>
void box_slice_plain(const dm::image<const T>& from, const dm::image<T>& mean, std::ptrdiff_t radius);
template <class T>
void box_slice2_plain(const dm::image<const T>& from, const dm::image<T>& mean, const dm::image<T>& squares,
                      std::ptrdiff_t radius);

/// Whether the vector form of the pass is possible: contiguous rows, and images that are the same or apart. Not inline,
/// so that no copy compiled for a newer instruction set can replace that of other callers.
template <class T>
bool box_pass_has_lanes(const dm::image<const T>& from, const dm::image<T>& to);

/// Several lines at a time as lanes, each with the plain variant's operations in the same order: the same bits except
/// for the payloads of NaNs. Images without contiguous rows, and views that overlap without being the same, are passed
/// to the plain variant. Defined in moving_average_simd.h, instantiated for each instruction set in a file of its own.
template <class Arch, class T>
void box_pass_simd(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius);
template <class Arch, class T>
void box_slice_simd(const dm::image<const T>& from, const dm::image<T>& mean, std::ptrdiff_t radius);
template <class Arch, class T>
void box_slice2_simd(const dm::image<const T>& from, const dm::image<T>& mean, const dm::image<T>& squares,
                     std::ptrdiff_t radius);

template <class T>
dm::variants<box_pass_kernel<T>> box_pass_variants();
template <class T>
dm::variants<box_slice_kernel<T>> box_slice_variants();
template <class T>
dm::variants<box_slice2_kernel<T>> box_slice2_variants();

}  // namespace qorv::functions
