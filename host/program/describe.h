#pragma once

#include <string>

#include "host/objects/image.h"

namespace zentrix::program {

/// "complex64 512 x 512": element type, then width, height and depth as far as there are.
std::string one_line(const host::image& pixels);

/// {"type": "complex64", "size": [512, 512]}, with "file" when the image was written to one.
std::string as_json(const host::image& pixels, const std::string& file = {});

}  // namespace zentrix::program
