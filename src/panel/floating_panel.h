#pragma once

#include <windows.h>

#include "panel/rules/panel_link.h"

/// The panel as the rest of the plug-in sees it. All on the user-interface thread.
namespace qorv::panel {

/// Makes the panel, hidden, as a child of `parent`, or of the desktop where there is none. There is one panel at a
/// time. `link` is used until the panel is destroyed.
/// Throws  std::runtime_error "The panel exists already." and "The panel's window cannot be created."
HWND create_floating_panel(HWND parent, panel_link& link);
/// Destroys a panel that create_floating_panel returned; any other window is left alone.
void destroy_floating_panel(HWND panel) noexcept;

/// Whether a panel exists that has been shown, even if it is hidden again.
bool palette_open() noexcept;
/// What the system says of the panel's window: non-zero while it is visible, 0 without a panel.
long window_visible() noexcept;
/// Panel and sheet read the tags again; nothing happens without tags, or before the panel was first shown.
void update_panel();

}  // namespace qorv::panel
