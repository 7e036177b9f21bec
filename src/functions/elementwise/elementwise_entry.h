#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "binding/values.h"

/// Script functions of the library: element-wise real and complex operations. docs/script-reference.md tells what each
/// does.
namespace qorv::functions {

using binding::image_ref;
using binding::output;
using binding::tag_group_ref;

image_ref Polar1DM(image_ref imgRho, image_ref imgTheta, image_ref cimDst);
image_ref Polar2DM(double fRho, image_ref imgTheta, image_ref cimDst);
void AbsArgDM(image_ref cimSrc, output<image_ref> imgRho, output<image_ref> imgTheta);
image_ref AbsDM(image_ref cimSrc, image_ref imgDst);
image_ref Exp2DM(image_ref imgA, image_ref imgDst);
image_ref Log2DM(image_ref imgA, image_ref imgDst);
image_ref PowDM(image_ref imgA, image_ref imgB, image_ref imgDst);
image_ref CArgDM(image_ref cimSrc, image_ref cimDst);
image_ref CNormDM(image_ref cimSrc, double fScale, image_ref imgDst);

}  // namespace qorv::functions
