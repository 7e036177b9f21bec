#pragma once

#include <string>

#include "host/estimation/estimate.h"

namespace zentrix::host {

/// A result for people, lines ended by CR LF: "A1  9.01 +- 0.02 nm at 30.1 +- 0.1 degrees" for each coefficient that is
/// determined (with the sign for plus-minus), "B2  not determined: " and the reason for the others; criterion, agreement
/// of the starts and time.
std::string text_of(const estimate& found);

}  // namespace zentrix::host
