#pragma once

#include "functions/smoothing/prepared_filter.h"
#include "image/image.h"
#include "image/processor.h"

#include <complex>
#include <cstddef>

/// The moving average over both axes of a plane; the pixel types and the treatment of NaN are those of
/// moving_average.h.
namespace qorv::functions {

/// Prepares the filter of all planes that both images have. Column sums drop row y - radius - 1, then gain row
/// y + radius; the sum along the row does the same with them. Result: sum / (cx * cy), the integer product converted
/// once. radius >= 0; images apart.
template <class T>
using box_slice_kernel = prepared_filter(const dm::image<const T>& from, const dm::image<T>& mean,
                                         std::ptrdiff_t radius);

/// Filters one plane: the mean of the values and of the squared values. All memory is allocated before anything is
/// written.
template <class T>
using box_slice2_kernel = void(const dm::image<const T>& from, const dm::image<T>& mean, const dm::image<T>& squares,
                               std::ptrdiff_t radius);

template <class T>
prepared_filter box_slice_plain(const dm::image<const T>& from, const dm::image<T>& mean, std::ptrdiff_t radius);
template <class T>
void box_slice2_plain(const dm::image<const T>& from, const dm::image<T>& mean, const dm::image<T>& squares,
                      std::ptrdiff_t radius);

/// Several rows at a time as lanes, each with the plain variant's operations in the same order: the same bits except
/// for the payloads of NaNs. Images without contiguous rows are passed to the plain variant. Defined in
/// box_slice_simd.h, instantiated for each instruction set in a file of its own.
template <class Arch, class T>
prepared_filter box_slice_simd(const dm::image<const T>& from, const dm::image<T>& mean, std::ptrdiff_t radius);
template <class Arch, class T>
void box_slice2_simd(const dm::image<const T>& from, const dm::image<T>& mean, const dm::image<T>& squares,
                     std::ptrdiff_t radius);

template <class T>
dm::variants<box_slice_kernel<T>> box_slice_variants();
template <class T>
dm::variants<box_slice2_kernel<T>> box_slice2_variants();

}  // namespace qorv::functions
