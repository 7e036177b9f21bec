#pragma once

#include <cstdint>
#include <string>

#include "host/objects/calibration.h"

namespace zentrix::program {

/// "1/nm" for "nm", "nm" for "1/nm" and "nm^-1"; empty for an empty unit.
std::string reciprocal_unit(const std::string& unit);

/// The scale along one dimension of the Fourier transform: step 1 / (pixels * step) in the reciprocal unit. Unknown
/// for an unknown step.
/// of      scale of the transformed image
/// pixels  its length along this dimension
/// zero    index of the pixel at position 0 in the result: the zero frequency, or the image's origin
host::axis_scale reciprocal_scale(const host::axis_scale& of, std::uint32_t pixels, std::uint32_t zero);

}  // namespace zentrix::program
