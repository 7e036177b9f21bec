// What each page writes and calls when it is used.
#include "panel/rules/tag_record.h"
#include "tests/windows/page_tables.h"

#include <set>

namespace windows_tests {
namespace {

/// Holds a modifier down for this thread's key state.
class held_key
{
  public:
    explicit held_key(int key) : key_{key} { set(0x80); }
    ~held_key() { set(0); }
    held_key(const held_key&) = delete;
    held_key& operator=(const held_key&) = delete;

  private:
    void set(BYTE state) const
    {
        BYTE keys[256];
        GetKeyboardState(keys);
        keys[key_] = state;
        SetKeyboardState(keys);
    }
    int key_;
};

class every_row : public panel_window
{
  protected:
    /// test(row) on each row with its page in front, each starting with nothing heard.
    template <class F>
    void for_each_row(F test)
    {
        show_panel();
        for (const page_table& page : pages) {
            go_to_page(page.index);
            for (const row_table& row : page.rows) {
                SCOPED_TRACE(row.key);
                heard();
                test(row);
            }
        }
    }

    template <class F>
    void for_each_knob(F test)
    {
        for_each_row([&](const row_table& row) {
            if (row.knob) test(row);
        });
    }
};

std::string set(const std::string& key, const char* value) { return key + " = " + value; }

TEST_F(every_row, stores_what_is_typed_and_announces_values_only)
{
    for_each_row([&](const row_table& row) {
        const struct
        {
            int id;
            const char* text;
            events wanted;
        } steps[] = {
            {row.modulus, "2.5", {set(row.key, "2.5"), "OnChange"}},
            {row.step, "0.5", {set(row.step_key(), "0.5")}},
            {row.modulus, "-", {}},  // not a number yet
            {row.modulus, "-7", {set(row.key, "-7"), "OnChange"}},
            {row.modulus, "", {}},
            {row.step, "abc", {}},
            {row.modulus, "3", {set(row.key, "3"), "OnChange"}},
        };
        for (const auto& step : steps) {
            of_page(step.id).type(step.text);
            EXPECT_EQ(heard(), step.wanted) << step.text;
        }
    });
}

TEST_F(every_row, moves_the_modulus_by_its_step_below_zero_too)
{
    for_each_row([&](const row_table& row) {
        of_page(row.step).type("0.5");
        heard();
        for (const auto& [direction, value] : {std::pair{1, "0.5"}, {1, "1"}, {-1, "0.5"}, {-1, "0"}, {-1, "-0.5"}}) {
            of_page(row.modulus_spin).click_spin(direction);
            EXPECT_EQ(heard(), (events{set(row.key, value), "OnChange"}));
            EXPECT_EQ(of_page(row.modulus).text(), value);
        }
    });
}

TEST_F(every_row, turns_the_angle_by_spin_and_goes_round)
{
    for (const page_table& page : pages) {
        for (const row_table& row : page.rows) {
            if (row.knob) host.set(row.angle_step_key(), 7);
        }
    }
    for_each_knob([&](const row_table& row) {
        const control spin = of_page(row.angle_spin), knob = of_page(row.knob);
        UDACCEL table[3] = {};
        spin.send(UDM_GETACCEL, 3, reinterpret_cast<LPARAM>(table));
        for (UINT i = 0; i < 3; ++i) {
            EXPECT_EQ(table[i].nSec, 2 * i);
            EXPECT_EQ(table[i].nInc, 7 * (i + 1));
        }
        const struct
        {
            int direction;
            bool shift;
            const char* angle;
        } clicks[] = {{+1, false, "7"}, {+1, true, "8"},    {-1, true, "7"},    {-1, false, "0"},   {-1, true, "359"},
                      {+1, true, "0"},  {-1, false, "359"}, {-1, false, "352"}, {+1, false, "359"}, {+1, false, "0"}};
        for (const auto& click : clicks) {
            {
                const held_key shift{click.shift ? VK_SHIFT : 0};
                spin.click_spin(click.direction);
            }
            EXPECT_EQ(heard(), (events{set(row.angle_key, click.angle), "OnChange"}));
            EXPECT_EQ(control{GetWindow(knob.window, GW_CHILD)}.text(), click.angle);
        }
    });
}

TEST_F(every_row, turns_the_angle_by_mouse)
{
    for_each_knob([&](const row_table& row) {
        const control knob = of_page(row.knob);
        const int cx = knob.client().right / 2, cy = knob.client().bottom / 2;
        const auto stored = [&](const char* angle) { return events{set(row.angle_key, angle), "OnChange"}; };
        knob.mouse(WM_MOUSEMOVE, cx, cy - 10);
        EXPECT_EQ(heard(), events{});  // no button was pressed
        knob.mouse(WM_LBUTTONDOWN, cx, cy - 10);
        EXPECT_EQ(GetCapture(), knob.window);
        EXPECT_EQ(GetFocus(), knob.window);
        EXPECT_EQ(heard(), stored("90"));
        knob.mouse(WM_MOUSEMOVE, cx, cy - 20);
        EXPECT_EQ(heard(), events{});  // the same angle farther out
        knob.mouse(WM_MOUSEMOVE, cx - 10, cy - 10);
        knob.mouse(WM_MOUSEMOVE, cx - 500, cy);
        EXPECT_EQ(heard(), stored("180"));  // the page hears late and sees the last position only
        knob.mouse(WM_LBUTTONUP, cx, cy + 15);
        EXPECT_EQ(GetCapture(), nullptr);
        EXPECT_EQ(heard(), stored("270"));
        knob.mouse(WM_LBUTTONDOWN, cx, cy);  // the very centre is angle 0
        knob.mouse(WM_LBUTTONUP, cx, cy);
        EXPECT_EQ(heard(), stored("0"));
    });
}

TEST_F(every_row, turns_the_angle_by_keys)
{
    for_each_knob([&](const row_table& row) {
        const control knob = of_page(row.knob);
        SetFocus(knob.window);
        const struct
        {
            WPARAM key;
            const char* angle;
        } keys[] = {{VK_RIGHT, "1"},    {VK_DOWN, "2"},    {VK_LEFT, "1"},  {VK_UP, "0"},    {VK_LEFT, "359"},
                    {VK_RIGHT, "0"},    {VK_PRIOR, "350"}, {VK_NEXT, "0"},  {VK_NEXT, "10"}, {VK_UP, "9"},
                    {VK_HOME, nullptr}, {VK_END, nullptr}, {VK_F5, nullptr}};
        for (const auto& [key, angle] : keys) {
            knob.key(key);
            EXPECT_EQ(heard(), angle ? (events{set(row.angle_key, angle), "OnChange"}) : events{}) << key;
        }
    });
}

TEST_F(every_row, turns_the_angle_by_typing_into_the_knob)
{
    for_each_knob([&](const row_table& row) {
        const control edit{GetWindow(of_page(row.knob).window, GW_CHILD)};
        const struct
        {
            const char *typed, *angle, *shown;
        } cases[] = {{"45", "45", "45"},  {"045", nullptr, "45"}, {"400", "359", "359"}, {"abc", "0", "0"},
                     {"12x", "12", "12"}, {"-5", "0", "0"},       {"", nullptr, "0"}};
        for (const auto& c : cases) {
            edit.type(c.typed);
            EXPECT_EQ(heard(), c.angle ? (events{set(row.angle_key, c.angle), "OnChange"}) : events{}) << c.typed;
            EXPECT_EQ(edit.text(), c.shown) << c.typed;
        }
    });
}

TEST_F(panel_window, fifth_page_takes_digits_only_from_the_keyboard)
{
    show_panel();
    for (const auto& [page, id, text] : {std::tuple{4, 5101, "052"}, {1, 5088, "0.5-2"}}) {
        go_to_page(page);
        SetFocus(of_page(id).window);
        of_page(id).send(EM_SETSEL, 1, 1);
        for (const char c : {'.', '5', '-', '2'}) of_page(id).send(WM_CHAR, static_cast<WPARAM>(c), 1);
        EXPECT_EQ(of_page(id).text(), text);
    }
}

TEST_F(panel_window, pages_reload_when_they_come_to_the_front_and_only_then)
{
    show_panel();
    go_to_page(1);
    heard();
    of_page(5092).type("-");  // half typed
    go_to_page(2);
    go_to_page(1);
    EXPECT_EQ(of_page(5092).text(), "-") << "nothing has changed, so nothing is shown anew";
    host.set("ModB2", 12.25f);
    host.set("AngA2", 123);
    host.set("AngA1Accel", 30);
    EXPECT_EQ(of_page(5092).text(), "-");
    go_to_page(0);
    go_to_page(1);
    EXPECT_EQ(of_page(5092).text(), "12.25");
    EXPECT_EQ(of_page(5013).send(TBM_GETPOS), 123);
    UDACCEL first{};
    of_page(5047).send(UDM_GETACCEL, 1, reinterpret_cast<LPARAM>(&first));
    EXPECT_EQ(first.nInc, 30u);
    EXPECT_EQ(heard(), events{}) << "showing is not editing";
}

TEST_F(panel_window, an_angle_beyond_the_dial_is_brought_back_and_stored)
{
    host.set("AngB2", 400);
    show_panel();  // makes every page
    EXPECT_EQ(heard(), (events{"OnChange", "AngB2 = 359", "OnChange"}));
}

TEST_F(every_row, touches_the_tags_as_the_record_says)
{
    std::set<std::string> written, asked_by_knobs;
    for_each_row([&](const row_table& row) {
        of_page(row.modulus).type("2");
        of_page(row.step).type("3");
        pump();
        if (row.knob) {
            host.take_reads();
            of_page(row.knob).send(TBM_SETPOS, TRUE, 12);
            pump();
            for (const auto& key : host.take_reads()) asked_by_knobs.insert(key);
        }
        of_page(row.modulus_spin).click_spin(1);
        for (const auto& event : heard()) written.insert(event.substr(0, event.find(" = ")));
    });
    written.erase("OnChange");
    of_panel(5111).send(CB_SETCURSEL, 2);
    SendMessageW(panel, WM_COMMAND, MAKEWPARAM(5111, CBN_SELCHANGE), reinterpret_cast<LPARAM>(of_panel(5111).window));
    EXPECT_EQ(heard().front(), "DisplayMode = 3");
    for (const auto& rule : qorv::panel::tag_record()) {
        using enum qorv::panel::tag_written;
        const std::string key = rule.key;
        if (rule.written != display_pick) {
            EXPECT_EQ(written.contains(key), rule.written != never) << key;
        }
        EXPECT_EQ(asked_by_knobs.contains(key), rule.read == qorv::panel::tag_read::page_load_and_knob) << key;
    }
}

TEST_F(panel_window, a_page_whose_tags_could_not_be_read_recovers)
{
    host.break_tags(true);
    show_panel();
    EXPECT_FALSE(host.take_errors().empty());
    EXPECT_TRUE(IsWindowVisible(sheet()));
    host.break_tags(false);
    host.set("ModA1", 2.5f);
    go_to_page(2);
    go_to_page(1);
    heard();
    EXPECT_EQ(of_page(5088).text(), "2.5");
    of_page(5088).type("4");
    EXPECT_EQ(heard(), (events{"ModA1 = 4", "OnChange"}));
}

TEST_F(panel_window, enable_keys_grey_their_page_whole_and_no_other)
{
    show_panel();
    for (const page_table& page : pages) {
        for (const int enable : {0, 5, 0}) {
            host.set(page.enable_key, enable);
            host.update_panel();
            go_to_page(page.index);
            for (HWND child = GetWindow(active_page(), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
                const int id = GetDlgCtrlID(child);
                // The hidden message line belongs to no list.
                EXPECT_EQ(control{child}.enabled(), enable != 0 || (page.index == 1 && id == 5109)) << id;
                if (const HWND edit = GetWindow(child, GW_CHILD); edit) {
                    EXPECT_EQ(control{edit}.enabled(), enable != 0) << id;
                }
            }
        }
        EXPECT_TRUE(of_panel(1).enabled());
    }
}

TEST_F(panel_window, missing_keys_tags_and_handler_are_borne_in_silence)
{
    host.clear_tags();
    show_panel();
    EXPECT_EQ(heard(), events{"OnChange"});
    go_to_page(1);
    EXPECT_EQ(of_page(5088).text() + of_page(5090).text(), "01");
    EXPECT_FALSE(of_page(5088).enabled());
    EXPECT_FALSE(of_panel(1).enabled());
    of_page(5004).send(TBM_SETPOS, TRUE, 12);  // an absent angle counts as 0
    EXPECT_EQ(heard(), (events{"AngA1 = 12", "OnChange"}));

    host.hand_over(true, false);
    of_page(5004).send(TBM_SETPOS, TRUE, 13);
    EXPECT_EQ(heard(), events{});
    of_page(5088).type("4");
    of_page(5090).type("2");
    EXPECT_EQ(heard(), events{"OnChange"}) << "for the value, not for the step";
    SendMessageW(panel, WM_COMMAND, MAKEWPARAM(5111, CBN_SELCHANGE), reinterpret_cast<LPARAM>(of_panel(5111).window));
    host.update_panel();
    EXPECT_EQ(heard(), events{});

    host.hand_over(false, true);
    host.take_reads();
    host.update_panel();
    go_to_page(2);
    EXPECT_EQ(host.take_reads(), events{});
    EXPECT_FALSE(of_page(5057).enabled());
}

}  // namespace
}  // namespace windows_tests
