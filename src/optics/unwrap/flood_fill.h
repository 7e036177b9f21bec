#pragma once

#include "optics/unwrap/pixel_flags.h"

namespace qorv::optics {

/// Integrates the wrapped differences inside each region that the cuts leave connected. A region starts at its first
/// pixel in row order, which keeps its value. The fill is depth-first: it continues from the pixel reached last, which
/// gives values to its left, right, upper and lower neighbours, in this order. Sums are formed in double and stored in
/// single precision, so the path determines the last bits and is part of the definition.
/// phase   column after column, of the size of `flags`, [rad]
/// result  same layout; every pixel off the cuts is written
/// flags   pixels on cuts are left out; the pixels written become `pixel_flags::unwrapped`
/// stack   room for one index per pixel
void fill_regions(const float* phase, float* result, pixel_flags& flags, std::uint32_t* stack);

/// Gives each pixel on a cut, row by row, the value that follows from its left or else its upper neighbour, if that
/// neighbour has a value already. The others, and those in the first row or column, keep their phase. Parameters as
/// above.
void fill_cuts(const float* phase, float* result, pixel_flags& flags);

}  // namespace qorv::optics
