// Number fields: what is typed key by key, what they show when they are left, and how they are marked.
#include "tests/windows/page_tables.h"
#include "win32/handles.h"

namespace windows_tests {
namespace {

class a_field : public panel_window
{
  protected:
    a_field()
    {
        host.set("ModA1", 62.0f);
        show_panel();
        go_to_page(1);
        SetFocus(other().window);
        take_events();
    }

    control field() const { return of_page(row_A1.modulus); }
    control other() const { return of_page(row_B2.modulus); }

    /// Replaces the text by keys.
    void enter(const std::string& text) const
    {
        SetFocus(field().window);
        field().send(EM_SETSEL, 0, -1);
        field().send(WM_CHAR, '\b', 1);
        for (const char c : text) field().send(WM_CHAR, static_cast<WPARAM>(c), 1);
    }

    /// The last value written to the tag; empty if there was none.
    std::string stored()
    {
        std::string value;
        for (const std::string& line : take_events())
            if (line.starts_with("ModA1 = ")) value = line.substr(8);
        return value;
    }

    bool marked() const
    {
        const win32::window_dc dc{field().window};
        SetBkColor(dc.get(), RGB(255, 255, 255));
        SendMessageW(active_page(), WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc.get()),
                     reinterpret_cast<LPARAM>(field().window));
        const COLORREF ground = GetBkColor(dc.get());
        return GetRValue(ground) > GetGValue(ground) + 20;
    }
};

TEST_F(a_field, TakesNumbersAndRestoresItsValueAfterAnythingElse)
{
    const struct
    {
        const char* typed;
        const char* stored;  ///< last; "" none
        bool marked;
        const char* left;  ///< shown after leaving
    } cases[] = {{"2,5", "2.5", false, "2,5"},  {"62", "62", false, "62"},
                 {"12abc", "62", true, "62"},   {"1e99", "62", true, "62"},
                 {"-1e99", "62", true, "62"},   {"1e-50", "62", true, "62"},
                 {"0x10", "62", true, "62"},    {"1 2", "62", true, "62"},
                 {"1,234.5", "62", true, "62"}, {"abc", "", true, "62"},
                 {"", "", false, "62"},         {"-", "", false, "62"},
                 {"1e-", "62", false, "62"},    {"1e-5", "1e-05", false, "1e-5"},
                 {"-7", "-7", false, "-7"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        enter(c.typed);
        EXPECT_EQ(stored(), c.stored);
        EXPECT_EQ(marked(), c.marked);
        EXPECT_EQ(field().text(), c.typed);
        SetFocus(other().window);
        EXPECT_EQ(field().text(), c.left);
        EXPECT_FALSE(marked());
        EXPECT_EQ(take_events(), events{}) << "leaving is no edit";
    }
}

TEST_F(a_field, ReturnsToTheValueThatAnArrowOrTheTagsGaveIt)
{
    enter("5");
    of_page(row_A1.modulus_spin).click_spin(1);
    EXPECT_EQ(stored(), "6");
    field().send(WM_CHAR, 'x', 1);
    EXPECT_EQ(stored(), "") << "6 is kept";
    enter("7");
    host.set("ModA1", 40.0f);
    host.update_panel();
    EXPECT_EQ(field().text(), "40");
    enter("8x");
    EXPECT_EQ(stored(), "40");
}

TEST_F(a_field, ReturnsToItsValueWhenTheHandlerRefusesTheNumber)
{
    float taken = 62;
    host.on_call = [&] {
        const float typed = std::get<float>(host.tags().at("ModA1"));
        if (typed < 1e6F) return void(taken = typed);
        host.set("ModA1", taken);
        throw zentrix::host::script_error{"Too large."};
    };
    enter("1e30");
    EXPECT_EQ(stored() + " " + field().text(), "62 1e30");
    EXPECT_TRUE(marked());
    of_page(row_B2.step).type("2");
    EXPECT_EQ(std::get<float>(host.tags().at("ModA1")) + taken, 124);
    SetFocus(other().window);
    EXPECT_EQ(field().text(), "62");
    EXPECT_FALSE(marked());
    of_page(row_A1.step).type("1e9");
    of_page(row_A1.modulus_spin).click_spin(1);
    EXPECT_EQ(field().text(), "62");
    EXPECT_EQ(host.take_errors(), events(2, "Too large."));
}

TEST_F(a_field, ShowsItsNumberAgainAfterAPageChange)
{
    for (const char* typed : {"", "-", "12abc"}) {
        enter(typed);
        go_to_page(2);
        go_to_page(1);
        EXPECT_EQ(field().text(), "62") << typed;
    }
    of_page(row_A1.step).type("0,5");
    of_page(row_A1.modulus_spin).click_spin(1);
    EXPECT_EQ(stored(), "62.5");
}

}  // namespace
}  // namespace windows_tests
