#pragma once

#include "optics/unwrap/bit_plane.h"

namespace qorv::optics {

/// Residues of a wrapped phase: loops of 2 x 2 pixels around which the wrapped differences do not add up to zero. Each
/// is stored at the top left pixel of its loop.
struct residue_map
{
    bit_plane rows;      ///< bit (x, y): a residue at pixel (x, y)
    bit_plane columns;   ///< the same bits as (y, x)
    bit_plane positive;  ///< (x, y): its sum is positive
    std::size_t count = 0;
};

/// Sums the wrapped differences right, down, left, up around each loop. A sum above `least_residue` is a positive
/// residue, one below the negative limit a negative residue; NaN is none.
/// phase      width x height, rows contiguous, [rad], any value
/// Throws     std::bad_alloc
/// Exactness  as if each sum were formed in double precision from differences in single precision, in the order down,
///            right, left, up
/// Source  Goldstein, Zebker, Werner, Radio Science 23 (1988) 713-720
residue_map find_residues(const float* phase, std::int32_t width, std::int32_t height);

}  // namespace qorv::optics
