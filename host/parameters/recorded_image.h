#pragma once

#include <filesystem>

#include "host/objects/image.h"

namespace zentrix::host {

/// Reads an image file as read_image does. If the file has no scale, as .npy files, it gets that of its record, see
/// recorded_scale. Throws  file_error
image_ref read_recorded_image(const std::filesystem::path& file);

}  // namespace zentrix::host
