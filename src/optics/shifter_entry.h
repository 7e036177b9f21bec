#pragma once

#include <cstdint>

#include "binding/object_ref.h"

namespace qorv::optics {

/// Script function ZXImageShifterForSemper: each pixel becomes its conjugate times (-1)^(x+y); see shifter.h.
/// source            complex, 8 or 16 bytes per element; only the first plane is processed
/// centre_x, centre_y, sign  ignored; accepted for existing scripts
/// shift_x, shift_y  exactly half the size, in whole pixels
/// destination       same type with at least as many pixels in its first plane, filled as if it had the source's width;
///                   may be the source. Null: a clone of the source
/// Returns           the destination
/// Throws            errors::parameters_invalid for a null source, then errors::all_same_complex, then
///                   errors::size_power_of_2, then errors::different_size for a smaller destination, then
///                   errors::out_of_place for a partial overlap; nothing is written then
binding::image_ref ImageShifterForSemperDM(binding::image_ref source, std::int32_t centre_x, std::int32_t centre_y,
                                           double shift_x, double shift_y, double sign, binding::image_ref destination);

}  // namespace qorv::optics
