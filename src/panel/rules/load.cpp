#include "panel/rules/load.h"

namespace qorv::panel {

page_load load_page(const panel_link& link, page_id page)
{
    page_load loaded;
    loaded.has_handler = link.has_handler();
    if (!loaded.has_handler || !link.has_tags()) return loaded;
    auto values = loaded.values.rows.begin();
    for (const coefficient& row : rows_of(page)) {
        values->modulus = link.read_float(row.modulus).value_or(0.0f);
        values->modulus_step = link.read_float(row.modulus_step).value_or(1.0f);
        if (!row.round()) {
            values->angle = link.read_long(row.angle).value_or(0);
            values->angle_step = link.read_long(row.angle_step).value_or(1);
        }
        ++values;
    }
    loaded.enabled = link.read_long(page_enable_keys[static_cast<int>(page)]).value_or(0) != 0;
    return loaded;
}

int entry_of_display_mode(std::int32_t mode) { return mode >= 1 && mode <= 5 ? mode - 1 : 0; }

panel_load load_panel(const panel_link& link)
{
    panel_load loaded;
    loaded.enabled = link.read_long(apply_enable_key).value_or(0) != 0;
    loaded.has_pctf = link.read_long(has_pctf_key).value_or(0);
    loaded.display_entry = entry_of_display_mode(link.read_long(display_mode_key).value_or(0));
    return loaded;
}

}  // namespace qorv::panel
