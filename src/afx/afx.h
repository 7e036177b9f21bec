#pragma once

/// The few classes of the Windows application framework that the panel uses, under the framework's own names,
/// implemented directly on the Win32 API. The panel's sources read as they would with the framework itself.

#include "afx/app.h"
#include "afx/controls.h"
#include "afx/data_exchange.h"
#include "afx/dialog.h"
#include "afx/gdi.h"
#include "afx/message_map.h"
#include "afx/object.h"
#include "afx/property_sheet.h"
#include "afx/types.h"
#include "afx/wnd.h"
