#include "panel/rules/panel_layout.h"

namespace qorv::panel {

int panel_height(extent sheet, extent apply, extent label) { return sheet.height + apply.height + label.height + 25; }

control_row lay_out_controls(const rectangle& client, extent label, extent combo, extent apply, extent pctf)
{
    const int bottom = client.bottom, right = client.right;
    const int above_apply = bottom - apply.height - 8;
    const int combo_top = above_apply - label.height;
    control_row row;
    row.label = {client.left, above_apply - 5 - label.height, label.width, above_apply};
    row.combo = {label.width, combo_top, label.width + combo.width, combo_top + combo.height};
    row.apply = {right - apply.width, bottom - apply.height - 8, right - 8, bottom - 8};
    row.pctf = {row.apply.left - 8 - pctf.width, bottom - pctf.height - 8, row.apply.left - 8, bottom - 8};
    return row;
}

sheet_widths shrunken_widths(int tab_width, int sheet_width)
{
    const int half = tab_width / 2;
    return {tab_width - half, static_cast<int>(0.975 * (sheet_width - half))};
}

}  // namespace qorv::panel
