#pragma once

#include <filesystem>

#include "host/objects/image.h"

namespace zentrix::host {

/// Reads an image file as read_image does. Scale and voltage that the file does not have, as .npy files, are taken from
/// its record, see recorded_scale. Throws  file_error
image_ref read_recorded_image(const std::filesystem::path& file);

/// Writes an image file as write_image does. If its format does not have the image's scale or voltage, a record gets
/// them (.npy both, .mrc the voltage). A former record of the file is replaced in any case. Pictures get no record.
/// Throws  file_error, before anything is written if there is no place for the record
void write_recorded_image(const std::filesystem::path& file, const image& pixels);

}  // namespace zentrix::host
