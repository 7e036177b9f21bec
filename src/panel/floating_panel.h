#pragma once

#include <windows.h>

#include "panel/rules/panel_link.h"

/// The panel's interface for the rest of the plug-in. All functions run on the user-interface thread.
namespace qorv::panel {

/// Creates the panel, hidden. Only one panel can exist at a time.
/// parent  its parent window; null for the desktop
/// link    the panel's connection to the host; must outlive the panel
/// Throws  std::runtime_error "The panel exists already." and "The panel's window cannot be created."
HWND create_floating_panel(HWND parent, panel_link& link);
/// Destroys a panel that create_floating_panel returned. Does nothing for any other window.
void destroy_floating_panel(HWND panel) noexcept;

/// Whether a panel exists that has been shown, even if it is hidden now.
bool palette_open() noexcept;
/// Non-zero while the panel's window is visible; 0 without a panel.
long window_visible() noexcept;
/// Makes the panel and its sheet read the tags again. Does nothing without tags, or before the panel is first shown.
void update_panel();

}  // namespace qorv::panel
