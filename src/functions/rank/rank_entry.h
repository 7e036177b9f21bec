#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "binding/values.h"

/// Script functions of the library: rank filters and medians. docs/script-reference.md tells what each does.
namespace qorv::functions {

using binding::image_ref;
using binding::output;
using binding::tag_group_ref;

image_ref MaximumFilterDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst);
image_ref MinimumFilterDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst);
image_ref MedianFilterDM2(image_ref imgSrc, std::int32_t nRad, image_ref imgDst, std::int32_t nUseZeroPadding);
image_ref MedianFilterDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst);
double NthElementDM(image_ref imgSrc, std::int32_t n);
double MedianDM(image_ref imgSrc);
image_ref MedianZDM(image_ref imgSrc, image_ref imgDst);

}  // namespace qorv::functions
