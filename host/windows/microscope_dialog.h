#pragma once

#include <windows.h>

#include <optional>

#include "host/windows/panel_handler.h"

namespace zentrix::host {

/// Lets the user edit voltage, pixel size and envelope. Ends only with values that make sense, or with nothing when the
/// user gives up.
std::optional<microscope> ask_microscope(HWND owner, const microscope& present);

}  // namespace zentrix::host
