#pragma once

#include <cstdint>

#include "framework/plugin_main.h"

/// The script functions of the floating panel, and its registration. On platforms without windows there is no panel:
/// the queries return 0, the update does nothing and nothing is registered.
namespace qorv::dm {

/// Script function ZXZentrixPanelUpdate: the panel, then its sheet, re-read their values from the held tag group. Does
/// nothing without a tag group or a panel.
void ZentrixPanelUpdateDM();

/// Script function ZXIsPaletteOpen: 1 once the panel has been shown, even while it is hidden; else 0.
std::int32_t IsPaletteOpenDM();

/// Script function ZXIsWindowVisible: non-zero if the panel's window is visible; 0 without a panel.
std::int32_t IsWindowVisibleDM();

/// Registers the floating panel under the title "Zentrix".
void register_panel(Gatan::PlugIn::PlugInMain& plug_in);

}  // namespace qorv::dm
