#pragma once

#include "panel/rules/knob_geometry.h"

/// Layout of the floating panel, applied when it is first shown. Client pixels.
namespace qorv::panel {

struct extent
{
    int width, height;
};

/// The client height for the sheet and two rows of controls below it.
int panel_height(extent sheet, extent apply, extent label);

struct control_row
{
    rectangle label, combo, apply, pctf;
};

/// Places the controls at the bottom of `client`. The extents are the controls' present sizes. Apply becomes eight
/// pixels narrower, the label five pixels taller.
control_row lay_out_controls(const rectangle& client, extent label, extent combo, extent apply, extent pctf);

/// Widths of the property sheet and its tab strip, set before the system fits them to the pages. The system's initial
/// widths exceed the panel, and it only ever widens them.
struct sheet_widths
{
    int tab, sheet;
};
sheet_widths shrunken_widths(int tab_width, int sheet_width);

}  // namespace qorv::panel
