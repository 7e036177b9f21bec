#pragma once

#include "panel/rules/panel_link.h"

/// What there is once in a process: the host behind the panel, the panel and its sheet.
namespace qorv::panel {

class CZentrixPanel;
class CZXSheet;

struct current
{
    static panel_link* link;      ///< never null while a panel exists
    static CZentrixPanel* panel;  ///< the one last shown for the first time; null when it is gone
    static CZXSheet* sheet;       ///< null while it has no window
};

}  // namespace qorv::panel
