#pragma once

#include <cstdint>

/// Pictures that were drawn in greys on a light grey ground, shown on any ground.
namespace qorv::panel {

/// The grey of the ground in the pictures of the resources.
inline constexpr std::uint32_t picture_ground = 0xc0;

/// The pixel that is laid over another ground: black where the picture is darker than its ground, white where it is
/// lighter, and the more opaque the more it differs. On the picture's own ground the result is the picture.
/// grey      of the picture, 0 to 255
/// strength  0 (nothing is seen) to 255
/// Returns   blue, green, red and opacity from the lowest byte up, the colours multiplied by the opacity
constexpr std::uint32_t overlay_pixel(std::uint32_t grey, std::uint32_t strength)
{
    const bool lighter = grey > picture_ground;
    const std::uint32_t difference = lighter ? grey - picture_ground : picture_ground - grey;
    const std::uint32_t most = lighter ? 255 - picture_ground : picture_ground;
    const std::uint32_t opacity = difference * strength / most;
    return opacity << 24 | (lighter ? opacity * 0x010101 : 0);
}

}  // namespace qorv::panel
