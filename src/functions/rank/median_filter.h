#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <cstddef>
#include <cstdint>

/// Median filter with a square window of 2 * radius + 1 pixels a side. The values of each window, row by row, go
/// through `median_of` (median.h), whose rules for even counts, NaN and zeros apply window by window. All variants
/// return the same bits. Instantiated for float and double.
namespace qorv::functions {

inline constexpr char vector_too_long[] = "vector<T> too long";

/// The contribution of window positions outside the image.
enum class padding
{
    none,   ///< nothing: the window has fewer values, with radius 1 four at a corner
    zeros,  ///< 0 each; where they are the majority, the median is 0 whatever the other values are
};

/// source       any size, up to three dimensions; several planes are filtered plane by plane
/// radius       pixels, from 0 (copies); may exceed the image
/// outside      see `padding`
/// destination  same width and height as the source. If the numbers of planes differ, the planes that both have are
///              written. Must not overlap the source's memory, from its first to its last pixel
/// Throws  in this order: errors::parameters_invalid for null data or a negative radius; vector_too_long for a padded
///         window of more values than a vector can hold; errors::different_size; errors::out_of_place
template <class T>
void median_filter(const dm::image<const T>& source, std::int32_t radius, padding outside,
                   const dm::image<T>& destination);

/// Filters the planes that both views have. Same width and height, no shared memory, radius >= 0.
template <class T>
using median_kernel = void(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                           const dm::image<T>& destination);

/// The plain form collects each window and selects its median; O(radius^2) per pixel. The fast ones use comparison
/// networks for the radii 1 and 2, and the ranks of the pixels of a tile for larger ones, O(radius) per pixel.
template <class T>
dm::variants<median_kernel<T>> median_variants();

/// Elements that `median_row` may read past the end of a row, at least the lanes of the widest vector.
constexpr std::ptrdiff_t network_slack = 16;

/// One row of medians, a vector of neighbouring pixels at a time. Compiled for each instruction set
/// (median_filter_simd.h). The result of a window with a NaN or -0 is unspecified.
/// rows    the 2 * radius + 1 rows of the windows, each starting `radius` columns left of the first output pixel, of
///         width + 2 * radius elements followed by network_slack readable ones
/// radius  1 or 2
/// out     width elements
template <class Arch, class T>
void median_row(const T* const* rows, std::ptrdiff_t radius, T* out, std::ptrdiff_t width);

}  // namespace qorv::functions
