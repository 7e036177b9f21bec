#pragma once

#include "panel/rules/panel_link.h"

namespace qorv::panel {

class CZentrixPanel;
class CZXSheet;

/// The process-wide objects: the host's link, the panel and its sheet. For the user-interface thread.
struct current
{
    static panel_link* link;      ///< never null while a panel exists
    static CZentrixPanel* panel;  ///< the panel last shown for the first time; null after its window is destroyed
    static CZXSheet* sheet;       ///< null while the sheet has no window
};

}  // namespace qorv::panel
