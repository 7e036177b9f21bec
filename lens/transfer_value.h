#pragma once

#include <complex>

#include "lens/transfer.h"

namespace zentrix::lens {

/// The transfer function that `ZXWTFMulDLL` multiplies by, at one frequency, in double precision: profiles along a
/// direction need values between the frequencies of an image.
/// arguments  of arguments_for with an even width and height
/// frequency  [1/nm]; real part right, imaginary part up on the displayed image
std::complex<double> transfer_value(const transfer_arguments& arguments, std::complex<double> frequency);

}  // namespace zentrix::lens
