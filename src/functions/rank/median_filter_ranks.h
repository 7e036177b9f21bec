#pragma once

#include "functions/rank/median_filter.h"
#include "image/image.h"

#include <cstddef>

namespace qorv::functions {

/// Median filter for large windows, O(radius) per pixel, parameters as for `median_kernel`. Allocates before it writes.
/// Each pixel of a tile is ranked once; the window is a set of ranks that slides over the tile while its middle is
/// followed (J. Suomela, Median filtering is equivalent to sorting, arXiv:1406.1717). -0 sorts before +0; a NaN sorts
/// first or last, by its sign.
template <class T>
void median_by_ranks(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                     const dm::image<T>& destination);

}  // namespace qorv::functions
