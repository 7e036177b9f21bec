#pragma once

#include <complex>

#include "lens/aberrations.h"

/// The aberration function is linear in the coefficients. This is what each of them contributes.
namespace zentrix::lens {

/// The term of one coefficient: chi(w) = 2 pi / lambda * sum Re{coefficient * aberration_term(coefficient, w)}. So the
/// derivative of chi is 2 pi / lambda times the real part of the term for the real part of the coefficient, and the
/// negative imaginary part of the term for its imaginary part.
/// w        scattering angle on the displayed image, imaginary part up [rad]
/// Returns  |w|^(n - m) conj(w)^m / divisor for a coefficient of order n and symmetry m
std::complex<double> aberration_term(coefficient which, std::complex<double> w);

/// The power of the angle in the coefficient's term: 2 for C1 to 6 for S5.
int order_of(coefficient which);

/// Whether the term has the same value at w and -w. Odd ones change the modulus of a weak phase object's wave in second
/// order only.
bool is_even(coefficient which);

}  // namespace zentrix::lens
