#pragma once

/// The electron as a wave.
namespace zentrix::lens {

/// Wavelength [nm] of an electron behind an accelerating voltage [kV], relativistic:
/// lambda = h c / sqrt(E (E + 2 m c^2)) with E = e U and the constants of CODATA 2018.
/// Throws  std::invalid_argument unless kilovolts is positive and finite
double electron_wavelength(double kilovolts);

}  // namespace zentrix::lens
