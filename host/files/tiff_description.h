#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/objects/calibration.h"

/// The text that ImageJ writes into the description of a TIFF file: lines "key=value".
namespace zentrix::host {

/// Pixels per unit along x and y, as the resolution tags have it; 0: no tag.
struct tiff_resolution
{
    double x = 0, y = 0;
    double unit_nm = 0;  ///< length of the tags' own unit; 0: none
};

/// The number of images that follow the first one without pages of their own; 1 for other descriptions.
std::uint32_t images_in(std::string_view description);

/// Scale and voltage of a file. See read_tiff.
calibration tiff_scale(std::string_view description, const tiff_resolution& resolution);

/// The description for a file with that scale and so many images; empty when nothing is known of a single image.
std::string tiff_description(const calibration& about, std::uint32_t images);

}  // namespace zentrix::host
