#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "binding/values.h"

/// Script functions of the library: apodisation windows. docs/script-reference.md tells what each does.
namespace qorv::functions {

using binding::image_ref;
using binding::output;
using binding::tag_group_ref;

image_ref FTWindowDM(image_ref imgSrc, std::int32_t eMode, image_ref imgDst);
image_ref HanningWindowDM(image_ref imgSrc, double fA, double fB, double fC, image_ref imgDst);
image_ref HanningWindowComplexDM(image_ref imgSrc, std::complex<double> fA, std::complex<double> fB,
                                 std::complex<double> fC, image_ref imgDst);
image_ref SineWindowDM(image_ref imgSrc, double fA, double fB, double fC, image_ref imgDst);
image_ref SineWindowComplexDM(image_ref imgSrc, std::complex<double> fA, std::complex<double> fB,
                              std::complex<double> fC, image_ref imgDst);
image_ref VorbisWindowDM(image_ref imgSrc, double fA, double fB, double fC, image_ref imgDst);
image_ref VorbisWindowComplexDM(image_ref imgSrc, std::complex<double> fA, std::complex<double> fB,
                                std::complex<double> fC, image_ref imgDst);

}  // namespace qorv::functions
