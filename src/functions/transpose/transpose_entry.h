#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "binding/values.h"

/// Script functions of the library: volume transposes. docs/script-reference.md tells what each does.
namespace qorv::functions {

using binding::image_ref;
using binding::output;
using binding::tag_group_ref;

image_ref TransposeXZDM(image_ref imgSrc, image_ref imgDst);
image_ref TransposeYZDM(image_ref imgSrc, image_ref imgDst);

}  // namespace qorv::functions
