#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "binding/values.h"

/// Script functions on reciprocal space: radial weights and masks. docs/script-reference.md describes each.
namespace qorv::functions {

using binding::image_ref;
using binding::output;
using binding::tag_group_ref;

image_ref WeightDM(image_ref imgSrc, image_ref imgW, std::int32_t nCX, std::int32_t nCY, float fScaleX, float fScaleY,
                   std::int32_t eMode, image_ref imgDst);
image_ref MaskDM(image_ref cimSrc, image_ref cimPeaks, image_ref imgMtx, float fRad, float fH, image_ref cimDst);
image_ref CrossCorrelationMaskWithDefocusDM(image_ref cimTarg, image_ref cimRef, std::int32_t nCX, std::int32_t nCY,
                                            float fScaleX, float fScaleY, float f, float fRad, std::int32_t eMode,
                                            output<double> fMean, image_ref cimDst);

}  // namespace qorv::functions
