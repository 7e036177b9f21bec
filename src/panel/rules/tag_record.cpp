#include "panel/rules/tag_record.h"

namespace qorv::panel {

const std::array<tag_rule, tag_count>& tag_record()
{
    static constexpr auto record = [] {
        std::array<tag_rule, tag_count> rules{};
        auto next = rules.begin();
        for (int page = 0; page < page_count; ++page) {
            for (const coefficient& row : rows_of(static_cast<page_id>(page))) {
                *next++ = {row.modulus, tag_type::float32, page, tag_read::page_load, tag_written::value_edit};
                *next++ = {row.modulus_step, tag_type::float32, page, tag_read::page_load, tag_written::step_edit};
                if (row.round()) continue;
                *next++ = {row.angle, tag_type::long32, page, tag_read::page_load_and_knob, tag_written::knob_change};
                *next++ = {row.angle_step, tag_type::long32, page, tag_read::page_load, tag_written::never};
            }
            *next++ = {page_enable_keys[page], tag_type::long32, page, tag_read::page_load, tag_written::never};
        }
        *next++ = {apply_enable_key, tag_type::long32, -1, tag_read::panel_load, tag_written::never};
        *next++ = {has_pctf_key, tag_type::long32, -1, tag_read::panel_load, tag_written::never};
        *next++ = {display_mode_key, tag_type::long32, -1, tag_read::panel_load, tag_written::display_pick};
        return rules;
    }();
    return record;
}

}  // namespace qorv::panel
