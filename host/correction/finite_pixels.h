#pragma once

#include <complex>
#include <cstddef>

#include "host/objects/image.h"

/// Pixels of a wave that are infinite or not a number. A single one makes every pixel of the transform not a number.
/// `wave` is complex of two floats per pixel and contiguous.
namespace zentrix::host {

std::size_t count_not_finite(const image& wave);

/// The mean of the finite pixels; 0 when there is none.
std::complex<float> mean_of_finite(const image& wave);

/// Sets all pixels that are not finite to `value`.
void replace_not_finite(image& wave, std::complex<float> value);

}  // namespace zentrix::host
