#pragma once

#include <filesystem>

#include "host/objects/image.h"

namespace zentrix::host {

/// Reads the image of a DM3 or DM4 file: the one that its first window shows, not the thumbnail; one to three
/// dimensions. Integers of 64 bits become float64, binary images uint8, packed spectra complex numbers of all
/// frequencies (packed_spectrum.h). Scale, origin and unit of each dimension and the voltage are those of the file.
/// The image has the name that the file gives it, or is named after the file.
/// Throws  file_error, also for colour images and for integers beyond 2^53
image_ref read_dm(const std::filesystem::path& file);

}  // namespace zentrix::host
