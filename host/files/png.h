#pragma once

#include <filesystem>

#include "host/pictures/picture.h"

namespace zentrix::host {

/// Writes a picture as .png. Throws  file_error
void write_png(const std::filesystem::path& file, const picture& shown);

/// Writes a picture of an image as .png, grey between robust limits or in cyclic colours.
/// Throws  file_error, also for an image of three dimensions
void write_png(const std::filesystem::path& file, const image& pixels, display_mode mode,
               palette shades = palette::grey);

}  // namespace zentrix::host
