#pragma once

#include "panel/rules/knob_geometry.h"

/// Where the floating panel's pieces go when it is first shown. Pixels of the panel's client area.
namespace qorv::panel {

struct extent
{
    int width, height;
};

/// The client height that holds the sheet and two rows of controls below it.
int panel_height(extent sheet, extent apply, extent label);

struct control_row
{
    rectangle label, combo, apply, pctf;
};

/// Places the controls at the bottom of `client`. The sizes are those the controls have before; Apply becomes eight
/// pixels narrower, the label five pixels higher.
control_row lay_out_controls(const rectangle& client, extent label, extent combo, extent apply, extent pctf);

/// Widths of the property sheet and of its tab strip before the toolkit fits them to the pages: the toolkit never makes
/// them narrower than it finds them, and as it made them they are wider than the panel.
struct sheet_widths
{
    int tab, sheet;
};
sheet_widths shrunken_widths(int tab_width, int sheet_width);

}  // namespace qorv::panel
