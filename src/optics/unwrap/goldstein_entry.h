#pragma once

#include <cstdint>

#include "binding/object_ref.h"

namespace qorv::optics {

/// Script function ZXGoldstain: unwraps a phase image; goldstein.h tells how.
/// source        real, 4 bytes per element, radians; the first plane counts; unchanged
/// max_box_size  largest box of the residue search; 0: half the sum of width and height; below 3: no search
/// Returns       a clone of the source with the unwrapped values
/// Throws        errors::should_be_real4
binding::image_ref GoldstainDM(binding::image_ref source, std::int32_t max_box_size);

}  // namespace qorv::optics
