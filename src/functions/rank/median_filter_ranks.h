#pragma once

#include "functions/rank/median_filter.h"
#include "image/image.h"

#include <cstddef>

/// The two ways in which the vector form of the median filter goes about a plane. Both order -0 and NaN in their own way:
/// windows with these have to be done again.
namespace qorv::functions {

/// Radius 1 and 2: one row of medians by comparison networks, a vector of neighbouring pixels at a time.
/// rows   2 * radius + 1 rows of the windows, each from the column `radius` left of the first output pixel on,
///        width + 2 * radius elements and network_slack more that are read and do not matter
/// out    width elements
template <class T>
void median_row_by_network(const T* const* rows, std::ptrdiff_t radius, T* out, std::ptrdiff_t width);
constexpr std::ptrdiff_t network_slack = 16;

/// Any radius: tiles in which each pixel is ranked once; the window then slides over the tile as a set of ranks whose
/// middle is followed (J. Suomela, Median filtering is equivalent to sorting, arXiv:1406.1717).
/// Parameters as for median_plain.
template <class T>
void median_plane_by_ranks(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                           const dm::image<T>& destination);

}  // namespace qorv::functions
