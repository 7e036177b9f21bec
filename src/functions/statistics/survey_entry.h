#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "binding/values.h"

/// Script functions of the library: the image survey. docs/script-reference.md tells what each does.
namespace qorv::functions {

using binding::image_ref;
using binding::output;
using binding::tag_group_ref;

void SurveyDM(image_ref imgSrc, output<double> fMin, output<double> fMax, output<double> fSum, output<double> fSqsum,
              output<double> fSumAbs);
void SurveyFourDM(image_ref imgSrc, output<double> fMin, output<double> fMax, output<double> fSum,
                  output<double> fSqsum);

}  // namespace qorv::functions
