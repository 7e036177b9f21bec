#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <cstddef>

/// Values by rank: the element that would stand at an index if all were sorted ascending, and the median.
///
/// Order, NaN and zeros: without NaN the result is the sorted one, infinities included. -0 and +0 compare equal, so
/// where both are among the values the sign of a zero result is that of the one the plain procedure arrives at, and
/// with a NaN among the values the result is whichever element it arrives at, possibly a NaN. Every variant gives the
/// bits of the plain procedure in these cases too, at the plain procedure's speed. Instantiated for float and double.
namespace qorv::functions {

/// Element k of the sorted range, by quickselect with the median of three as pivot.
/// [first, last)  at least one element; reordered: afterwards nothing before k is greater and nothing behind it smaller
/// k              0 .. last - first - 1
template <class T>
T select(T* first, T* last, std::ptrdiff_t k);

/// Median of the range, which is reordered: the middle element, or (a + b) * 0.5 in the element's precision for the two
/// middle ones of an even count, which overflows to an infinity where a + b does.
/// [first, last)  at least one element
template <class T>
T median_of(T* first, T* last);

/// What a selection over a whole image returns: the element at the asked rank and the one before it.
template <class T>
struct ranked
{
    T at;
    T before;  ///< 0 if not asked for
};

enum class neighbour
{
    none,
    before,
};

template <class T>
using rank_kernel = ranked<T>(const dm::image<const T>& values, std::ptrdiff_t rank, neighbour also);

/// Copies the image and runs the quickselect: `rank` first, then, on what that left, the one before it.
template <class T>
ranked<T> rank_plain(const dm::image<const T>& values, std::ptrdiff_t rank, neighbour also);

/// Brackets the rank between two values of a sample, counts what lies below in one pass and selects among what lies
/// inside. Images of few pixels or with pixels apart in a row go the plain way, and so do those with a NaN, or with a -0
/// when the result is a zero.
template <class T>
ranked<T> rank_vector(const dm::image<const T>& values, std::ptrdiff_t rank, neighbour also);

template <class T>
inline constexpr dm::variant<rank_kernel<T>> rank_variants[] = {{"vector", dm::cpu::sse2, rank_vector<T>},
                                                                {"plain", dm::cpu::none, rank_plain<T>}};

/// The value at index n, counted from 0, of all values of the image in ascending order. The image keeps its order.
/// Throws  errors::parameters_invalid for null data or n outside 0 .. size - 1
template <class T>
T nth_element(const dm::image<const T>& values, std::ptrdiff_t n);

/// The median of all values of the image, formed as by `median_of`. The image keeps its order.
/// Throws  errors::parameters_invalid for null or no data
template <class T>
T median(const dm::image<const T>& values);

}  // namespace qorv::functions
