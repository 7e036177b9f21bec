#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "plugin/host/values.h"

/// Script functions of the library: volume transposes. docs/script-reference.md tells what each does.
namespace qorv::library {

using host::image_ref;
using host::output;
using host::tag_group_ref;

image_ref TransposeXZDM(image_ref imgSrc, image_ref imgDst);
image_ref TransposeYZDM(image_ref imgSrc, image_ref imgDst);

}  // namespace qorv::library
