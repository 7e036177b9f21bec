#pragma once

#include <complex>
#include <cstddef>

namespace zentrix::host {

/// The frequency near `start` at which the transform of an image is greatest, between the pixels of the transform. For
/// a single wave in white noise this is the maximum-likelihood estimate of its frequency (Rife, Boorstyn, IEEE Trans.
/// Information Theory 20 (1974) 591-598).
/// pixels  width x height, real, contiguous, without its mean and with a window that falls to zero at the edges
/// start   [periods per image], right and down; at most about one from the maximum
/// Returns the frequency, or `start` if the maximum is more than 1.5 periods away
std::complex<double> refine_carrier(const float* pixels, std::ptrdiff_t width, std::ptrdiff_t height,
                                    std::complex<double> start);

}  // namespace zentrix::host
