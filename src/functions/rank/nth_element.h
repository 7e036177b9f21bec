#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <cstddef>
#include <cstdint>

/// The n-th smallest of a range of values or of all values of an image. Instantiated for float and double.
///
/// Without NaN the result is the element at index n of the sorted values, infinities included. Two cases depend on the
/// order in which the quickselect compares: with a NaN among the values the result is the element at which the
/// quickselect stops, possibly a NaN; where the result is zero and both -0 and +0 occur, its sign is that of this
/// element. Every variant returns the bits of the plain form, also in these cases.
namespace qorv::functions {

/// Element k of the sorted range, by quickselect with the median of three as pivot.
/// first, last  at least one element; reordered: no element before k is greater, none after k is smaller
/// k            0 .. last - first - 1
template <class T>
T select(T* first, T* last, std::ptrdiff_t k);

/// The value at index n, counted from 0, of all values of the image in ascending order.
/// values  any strides, up to three dimensions; not modified
/// n       0 .. number of values - 1
/// Throws  errors::parameters_invalid for null data or n out of range
template <class T>
T nth_element(const dm::image<const T>& values, std::ptrdiff_t n);

/// The element at a rank and, if requested, the one before it in ascending order.
template <class T>
struct ranked
{
    T at;
    T before;  ///< 0 if not requested
};

enum class neighbour
{
    none,
    before,
};

/// values  not empty
/// rank    0 .. number of values - 1; from 1 with neighbour::before
template <class T>
using rank_kernel = ranked<T>(const dm::image<const T>& values, std::ptrdiff_t rank, neighbour also);

/// The variants of the selection in an image. The plain form copies the image and runs the quickselect.
template <class T>
dm::variants<rank_kernel<T>> rank_variants();

/// Counts of one row of pixels relative to two limits.
struct row_counts
{
    std::int64_t below = 0;      ///< values < low
    std::int64_t up_to_low = 0;  ///< values <= low
    std::int64_t inside = 0;     ///< values > low and < high
    bool nan = false;
};

/// The largest `count` that `count_row` accepts.
constexpr std::ptrdiff_t longest_row = 4096;

/// Compares contiguous pixels with the limits. Compiled for each instruction set (nth_element_simd.h).
/// row     `count` values, at most longest_row
/// inside  room for `count` values; the values strictly between the limits are copied there
template <class Arch, class T>
row_counts count_row(const T* row, std::ptrdiff_t count, T low, T high, T* inside);

}  // namespace qorv::functions
