#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/pictures/display_mode.h"
#include "host/pictures/shades.h"

/// Pictures to look at: 8 bits a channel, row 0 on top.
namespace zentrix::host {

/// A picture: rows from the top, without gaps, of grey (1 channel) or red, green and blue (3).
struct picture
{
    int width = 0;
    int height = 0;
    int channels = 1;
    std::vector<std::uint8_t> bytes;
};

/// The first plane of an image as a picture, in cyclic colours or in grey between `limits`, else the robust ones. A pixel
/// that is not a number is black; in colours an infinite one too.
picture make_picture(const image& pixels, display_mode mode, palette shades,
                     std::optional<grey_limits> limits = std::nullopt);

}  // namespace zentrix::host
