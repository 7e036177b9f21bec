#pragma once

#include <cstdint>

#include "host/objects/image.h"

namespace zentrix::host {

struct hologram_values
{
    image_ref image;   ///< float32
    int exponent = 0;  ///< the recorded values are 2^exponent times those of `image`
};

/// One plane of a recorded hologram as float32, in memory of its own. Values whose largest modulus is below 2^-30 or
/// above 2^30 are multiplied by the power of two that brings the median of their moduli to 0.5 to 1 (that of the
/// largest if the median is 0), because squares of them would not fit into single precision.
/// hologram  integers or reals of two or three dimensions
/// z         the plane
/// what      "hologram" or "reference", for messages
/// Throws  script_error for other images, with their type and size, and for a plane with pixels that are infinite, not
///         a number or more than 10^38 times the median, with their count
hologram_values hologram_plane(const image_ref& hologram, std::uint32_t z, const char* what = "hologram");

}  // namespace zentrix::host
