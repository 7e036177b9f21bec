#pragma once

#include <complex>

#include "lens/transfer.h"

namespace zentrix::lens {

/// The transfer function that `ZXWTFMulDLL` multiplies by, at one frequency, in double precision: profiles along a
/// direction need values between the frequencies of an image.
/// arguments  of arguments_for with an even width and height
/// frequency  [1/nm]; real part right, imaginary part up on the displayed image
std::complex<double> transfer_value(const transfer_arguments& arguments, std::complex<double> frequency);

/// The aberration function chi [rad] at one frequency, zero at the zero frequency: the negative phase of
/// `transfer_value`, but not wrapped. Its differences tell where a sampled transfer function is undersampled.
/// Parameters as of transfer_value.
double aberration_function(const transfer_arguments& arguments, std::complex<double> frequency);

}  // namespace zentrix::lens
