#pragma once

#include <filesystem>

#include "host/objects/image.h"
#include "host/pictures/picture.h"

namespace zentrix::host {

/// Reads an image file by its extension: .npy.
/// Throws  file_error, also for another extension
image_ref read_image(const std::filesystem::path& file);

/// Writes an image by the file's extension: .npy keeps every value; .png is a picture of it in that mode.
/// Throws  file_error, also for another extension
void write_image(const std::filesystem::path& file, const image& pixels, display_mode shown = display_mode::real,
                 palette shades = palette::grey);

/// Checks the file's extension before any work is done. Throws  as write_image
void require_writable_kind(const std::filesystem::path& file);

}  // namespace zentrix::host
