#include "panel/current.h"

namespace qorv::panel {

panel_link* current::link = nullptr;
CZentrixPanel* current::panel = nullptr;
CZXSheet* current::sheet = nullptr;

}  // namespace qorv::panel
