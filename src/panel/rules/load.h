#pragma once

#include <array>
#include <cstdint>

#include "panel/rules/panel_link.h"
#include "panel/rules/tag_record.h"

/// What pages and panel take from the tags when they load.
namespace qorv::panel {

struct row_values
{
    float modulus = 0;
    float modulus_step = 1;
    std::int32_t angle = 0;
    std::int32_t angle_step = 1;
    friend bool operator==(const row_values&, const row_values&) = default;
};

inline constexpr int most_rows = 3;

struct page_values
{
    std::array<row_values, most_rows> rows;
    friend bool operator==(const page_values&, const page_values&) = default;
};

struct page_load
{
    bool has_handler = false;  ///< without one nothing was read and the page is only greyed
    bool enabled = false;      ///< false, too, when its key or the whole tag group is missing
    page_values values;        ///< a missing key leaves the default of row_values
};

/// Reads the keys of a page, row by row (modulus, modulus step, angle, angle step), then its switch.
page_load load_page(const panel_link& link, page_id page);

/// The entries of the display selector, in its order.
inline constexpr const char* display_names[] = {"Real", "Imaginary", "Modulus", "Log of Modulus", "Phase"};

/// Entry of the display selector (0..4) for a mode (1..5); 0 and anything else that is no mode selects the first.
int entry_of_display_mode(std::int32_t mode);
/// The mode that an entry stands for.
inline std::int32_t display_mode_of_entry(int entry) { return entry + 1; }

struct panel_load
{
    bool enabled = false;
    std::int32_t has_pctf = 0;
    int display_entry = 0;
};

/// Reads the panel's keys; a missing one counts as 0.
panel_load load_panel(const panel_link& link);

}  // namespace qorv::panel
