#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <cstddef>
#include <cstdint>

/// Median filter with a square window of 2 * radius + 1 pixels a side. The values of a window, row by row, go through
/// `median_of` (library/selection.h), whose rules for even counts, NaN and zeros hold here window by window; every
/// variant gives the same bits. Instantiated for float and double.
namespace qorv::functions {

inline constexpr char vector_too_long[] = "vector<T> too long";

/// What a window's positions outside the image contribute.
enum class padding
{
    none,   ///< nothing: the median is one of fewer values, at a corner with radius 1 of four
    zeros,  ///< 0 each; a window of which they are the majority has the median 0, whatever else is in it
};

/// One plane (z = 0 of both views), same width and height, memory not shared, radius >= 0.
template <class T>
using median_kernel = void(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                           const dm::image<T>& destination);

/// Collects each window and selects its median.
template <class T>
void median_plain(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                  const dm::image<T>& destination);

/// Radius 1 and 2 by comparison networks, others by sliding sets of ranks, O(radius) a pixel. Rows must be contiguous,
/// others go the plain way, and so do windows with a NaN or a -0.
template <class T>
void median_vector(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                   const dm::image<T>& destination);

template <class T>
inline constexpr dm::variant<median_kernel<T>> median_variants[] = {{"vector", dm::cpu::sse2, median_vector<T>},
                                                                    {"plain", dm::cpu::none, median_plain<T>}};

/// source       any size, up to three dimensions; several planes are filtered plane by plane
/// radius       pixels, from 0 (copies) to beyond the image
/// destination  same width and height; with another number of planes, the planes that both have are written.
///              Must not overlap the source's memory, from first to last pixel
/// Throws  errors::parameters_invalid for null data or a negative radius; vector_too_long when the window with its
/// zeros
///         has more values than the largest array; errors::different_size; errors::out_of_place; in this order
template <class T>
void median_filter(const dm::image<const T>& source, std::int32_t radius, padding outside,
                   const dm::image<T>& destination);

}  // namespace qorv::functions
