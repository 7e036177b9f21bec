#pragma once

#include "optics/unwrap/pixel_flags.h"
#include "optics/unwrap/residues.h"

namespace qorv::optics {

/// Joins residues by branch cuts: each tree grows from one residue by boxes of 3, 5, 7, ... pixels around all its
/// members until its charges cancel or a box touches the image's edge. Pixels on a cut get `pixel_flags::cut`. residues
/// as found; its bits are worked on and come back unchanged box_limit  largest box side in pixels; 0: half the sum of
/// width and height; below 3: every residue that no tree has
///            counted is joined to the nearest edge straight away
/// The result does not depend on how boxes are searched: members, charges and cuts follow the order of the plain walk
/// (boxes small to large, members first to last, pixels row by row).
/// Source  Goldstein, Zebker, Werner, Radio Science 23 (1988) 713-720
void place_branch_cuts(residue_map& residues, std::int32_t box_limit, pixel_flags& flags);

}  // namespace qorv::optics
