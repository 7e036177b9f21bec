#include "plugin/panel_functions.h"

#include "entry/timing_scope.h"

namespace qorv::dm {

void ZentrixPanelUpdateDM() { const timing_scope timing{"ZentrixPanelUpdateDM"}; }

std::int32_t IsPaletteOpenDM()
{
    const timing_scope timing{"IsPaletteOpenDM"};
    return 0;
}

std::int32_t IsWindowVisibleDM()
{
    const timing_scope timing{"IsWindowVisibleDM"};
    return 0;
}

void register_panel(Gatan::PlugIn::PlugInMain&) {}

}  // namespace qorv::dm
