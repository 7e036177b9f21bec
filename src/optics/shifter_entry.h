#pragma once

#include <cstdint>

#include "binding/object_ref.h"

namespace qorv::optics {

/// Script function ZXImageShifterForSemper: each pixel becomes its conjugate times (-1)^(x+y); shifter.h tells the
/// rest. source         complex, 8 or 16 bytes per element; the first plane counts centre_x, centre_y, sign  taken and
/// ignored, so that scripts that pass them keep working shift_x, shift_y  exactly half the size in whole pixels
/// destination    same type with at least as many pixels in its first plane, which are filled as if it
///                had the source's width, or the source itself (in place); null: a clone
/// Returns        the destination
/// Throws         errors::all_same_complex, then errors::size_power_of_2, then errors::different_size for a smaller
///                destination
binding::image_ref ImageShifterForSemperDM(binding::image_ref source, std::int32_t centre_x, std::int32_t centre_y,
                                           double shift_x, double shift_y, double sign, binding::image_ref destination);

}  // namespace qorv::optics
