#pragma once

namespace zentrix::lens {

/// Relativistic wavelength [nm] of an electron after an accelerating voltage [kV]:
/// lambda = h c / sqrt(E (E + 2 m c^2)) with E = e U and the constants of CODATA 2018.
/// Throws  std::invalid_argument unless kilovolts is positive and finite
double electron_wavelength(double kilovolts);

}  // namespace zentrix::lens
