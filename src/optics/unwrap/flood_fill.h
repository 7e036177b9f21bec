#pragma once

#include "optics/unwrap/pixel_flags.h"

namespace qorv::optics {

/// Integrates the wrapped differences from pixel to pixel inside each region that the cuts leave connected. A region
/// starts at its first pixel in row order, which keeps its value; from there the last pixel reached goes on first and
/// gives values to its left, right, upper and lower neighbours in that order. Sums are formed in double and kept in
/// single precision, so the path shows in the last bits and is part of the result. phase   column after column, of the
/// size of `flags`, [rad] result  the same; every pixel off the cuts is written flags   cuts and frame are kept out;
/// the pixels written become `pixel_flags::unwrapped` stack   room for one index per pixel
void fill_regions(const float* phase, float* result, pixel_flags& flags, std::uint32_t* stack);

/// Gives each pixel on a cut, row by row, the value that follows from its left or else its upper neighbour, if that one
/// has a value by now; the others, and those in the first row and column, keep their phase. Parameters as above.
void fill_cuts(const float* phase, float* result, pixel_flags& flags);

}  // namespace qorv::optics
