#pragma once

/// Numbers that are usually in another unit than they should be. The texts name both units.
namespace zentrix::lens {

/// Accepts the accelerating voltages of electron microscopes, 1 to 3000 kV.
/// Throws  std::invalid_argument for others: "300000 kV: are these volts? ..."
void check_kilovolts(double kilovolts);

/// Accepts pixels of 1e-4 nm and more.
/// Throws  std::invalid_argument for others: "The pixel size is 2e-11 nm: are these metres? ..."
void check_pixel_size(double nanometres);

}  // namespace zentrix::lens
