#pragma once

#include <string>

#include "host/objects/image.h"
#include "host/program/json.h"

namespace zentrix::program {

/// Element type and size: "complex64 512 x 512".
std::string one_line(const host::image& pixels);

/// {"type": "complex64", "size": [512, 512]}, and "file" unless that is empty.
json as_json(const host::image& pixels, const std::string& file = {});

}  // namespace zentrix::program
