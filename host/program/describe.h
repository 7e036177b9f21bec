#pragma once

#include <string>

#include "host/correction/unwrap_report.h"
#include "host/objects/image.h"
#include "host/program/json.h"

namespace zentrix::program {

/// Element type and size: "complex64 512 x 512".
std::string one_line(const host::image& pixels);

/// {"type": "complex64", "size": [512, 512]}, and "file" unless that is empty.
json as_json(const host::image& pixels, const std::string& file = {});

/// {"positive_residues": 2, "negative_residues": 2, "cut_pixels": 14, ...}
json as_json(const host::unwrap_report& report);

}  // namespace zentrix::program
