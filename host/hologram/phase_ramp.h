#pragma once

#include <complex>

#include "host/objects/image.h"

namespace zentrix::host {

/// The ramp of phase of the parts of a wave where nothing else changes it: the median phase difference over an eighth
/// of the image along each axis. What covers less than half of the image hardly changes the median.
/// wave  complex of two floats, two dimensions, contiguous; its ramp is below 4 periods per image
/// Returns  periods per image, right and down
std::complex<double> phase_ramp(const image& wave);

/// Multiplies a wave by the phase ramp of -`periods` per image, right and down.
void remove_ramp(image& wave, std::complex<double> periods);

}  // namespace zentrix::host
