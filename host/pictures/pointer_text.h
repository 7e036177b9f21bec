#pragma once

#include <string>

#include "host/pictures/display_mode.h"

/// What a status line says of the pixel under the mouse.
namespace zentrix::host {

/// A number with four digits: "0.3412", "−1.2e-05", "∞", "not a number".
std::string short_number(float value);

/// "x 12.35 nm, y 0.05 nm (247, 1)": from the upper left corner of the image, right and down, with as many digits as
/// tell neighbouring pixels apart.
/// pixel_nm  0: unknown; the text is then "(247, 1)"
std::string place_text(pixel_place place, double pixel_nm);

/// "4.21 /nm (0.238 nm), 35°": a spatial frequency with its period and direction, counter-clockwise from the right;
/// "0" for frequency zero. Without
/// superscripts, which the system's typeface may not have.
/// right, up  [1/nm]
std::string frequency_text(double right, double up);

/// "63 %": screen pixels for each pixel of an image.
std::string zoom_text(double zoom);

/// "phase −0.341 rad", "ln modulus 0.02": the displayed value of a pixel of the first plane.
/// Throws  script_error for elements that are not numbers
std::string value_text(const image& pixels, pixel_place place, display_mode mode);

}  // namespace zentrix::host
