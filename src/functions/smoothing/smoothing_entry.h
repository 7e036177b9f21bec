#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "binding/values.h"

/// Script functions of the library: moving averages and the Gaussian. docs/script-reference.md tells what each does.
namespace qorv::functions {

using binding::image_ref;
using binding::output;
using binding::tag_group_ref;

image_ref MovingAverageDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst);
void MovingAverageDM2(image_ref imgSrc, std::int32_t nRad, output<image_ref> imgDst1, output<image_ref> imgDst2);
image_ref MovingAverageXDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst);
image_ref MovingAverageYDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst);
image_ref MovingAverageZDM(image_ref imgSrc, std::int32_t nRad, image_ref imgDst);
image_ref GaussianBlurDM(image_ref imgSrc, double fRad, std::int32_t nOrder, image_ref imgDst);

}  // namespace qorv::functions
