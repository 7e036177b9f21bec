#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <cstddef>
#include <cstdint>

/// Maximum and minimum filters with a square window of 2 * radius + 1 pixels a side, clipped to the image.
///
/// A window that reaches past the left or right edge also holds the start value: for a maximum the lowest finite number
/// of the type, for a minimum the highest. It changes the result only where all pixels of the window are infinite: the
/// maximum of -inf alone is then -3.4028235e38 (float).
///
/// NaN and zeros: each column of the window is scanned from top to bottom. A NaN always replaces the value before it
/// and is replaced by the value after it, so it remains only as the column's last value. The extremes of the columns
/// are kept in a ring, column x in slot x modulo 2 * radius + 1; a NaN there is skipped, except in slot 0, where it
/// wins. Of -0 and +0 the first in this order wins. All variants return the same bits, also then.
///
/// Instantiated for the signed and unsigned 8-, 16- and 32-bit integers, float and double.
namespace qorv::functions {

enum class extreme
{
    minimum,
    maximum,
};

/// source       any size, up to three dimensions; several planes are filtered plane by plane
/// radius       pixels, from 0 (copies); may exceed the image
/// destination  same width and height as the source. If the numbers of planes differ, the planes that both have are
///              written. Must not overlap the source's memory, from its first to its last pixel
/// Throws  in this order: errors::parameters_invalid for null data or a negative radius; errors::different_size;
///         errors::out_of_place
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

/// Filters the planes that both views have. Same width and height, no shared memory, radius >= 0.
template <class T>
using extreme_kernel = void(const dm::image<const T>& source, extreme which, std::ptrdiff_t radius,
                            const dm::image<T>& destination);

/// The plain form keeps a ring of the extremes of the window's columns and scans it for each pixel, O(radius) per
/// pixel. The fast ones filter the columns, then the rows, O(log radius) per pixel.
template <class T>
dm::variants<extreme_kernel<T>> extreme_variants();

/// Element by element, the extreme of several rows of `count` values. An output may be one of the inputs. Compiled for
/// each instruction set (extreme_filter_simd.h).
template <class Arch, class T, extreme which>
struct extreme_rows
{
    static void merge(const T* a, const T* b, T* out, std::ptrdiff_t count);
    static void merge(const T* a, const T* b, const T* c, T* out, std::ptrdiff_t count);
    static void merge(const T* a, const T* b, const T* c, const T* d, T* out, std::ptrdiff_t count);
    /// Merges `row` into `head`, and head and tail into `out`.
    static void merge_into_head(const T* row, T* head, const T* tail, T* out, std::ptrdiff_t count);
};

}  // namespace qorv::functions
