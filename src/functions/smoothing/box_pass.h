#pragma once

#include "functions/smoothing/prepared_filter.h"
#include "image/image.h"
#include "image/processor.h"

#include <complex>
#include <cstddef>

/// The moving average along one axis; the pixel types and the treatment of NaN are those of moving_average.h.
namespace qorv::functions {

enum class axis
{
    x,
    y,
    z
};

/// Prepares one pass along an axis; in place (`to` is `from`) or out of place. A line of N samples x[] with
/// W = 2 * radius + 1:
///     i <  min(N - radius, radius + 1)   sum * (1 / W) * (W / (i + radius + 1))
///     i <  N - radius                    sum * (1 / W)
///     others                             sum * (1 / W) * (W / (N - i + radius))
/// from left to right, with 1 / W and the quotient rounded to the element precision. The sum moves by one difference,
/// sum + (x[i + radius] - x[i - radius - 1]), and by a single sample where the line has no other. The divisors are
/// those of a window clipped on one side only; on lines shorter than W they exceed the number of samples in the sum.
/// radius   >= 0
template <class T>
using box_pass_kernel = prepared_filter(const dm::image<const T>& from, const dm::image<T>& to, axis along,
                                        std::ptrdiff_t radius);

template <class T>
prepared_filter box_pass_plain(const dm::image<const T>& from, const dm::image<T>& to, axis along,
                               std::ptrdiff_t radius);

/// Whether the vector form of the pass is possible: contiguous rows, and images that are the same or apart. Not inline,
/// so that no copy compiled for a newer instruction set can replace that of other callers.
template <class T>
bool box_pass_has_lanes(const dm::image<const T>& from, const dm::image<T>& to);

/// Several lines at a time as lanes, each with the plain variant's operations in the same order: the same bits except
/// for the payloads of NaNs. Images without contiguous rows, and views that overlap without being the same, are passed
/// to the plain variant. Defined in box_pass_simd.h, instantiated for each instruction set in a file of its own.
template <class Arch, class T>
prepared_filter box_pass_simd(const dm::image<const T>& from, const dm::image<T>& to, axis along,
                              std::ptrdiff_t radius);

template <class T>
dm::variants<box_pass_kernel<T>> box_pass_variants();

}  // namespace qorv::functions
