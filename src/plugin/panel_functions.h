#pragma once

#include <cstdint>

#include "framework/plugin_main.h"

/// The script functions about the floating panel, and its registration. Where there are no windows there is no panel:
/// the queries answer 0, the update does nothing and nothing is registered.
namespace qorv::dm {

/// Script function ZXZentrixPanelUpdate: the panel, then its sheet, read their values again from the held tag group.
/// Does nothing without a tag group or while there is no panel.
void ZentrixPanelUpdateDM();

/// Script function ZXIsPaletteOpen: 1 once the panel was shown, also while it is hidden again; else 0.
std::int32_t IsPaletteOpenDM();

/// Script function ZXIsWindowVisible: non-zero while the panel's window is visible; 0 without a panel.
std::int32_t IsWindowVisibleDM();

/// Registers the floating panel under the title "Zentrix".
void register_panel(Gatan::PlugIn::PlugInMain& plug_in);

}  // namespace qorv::dm
