#pragma once

#include <string>

#include "lens/transfer.h"

/// Numbers that are usually in another unit than they should be. The texts name both units.
namespace zentrix::lens {

/// Accepts the accelerating voltages of electron microscopes, 1 to 3000 kV.
/// Throws  std::invalid_argument for others: "300000 kV: are these volts? ..."
void check_kilovolts(double kilovolts);

/// Accepts pixels of 1e-4 nm and more.
/// Throws  std::invalid_argument for others: "The pixel size is 2e-11 nm: are these metres? ..."
void check_pixel_size(double nanometres);

/// Accepts wavelengths of 1e-6 nm and more.
/// Throws  std::invalid_argument for others: "The wavelength is 2e-12 nm: are these metres? ..."
void check_wavelength(double nanometres);

/// Sentences on numbers that are possible but usually in another unit, each with its line end; empty if there are none:
/// coefficients below 1e-4 nm or above 100 m, scattering angles that no lens accepts, pixels of more than 1 um with
/// electrons. A coefficient is named with its unit.
std::string doubts_about_units(const optics& setup);

}  // namespace zentrix::lens
