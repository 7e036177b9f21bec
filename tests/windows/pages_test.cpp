// What each page writes and announces when it is used.
#include "tests/windows/page_tables.h"

namespace windows_tests {
namespace {

/// Sets the state of the Shift key for this thread.
void hold_shift(bool down)
{
    BYTE keys[256];
    GetKeyboardState(keys);
    keys[VK_SHIFT] = down ? 0x80 : 0;
    SetKeyboardState(keys);
}

std::string line(const std::string& key, const char* value) { return key + " = " + value; }
control edit_of(const control& knob) { return {GetWindow(knob.window, GW_CHILD)}; }

TEST_F(panel_window, EveryControlWritesItsOwnTagAndValuesAreAnnounced)
{
    show_panel();
    for (const page_table& page : pages) {
        go_to_page(page.index);
        for (const row_table& row : page.rows) {
            SCOPED_TRACE(row.key);
            take_events();
            of_page(row.modulus).type("2.5");
            EXPECT_EQ(take_events(), (events{line(row.key, "2.5"), "OnChange"}));
            of_page(row.step).type("0.5");
            EXPECT_EQ(take_events(), events{line(row.step_key(), "0.5")});
            of_page(row.modulus_spin).click_spin(-1);
            EXPECT_EQ(take_events(), (events{line(row.key, "2"), "OnChange"}));
            if (!row.knob) continue;
            of_page(row.angle_spin).click_spin(1);
            EXPECT_EQ(take_events(), (events{line(row.angle_key, "1"), "OnChange"}));
            of_page(row.knob).send(TBM_SETPOS, TRUE, 77);
            EXPECT_EQ(take_events(), (events{line(row.angle_key, "77"), "OnChange"}));
            edit_of(of_page(row.knob)).type("45");
            EXPECT_EQ(take_events(), (events{line(row.angle_key, "45"), "OnChange"}));
        }
    }
}

TEST_F(panel_window, StoresTypedNumbersAndIgnoresIncompleteOnes)
{
    show_panel();
    go_to_page(1);
    take_events();
    const control modulus = of_page(row_A1.modulus), step = of_page(row_A1.step), angle = edit_of(of_page(row_A1.knob));
    const struct
    {
        control field;
        const char* typed;
        events expected;
        const char* shown;
    } cases[] = {{modulus, "-", {}, "-"},
                 {modulus, "-7", {"ModA1 = -7", "OnChange"}, "-7"},
                 {modulus, "", {}, ""},
                 {step, "abc", {}, "abc"},
                 {modulus, "3", {"ModA1 = 3", "OnChange"}, "3"},
                 {angle, "045", {"AngA1 = 45", "OnChange"}, "45"},
                 {angle, "400", {"AngA1 = 359", "OnChange"}, "359"},
                 {angle, "abc", {"AngA1 = 0", "OnChange"}, "0"},
                 {angle, "12x", {"AngA1 = 12", "OnChange"}, "12"},
                 {angle, "", {"AngA1 = 0", "OnChange"}, "0"}};
    for (const auto& c : cases) {
        c.field.type(c.typed);
        EXPECT_EQ(take_events(), c.expected) << c.typed;
        EXPECT_EQ(c.field.text(), c.shown) << c.typed;
    }
    step.type("2");
    for (const char* value : {"1", "-1"}) {
        of_page(row_A1.modulus_spin).click_spin(-1);
        EXPECT_EQ(modulus.text(), value);
    }
}

TEST_F(panel_window, AnAngleSpinAcceleratesWrapsAndMovesByOneWithShift)
{
    for (const row_table& row : {row_A1, row_A5}) host.set(row.angle_step_key(), 7);
    show_panel();
    for (const auto& [page, row] : {std::pair{1, row_A1}, {4, row_A5}}) {
        SCOPED_TRACE(row.key);
        go_to_page(page);
        const control spin = of_page(row.angle_spin);
        UDACCEL table[3] = {};
        spin.send(UDM_GETACCEL, 3, reinterpret_cast<LPARAM>(table));
        for (UINT i = 0; i < 3; ++i) EXPECT_TRUE(table[i].nSec == 2 * i && table[i].nInc == 7 * (i + 1)) << i;
        take_events();
        const struct
        {
            int direction;
            bool shift;
            const char* angle;
        } clicks[] = {{+1, false, "7"},  {+1, true, "8"}, {-1, true, "7"},    {-1, false, "0"},
                      {-1, true, "359"}, {+1, true, "0"}, {-1, false, "359"}, {+1, false, "0"}};
        for (const auto& click : clicks) {
            hold_shift(click.shift);
            spin.click_spin(click.direction);
            hold_shift(false);
            EXPECT_EQ(take_events(), (events{line(row.angle_key, click.angle), "OnChange"}));
            EXPECT_EQ(edit_of(of_page(row.knob)).text(), click.angle);
        }
    }
}

TEST_F(panel_window, AKnobIsDragged)
{
    show_panel();
    go_to_page(1);
    take_events();
    const control knob = of_page(row_A1.knob);
    const int cx = knob.client().right / 2, cy = knob.client().bottom / 2;
    const auto stored = [](const char* angle) { return events{line("AngA1", angle), "OnChange"}; };
    const struct
    {
        UINT message;
        int x, y;
        events expected;
    } steps[] = {{WM_MOUSEMOVE, cx, cy - 10, {}},  // no button is pressed
                 {WM_LBUTTONDOWN, cx, cy - 10, stored("90")},
                 {WM_MOUSEMOVE, cx, cy - 20, {}},  // same angle
                 {WM_MOUSEMOVE, cx - 500, cy, stored("180")},
                 {WM_LBUTTONUP, cx, cy + 15, stored("270")},
                 {WM_LBUTTONDOWN, cx, cy, stored("0")},  // the centre
                 {WM_LBUTTONUP, cx, cy, {}}};
    for (const auto& step : steps) {
        knob.mouse(step.message, step.x, step.y);
        EXPECT_EQ(take_events(), step.expected) << step.x << ',' << step.y;
    }
    knob.mouse(WM_LBUTTONDOWN, cx, cy - 10);
    EXPECT_TRUE(GetCapture() == knob.window && GetFocus() == knob.window);
    for (int x = 0; x < 10; ++x) knob.mouse(WM_MOUSEMOVE, cx - x, cy - 10);
    knob.mouse(WM_LBUTTONUP, cx - 10, cy - 10);
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_EQ(take_events(), stored("135")) << "notifications are posted, so the page sees the last position only";
}

TEST_F(panel_window, APageReloadsWhenItBecomesActive)
{
    show_panel();
    go_to_page(1);
    take_events();
    of_page(5092).type("-");
    go_to_page(2);
    go_to_page(1);
    EXPECT_EQ(of_page(5092).text(), "0") << "no field stays without a number";
    of_page(5092).type("0.0");
    go_to_page(2);
    go_to_page(1);
    EXPECT_EQ(of_page(5092).text(), "0.0") << "no tag has changed, so no field is refreshed";
    take_events();
    host.set("ModB2", 12.25f);
    host.set("AngA2", 123);
    host.set("AngA1Accel", 30);
    EXPECT_EQ(of_page(5092).text(), "0.0");
    go_to_page(0);
    go_to_page(1);
    EXPECT_EQ(of_page(5092).text(), "12.25");
    EXPECT_EQ(of_page(5013).send(TBM_GETPOS), 123);
    UDACCEL first{};
    of_page(5047).send(UDM_GETACCEL, 1, reinterpret_cast<LPARAM>(&first));
    EXPECT_EQ(first.nInc, 30u);
    EXPECT_EQ(take_events(), events{}) << "a refresh is no edit";
}

TEST_F(panel_window, AnAngleOutOfRangeIsClampedAndStored)
{
    host.set("AngB2", 400);
    show_panel();  // creates every page
    EXPECT_EQ(take_events(), (events{"OnChange", "AngB2 = 359", "OnChange"}));
}

TEST_F(panel_window, APageRecoversAfterItsTagsCouldNotBeRead)
{
    host.break_tags(true);
    show_panel();
    EXPECT_FALSE(host.take_errors().empty());
    EXPECT_TRUE(IsWindowVisible(sheet()));
    host.break_tags(false);
    host.set("ModA1", 2.5f);
    go_to_page(2);
    go_to_page(1);
    take_events();
    EXPECT_EQ(of_page(5088).text(), "2.5");
    of_page(5088).type("4");
    EXPECT_EQ(take_events(), (events{"ModA1 = 4", "OnChange"}));
}

TEST_F(panel_window, AnEnableKeyDisablesAllControlsOfItsPage)
{
    show_panel();
    for (const page_table& page : pages) {
        for (const int enable : {0, 5, 0}) {
            host.set(page.enable_key, enable);
            host.update_panel();
            go_to_page(page.index);
            for (HWND child = GetWindow(active_page(), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
                const int id = GetDlgCtrlID(child);
                const bool hidden_message = page.index == 1 && id == 5109;  // never disabled
                EXPECT_EQ(control{child}.enabled(), enable != 0 || hidden_message) << id;
                if (const HWND edit = GetWindow(child, GW_CHILD)) {
                    EXPECT_EQ(control{edit}.enabled(), enable != 0) << id;
                }
            }
        }
        EXPECT_TRUE(of_panel(1).enabled());
    }
}

TEST_F(panel_window, WorksWithoutKeysTagsOrHandler)
{
    host.clear_tags();
    show_panel();
    EXPECT_EQ(take_events(), events{"OnChange"});
    go_to_page(1);
    EXPECT_EQ(of_page(5088).text() + of_page(5090).text(), "01");
    EXPECT_FALSE(of_page(5088).enabled());
    EXPECT_FALSE(of_panel(1).enabled());
    of_page(5004).send(TBM_SETPOS, TRUE, 12);
    EXPECT_EQ(take_events(), (events{"AngA1 = 12", "OnChange"})) << "a missing angle counts as 0";

    host.set_handler_and_tags(true, false);
    of_page(5004).send(TBM_SETPOS, TRUE, 13);
    EXPECT_EQ(take_events(), events{});
    of_page(5088).type("4");
    of_page(5090).type("2");
    EXPECT_EQ(take_events(), events{"OnChange"}) << "for the value, not for the step";
    choose_display(panel, 2);
    host.update_panel();
    EXPECT_EQ(take_events(), events{});

    host.set_handler_and_tags(false, true);
    host.take_reads();
    host.update_panel();
    go_to_page(2);
    EXPECT_EQ(host.take_reads(), events{});
    EXPECT_FALSE(of_page(5057).enabled());
}

}  // namespace
}  // namespace windows_tests
