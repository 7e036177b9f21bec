#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "binding/values.h"

/// Script functions of the library: statistics, extremes, radial curves. docs/script-reference.md tells what each does.
namespace qorv::functions {

using binding::image_ref;
using binding::output;
using binding::tag_group_ref;

void SurveyDifferenceDM(image_ref imgSrc1, image_ref imgSrc2, output<double> fSum1, output<double> fSqSum1,
                        output<double> fSum2, output<double> fSqSum2, output<double> fSumDiff,
                        output<double> fSumSqDiff, output<double> fSumAbsDiff);
void MinMaxStableDM(image_ref imgSrc, output<std::int32_t> nMinX, output<std::int32_t> nMinY,
                    output<std::int32_t> nMinZ, output<double> fMin, output<std::int32_t> nMaxX,
                    output<std::int32_t> nMaxY, output<std::int32_t> nMaxZ, output<double> fMax);
void MinMaxDM(image_ref imgSrc, output<std::int32_t> nMinX, output<std::int32_t> nMinY, output<std::int32_t> nMinZ,
              output<double> fMin, output<std::int32_t> nMaxX, output<std::int32_t> nMaxY, output<std::int32_t> nMaxZ,
              output<double> fMax);
double MinDM(image_ref imgSrc, output<std::int32_t> nX, output<std::int32_t> nY, output<std::int32_t> nZ);
double MaxDM(image_ref imgSrc, output<std::int32_t> nX, output<std::int32_t> nY, output<std::int32_t> nZ);
image_ref RadialSurveyDM(image_ref imgSrc, std::int32_t nCX, std::int32_t nCY, double fScaleX, double fScaleY);
std::int32_t GetCenterOfMassDM(image_ref imgSrc, output<double> fX, output<double> fY, double fRad,
                               std::int32_t nCycles, double fThreshold);

}  // namespace qorv::functions
