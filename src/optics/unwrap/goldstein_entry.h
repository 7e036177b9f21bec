#pragma once

#include <cstdint>

#include "binding/object_ref.h"

namespace qorv::optics {

/// Script function ZXGoldstain: unwraps a phase image; see goldstein.h for the algorithm.
/// source        real, 4 bytes per element, [rad]; only the first plane is processed; unchanged
/// max_box_size  largest box side of the residue search [pixel]; 0: half the sum of width and height; below 3: none
/// Returns       a clone of the source with the unwrapped values
/// Throws        errors::parameters_invalid for a null source, then errors::should_be_real4, then too_long
binding::image_ref GoldstainDM(binding::image_ref source, std::int32_t max_box_size);

}  // namespace qorv::optics
