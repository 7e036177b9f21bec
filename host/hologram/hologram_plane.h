#pragma once

#include <cstdint>

#include "host/objects/image.h"

namespace zentrix::host {

/// One plane of a recorded hologram as float32, in memory of its own.
/// hologram  integers or reals of two or three dimensions
/// z         the plane
/// what      "hologram" or "reference", for messages
/// Throws  script_error for other images, with their type and size, and for a plane with pixels that are infinite or
///         not a number, with their count
image_ref hologram_plane(const image_ref& hologram, std::uint32_t z, const char* what = "hologram");

}  // namespace zentrix::host
