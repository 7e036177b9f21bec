#pragma once

#include <string>

#include "host/estimation/estimate.h"

namespace zentrix::host {

/// A result for people, lines ended by CR LF: "C1  -61.9 nm, +- 0.2" for each coefficient that is determined, "B2  not
/// determined: " and the reason for the others; criterion, agreement of the starts and time.
std::string text_of(const estimate& found);

}  // namespace zentrix::host
