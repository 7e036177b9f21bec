#pragma once

#include <windows.h>

#include <optional>

#include "host/windows/panel_handler.h"

namespace zentrix::host {

/// Shows a dialog to edit voltage, pixel size and envelope. OK is refused, with a sentence in the dialog, while a
/// field has no number, a number that is not possible, or one that is usually in another unit. A decimal comma is
/// accepted.
/// owner    the window that is disabled while the dialog is open
/// present  the initial values
/// Returns the edited values; empty after Cancel.
std::optional<microscope> ask_microscope(HWND owner, const microscope& present);

}  // namespace zentrix::host
