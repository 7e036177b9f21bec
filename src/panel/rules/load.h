#pragma once

#include <array>
#include <cstdint>

#include "panel/rules/panel_link.h"
#include "panel/rules/tag_record.h"

/// How pages and panel are loaded from the tags.
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
    bool has_handler = false;  ///< without a handler nothing is read and the page is only disabled
    bool enabled = false;      ///< also false when the key or the tag group is missing
    page_values values;        ///< a missing key leaves the default of row_values
};

/// Reads the keys of a page row by row (modulus, modulus step, angle, angle step), then its enable key.
page_load load_page(const panel_link& link, page_id page);

/// The entry of the display selector (0..4) for a mode (1..5). Any other mode selects entry 0.
int entry_of_display_mode(std::int32_t mode);
/// The mode of an entry.
inline std::int32_t display_mode_of_entry(int entry) { return entry + 1; }

struct panel_load
{
    bool enabled = false;
    std::int32_t has_pctf = 0;
    int display_entry = 0;
};

/// Reads the panel's keys. A missing key counts as 0.
panel_load load_panel(const panel_link& link);

}  // namespace qorv::panel
