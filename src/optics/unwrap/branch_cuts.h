#pragma once

#include "optics/unwrap/pixel_flags.h"
#include "optics/unwrap/residues.h"

namespace qorv::optics {

/// Joins residues by branch cuts. Each tree grows from one residue by boxes of 3, 5, 7, ... pixels around all its
/// members until its charges cancel or a box reaches the edge of the image.
/// residues   as found; used as working memory and restored
/// box_limit  largest box side [pixel]; 0: half the sum of width and height; below 3: every residue that no tree has
///            counted is cut straight to the nearest edge
/// flags      pixels on a cut get `pixel_flags::cut`
/// Throws     std::bad_alloc
/// Exactness  members, charges and cuts follow the order of the plain walk: boxes from small to large, members from
///            first to last, pixels row by row
void place_branch_cuts(residue_map& residues, std::int32_t box_limit, pixel_flags& flags);

}  // namespace qorv::optics
