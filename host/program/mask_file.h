#pragma once

#include <string>

#include "host/objects/image.h"

namespace zentrix::program {

/// Reads a mask for an image: pixels that are not 0 are left out. The mask has the size of the image, or that of one
/// plane for all planes alike. Its elements are integers, real numbers or truth values.
/// Returns  an image of uint8, contiguous, of the size of `pixels`: 1 where a pixel is left out, otherwise 0
/// Throws   host::file_error, also when nothing is left to work on
host::image_ref read_mask(const std::string& name, const host::image& pixels);

/// Writes not-a-number to all pixels of a phase (contiguous, float32) that the mask leaves out.
/// Returns  their number
std::size_t leave_out(host::image& phase, const host::image& mask);

/// Gives the pixels that the mask leaves out the values that they have in `from`. All three are contiguous and of the
/// same size, both phases float32.
void restore_left_out(host::image& phase, const host::image& from, const host::image& mask);

}  // namespace zentrix::program
