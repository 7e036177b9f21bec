#include "lens/panel_tags.h"
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

/// The panel reads every tag of the handler once and with the handler's type: a tag of another type counts as missing.
TEST(TagKeys, AreTheSameInThePanelAndInItsHandler)
{
    recording_link link;
    std::multiset<std::string> keys;
    for (const auto& tag : zentrix::lens::panel_tags({}, 1)) {
        keys.insert(tag.key);
        if (tag.is_long)
            link.longs[tag.key] = 3;
        else
            link.floats[tag.key] = 3;
    }
    for (int page = 0; page < page_count; ++page) {
        const auto loaded = load_page(link, static_cast<page_id>(page));
        EXPECT_TRUE(loaded.enabled);
        auto row = loaded.values.rows.begin();
        for (const coefficient& c : rows_of(static_cast<page_id>(page)))
            EXPECT_EQ(*row++, (c.round() ? row_values{3, 3} : row_values{3, 3, 3, 3})) << c.name;
    }
    EXPECT_EQ(load_panel(link).has_pctf, 3);
    EXPECT_EQ((std::multiset<std::string>{link.reads.begin(), link.reads.end()}), keys);
}

TEST(Page, ReadsItsKeysInOrderWithDefaultsForMissingOnes)
{
    recording_link link;
    link.floats = {{"ModS3", 2.5f}, {"ModA3Accel", 0.25f}};
    link.longs = {{"AngS3", 77}, {"AngA3Accel", 5}, {"ThirdPaneIsEnabled", -1}};
    const auto third = load_page(link, page_id::third);
    EXPECT_TRUE(third.has_handler && third.enabled);
    EXPECT_EQ(third.values.rows, (std::array<row_values, 3>{{{2.5f, 1, 77, 1}, {0, 0.25f, 0, 5}, {}}}));
    EXPECT_EQ(link.reads, (std::vector<std::string>{"ModS3", "ModS3Accel", "AngS3", "AngS3Accel", "ModA3", "ModA3Accel",
                                                    "AngA3", "AngA3Accel", "ThirdPaneIsEnabled"}));
    EXPECT_FALSE(load_page(link, page_id::fourth).enabled);
    link.tags = false;
    const auto without_tags = load_page(link, page_id::third);
    EXPECT_TRUE(without_tags.values == page_values{} && !without_tags.enabled);
    link.tags = true;
    link.handler = false;
    link.reads.clear();
    EXPECT_FALSE(load_page(link, page_id::third).has_handler);
    EXPECT_TRUE(link.reads.empty());
}

TEST(Panel, MapsDisplayModesToEntriesAndBack)
{
    for (const auto& [mode, entry] : {std::pair{-7, 0}, {0, 0}, {1, 0}, {2, 1}, {3, 2}, {4, 3}, {5, 4}, {6, 0}})
        EXPECT_EQ(entry_of_display_mode(mode), entry) << mode;
    EXPECT_EQ(display_mode_of_entry(4), 5);

    recording_link link;
    link.longs = {{"ApplyIsEnabled", 2}, {"hasPCTF", 1}, {"DisplayMode", 5}};
    const auto loaded = load_panel(link);
    EXPECT_TRUE(loaded.enabled && loaded.has_pctf == 1 && loaded.display_entry == 4);
    EXPECT_EQ(link.reads, (std::vector<std::string>{"ApplyIsEnabled", "hasPCTF", "DisplayMode"}));
}

TEST(Panel, StacksItsControlsBelowTheSheet)
{
    EXPECT_EQ(panel_height({170, 240}, {60, 21}, {39, 20}), 306);
    const auto row = lay_out_controls({0, 0, 188, 306}, {39, 20}, {130, 21}, {60, 21}, {20, 22});
    EXPECT_TRUE((row.label == rectangle{0, 252, 39, 277}) && (row.combo == rectangle{39, 257, 169, 278}));
    EXPECT_TRUE((row.apply == rectangle{128, 277, 180, 298}) && (row.pctf == rectangle{100, 276, 120, 298}));
    const auto widths = shrunken_widths(301, 400);
    EXPECT_TRUE(widths.tab == 151 && widths.sheet == 243);  // 0.975 * 250 = 243.75
}

TEST(NumberText, ShowsSixDigitsAndReadsTypedNumbers)
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
    } typed[] = {{"2.5", 2.5f}, {"2,5", 2.5f}, {"  -3 ", -3}, {"+4", 4}, {".5", 0.5f}, {"1e2", 100}, {"5.", 5}};
    for (const auto& t : typed) {
        const typed_number read = read_number(t.text);
        EXPECT_TRUE(read.state == number_state::complete && read.value == t.value) << t.text;
    }
    for (const char* text : {"", "-", "+", ".", ",", "  ", "1e", "1e-", "-.", "2,5e+"})
        EXPECT_EQ(read_number(text).state, number_state::unfinished) << text;
    for (const char* text : {"+-1", "abc", "1e99", "1e-50", "nan", "inf", "-infinity", "in", "7nm", "12abc", "0x10",
                             "1d3", "1 2", "1,234.5", "1.234.5", "--5", "- 5"})
        EXPECT_EQ(read_number(text).state, number_state::wrong) << text;
    EXPECT_EQ(full_text_of(1.2000002f), "1.2000002");
}

}  // namespace
}  // namespace qorv::panel
