#pragma once

#include "host/engine/engine.h"

namespace zentrix::host {

/// Unwraps one plane by the library's function "ZXGoldstain". Pixels that are infinite or not a number are gaps: they
/// are left out and keep their bits, and the areas between them stay apart, as in restore_gaps.
/// phase  two dimensions, contiguous, float32, [rad]; replaced by the result
/// box    largest box in which residues are joined [pixel]; 0: half of width + height
/// Returns  the number of pixels in gaps
/// Throws   script_error with the library's message, and then changes nothing outside of gaps
std::size_t unwrap_plane(engine& engine, const image_ref& phase, std::int32_t box);

}  // namespace zentrix::host
