#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "plugin/host/values.h"

/// Script functions of the library: the image survey. docs/script-reference.md tells what each does.
namespace qorv::library {

using host::image_ref;
using host::output;
using host::tag_group_ref;

void SurveyDM(image_ref imgSrc, output<double> fMin, output<double> fMax, output<double> fSum, output<double> fSqsum,
              output<double> fSumAbs);
void SurveyFourDM(image_ref imgSrc, output<double> fMin, output<double> fMax, output<double> fSum,
                  output<double> fSqsum);

}  // namespace qorv::library
