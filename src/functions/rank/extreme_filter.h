#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <cstddef>
#include <cstdint>

/// Maximum and minimum filters with a square window of 2 * radius + 1 pixels a side, clipped to the image.
///
/// A window that reaches past the left or right edge also sees the start value there: the lowest (for a maximum;
/// highest for a minimum) finite number of the type. It wins over an infinity only, so a window at such an edge that
/// holds nothing but -inf has the maximum -3.4028235e38 (float). NaN and zeros: a column of the window is scanned from
/// top to bottom, a NaN is taken and the next value replaces it, so a NaN survives only as the column's last; a
/// column's NaN is then skipped among the columns unless it stands in the first slot of the ring (x modulo 2 * radius +
/// 1). Of -0 and +0 the first in that order stays. Every variant gives the same bits, also then. Instantiated for the
/// signed and unsigned 8-, 16- and 32-bit integers, float and double.
namespace qorv::functions {

enum class extreme
{
    minimum,
    maximum,
};

/// One plane (z = 0 of both views), same width and height, memory not shared, radius >= 0.
template <class T>
using extreme_kernel = void(const dm::image<const T>& source, extreme which, std::ptrdiff_t radius,
                            const dm::image<T>& destination);

/// A ring of the 2 * radius + 1 extremes of the window's columns; each output scans the ring. O(radius) a pixel.
template <class T>
void extreme_plain(const dm::image<const T>& source, extreme which, std::ptrdiff_t radius,
                   const dm::image<T>& destination);

/// Columns, then rows, in vector operations; O(log radius) a pixel. Rows must be contiguous, others go the plain way,
/// and so do windows with a NaN or a -0.
template <class T>
void extreme_vector(const dm::image<const T>& source, extreme which, std::ptrdiff_t radius,
                    const dm::image<T>& destination);

template <class T>
inline constexpr dm::variant<extreme_kernel<T>> extreme_variants[] = {{"vector", dm::cpu::sse2, extreme_vector<T>},
                                                                      {"plain", dm::cpu::none, extreme_plain<T>}};

/// source       any size, up to three dimensions; several planes are filtered plane by plane
/// radius       pixels, from 0 (copies) to beyond the image, where every window is the whole plane
/// destination  same width and height; with another number of planes, the planes that both have are written.
///              Must not overlap the source's memory, from first to last pixel
/// Throws  errors::parameters_invalid for null data or a negative radius, errors::different_size, errors::out_of_place,
///         in this order
template <class T>
void extreme_filter(const dm::image<const T>& source, extreme which, std::int32_t radius,
                    const dm::image<T>& destination);

template <class T>
void maximum_filter(const dm::image<const T>& source, std::int32_t radius, const dm::image<T>& destination)
{
    extreme_filter<T>(source, extreme::maximum, radius, destination);
}

template <class T>
void minimum_filter(const dm::image<const T>& source, std::int32_t radius, const dm::image<T>& destination)
{
    extreme_filter<T>(source, extreme::minimum, radius, destination);
}

}  // namespace qorv::functions
