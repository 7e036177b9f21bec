#pragma once

#include "image/image.h"

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
///
/// All memory is allocated before anything is written: when it runs out, the destination is as it was.
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

}  // namespace qorv::functions
