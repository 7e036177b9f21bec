#pragma once

#include <string>

#include "host/estimation/estimate.h"

namespace zentrix::host {

/// A result for people, lines ended by CR LF. Each coefficient that is determined has a line such as
/// "A1  9.01 ± 0.02 nm at 30.1 ± 0.1 degrees", each other one "B2  not determined: " and the reason. The last
/// lines give the criterion, the agreement of the starts and the time.
std::string text_of(const estimate& found);

}  // namespace zentrix::host
