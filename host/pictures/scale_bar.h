#pragma once

#include <string>

#include "host/objects/calibration.h"

namespace zentrix::host {

/// The length of a scale bar.
struct bar_length
{
    double pixels = 0;  ///< 0: no bar, because the scale is unknown
    std::string label;  ///< "5 nm"
};

/// The longest bar of 1, 2 or 5 times a power of ten that is not longer than `longest_pixels`. Lengths are in metres
/// to picometres: nanometres from 0.1 nm, larger units from 1 of them. Other units stay as they are, with "1/nm"
/// as "nm" to the power of -1.
bar_length round_bar(const axis_scale& along, double longest_pixels);

/// The largest of 1, 2 and 5 times a power of ten that is not larger than `limit`, which is positive.
double round_number_below(double limit);

/// A number with at most `digits` after the point, with a minus sign of the length of a plus sign and without a
/// negative zero.
std::string number_label(double value, int digits);

/// The digits after the point that multiples of a round number need: 0 for 20, 1 for 0.5.
int digits_for(double round_step);

/// A whole number as superscript: for exponents.
std::string superscript(int exponent);

}  // namespace zentrix::host
