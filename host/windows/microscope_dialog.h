#pragma once

#include <windows.h>

#include <optional>

#include "host/windows/panel_handler.h"

namespace zentrix::host {

/// Shows a dialog to edit voltage, pixel size and envelope. OK is refused while a field is not a positive number (zero
/// is allowed for the envelope).
/// owner    the window that is disabled while the dialog is open
/// present  the initial values
/// Returns the edited values; empty after Cancel.
std::optional<microscope> ask_microscope(HWND owner, const microscope& present);

}  // namespace zentrix::host
