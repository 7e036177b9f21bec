#include "panel/rules/load.h"
#include "panel/rules/number_text.h"
#include "panel/rules/panel_layout.h"
#include "panel/rules/tag_record.h"
#include "tests/support/recording_link.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>

namespace qorv::panel {
namespace {

using support::recording_link;

TEST(tag_record, forms_every_key_once_and_writes_what_a_user_edits)
{
    std::set<std::string> keys;
    for (const tag_rule& rule : tag_record()) {
        const std::string key = rule.key;
        EXPECT_TRUE(keys.insert(key).second) << key;
        const bool step = key.ends_with("Accel"), angle = key.starts_with("Ang");
        const bool coefficient_key = step || angle || key.starts_with("Mod") || key.size() == 2;
        EXPECT_EQ(rule.type == tag_type::float32, coefficient_key && !angle) << key;
        EXPECT_EQ(rule.page < 0, key == "ApplyIsEnabled" || key == "hasPCTF" || key == "DisplayMode") << key;
        EXPECT_EQ(rule.written == tag_written::never, (angle && step) || key.ends_with("IsEnabled") || key == "hasPCTF")
            << key;
        EXPECT_EQ(rule.read == tag_read::page_load_and_knob, angle && !step) << key;
        EXPECT_EQ(rule.written == tag_written::step_edit, step && !angle) << key;
    }
    for (const char* name : {"A1", "B2", "A2", "S3", "A3", "B4", "D4", "A4", "A5", "R5", "S5"}) {
        for (const char* part : {"Mod", "Ang"}) {
            EXPECT_TRUE(keys.contains(std::string(part) + name)) << name;
            EXPECT_TRUE(keys.contains(std::string(part) + name + "Accel")) << name;
        }
    }
}

TEST(page, reads_its_keys_in_order_and_no_others)
{
    for (int page = 0; page < page_count; ++page) {
        recording_link link;
        load_page(link, static_cast<page_id>(page));
        std::vector<std::string> wanted;
        for (const tag_rule& rule : tag_record()) {
            if (rule.page == page) wanted.push_back(rule.key);
        }
        EXPECT_EQ(link.reads, wanted);
    }
}

TEST(page, takes_defaults_for_what_is_missing)
{
    recording_link link;
    link.floats = {{"ModB2", 2.5f}, {"ModA2Accel", 0.25f}};
    link.longs = {{"AngA1", 77}, {"AngB2Accel", 5}, {"BasicPaneIsEnabled", -1}};
    const auto basic = load_page(link, page_id::basic);
    EXPECT_TRUE(basic.has_handler && basic.enabled);
    EXPECT_EQ(basic.values.rows, (std::array<row_values, 3>{{{0, 1, 77, 1}, {2.5f, 1, 0, 5}, {0, 0.25f, 0, 1}}}));
    EXPECT_FALSE(load_page(link, page_id::third).enabled);

    link.tags = false;
    EXPECT_TRUE(load_page(link, page_id::basic).values == page_values{});
    EXPECT_FALSE(load_page(link, page_id::basic).enabled);
    link.tags = true;
    link.handler = false;
    link.reads.clear();
    EXPECT_FALSE(load_page(link, page_id::basic).has_handler);
    EXPECT_TRUE(link.reads.empty());
}

TEST(panel, maps_display_modes_to_entries_and_back)
{
    const int entries[] = {0, 0, 1, 2, 3, 4, 0};
    for (int mode = 0; mode <= 6; ++mode) EXPECT_EQ(entry_of_display_mode(mode), entries[mode]) << mode;
    EXPECT_EQ(entry_of_display_mode(-7), 0);
    for (int entry = 0; entry < 5; ++entry) EXPECT_EQ(entry_of_display_mode(display_mode_of_entry(entry)), entry);

    recording_link link;
    link.longs = {{"ApplyIsEnabled", 2}, {"hasPCTF", 1}, {"DisplayMode", 5}};
    const auto loaded = load_panel(link);
    EXPECT_TRUE(loaded.enabled && loaded.has_pctf == 1 && loaded.display_entry == 4);
    EXPECT_EQ(link.reads, (std::vector<std::string>{"ApplyIsEnabled", "hasPCTF", "DisplayMode"}));
}

TEST(panel, stacks_its_controls_below_the_sheet)
{
    EXPECT_EQ(panel_height({170, 240}, {60, 21}, {39, 20}), 306);
    const auto row = lay_out_controls({0, 0, 188, 306}, {39, 20}, {130, 21}, {60, 21}, {20, 22});
    EXPECT_TRUE((row.label == rectangle{0, 252, 39, 277}));
    EXPECT_TRUE((row.combo == rectangle{39, 257, 169, 278}));
    EXPECT_TRUE((row.apply == rectangle{128, 277, 180, 298}));
    EXPECT_TRUE((row.pctf == rectangle{100, 276, 120, 298}));
    const auto widths = shrunken_widths(301, 400);
    EXPECT_EQ(widths.tab, 151);
    EXPECT_EQ(widths.sheet, 243);  // 0.975 * 250 = 243.75
}

TEST(number_text, shows_six_digits_and_reads_what_is_typed)
{
    const struct
    {
        float value;
        const char* text;
    } shown[] = {{0, "0"},      {0.5f, "0.5"},          {-2.25f, "-2.25"},        {1e-7f, "1e-07"},
                 {0.1f, "0.1"}, {123456.78f, "123457"}, {1234567, "1.23457e+06"}, {100, "100"}};
    for (const auto& s : shown) EXPECT_EQ(text_of(s.value), s.text);

    const struct
    {
        const char* text;
        float value;
    } typed[] = {{"2.5", 2.5f}, {"  -3", -3}, {"+4", 4}, {".5", 0.5f}, {"7nm", 7}, {"1e2", 100}, {"5.", 5}};
    for (const auto& t : typed) {
        float value = NAN;
        EXPECT_TRUE(read_number(t.text, value)) << t.text;
        EXPECT_EQ(value, t.value) << t.text;
    }
    for (const char* text : {"", "-", "+", "+-1", ".", "  ", "abc", "1e99", "nan", "inf", "-infinity"}) {
        float value = 42;
        EXPECT_FALSE(read_number(text, value)) << text;
        EXPECT_EQ(value, 42);
    }
}

}  // namespace
}  // namespace qorv::panel
