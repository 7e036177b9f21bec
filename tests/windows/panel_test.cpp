// The panel: showing and hiding, its own controls, calls of the handler.
#include "tests/windows/page_tables.h"

namespace windows_tests {
namespace {

TEST_F(panel_window, IsOpenFromItsFirstShowingOn)
{
    EXPECT_FALSE(host.palette_open());
    EXPECT_FALSE(host.window_visible());
    host.update_panel();
    EXPECT_EQ(take_events(), events{});
    const struct
    {
        bool show;
        events expected;
    } steps[] = {{true, {"OnChange"}}, {true, {}}, {false, {"OnClose"}}, {false, {}}, {true, {}}, {false, {"OnClose"}}};
    for (const auto& step : steps) {
        show_panel(step.show);
        EXPECT_EQ(take_events(), step.expected);
        EXPECT_TRUE(host.palette_open());
        EXPECT_EQ(host.window_visible(), step.show);
    }
    host.set_handler_and_tags(false, true);
    show_panel(true);
    show_panel(false);
    EXPECT_EQ(take_events(), events{});
    host.close_panel();
    EXPECT_FALSE(host.palette_open());
    EXPECT_FALSE(host.window_visible());
}

TEST_F(panel_window, CallsTheHandlerForEachOfItsControls)
{
    show_panel();
    take_events();
    for (const auto& [id, name] : {std::pair{1, "OnApply"}, {5099, "OnPreferences"}, {5100, "OnPCTF"}}) {
        of_panel(id).send(BM_CLICK);
        EXPECT_EQ(take_events(), events{name});
    }
    choose_display(panel, 4);
    EXPECT_EQ(take_events(), (events{"DisplayMode = 5", "OnChangeDisplay 5"}));
    SendMessageW(panel, WM_COMMAND, IDCANCEL, 0);
    EXPECT_TRUE(IsWindowVisible(panel)) << "Escape does not hide the panel";
}

TEST_F(panel_window, ShowsItsTagsAndUpdatesTheActivePage)
{
    host.set("DisplayMode", 4);
    host.set("hasPCTF", 1);
    host.set("ApplyIsEnabled", 0);
    show_panel();
    const int row[] = {1, 5113, 5111, 5100};
    EXPECT_EQ(of_panel(5111).send(CB_GETCURSEL), 3);
    EXPECT_EQ(of_panel(5100).send(BM_GETCHECK), BST_CHECKED);
    for (const int id : row) EXPECT_FALSE(of_panel(id).enabled()) << id;
    EXPECT_TRUE(of_panel(5099).enabled());

    go_to_page(3);
    host.clear_tags();
    for (const auto& [key, value] :
         {std::pair{"DisplayMode", 0}, {"ApplyIsEnabled", 1}, {"FourthPaneIsEnabled", 1}, {"AngD4", 77}})
        host.set(key, value);
    host.set("ModA4", 1.5f);
    take_events();
    host.update_panel();
    EXPECT_EQ(of_panel(5111).send(CB_GETCURSEL), 0);
    EXPECT_EQ(of_panel(5100).send(BM_GETCHECK), BST_UNCHECKED);
    for (const int id : row) EXPECT_TRUE(of_panel(id).enabled()) << id;
    EXPECT_EQ(of_page(5081).text(), "1.5");
    EXPECT_EQ(of_page(5079).send(TBM_GETPOS), 77);
    EXPECT_EQ(take_events(), events{});

    host.set_handler_and_tags(false, true);
    host.update_panel();
    for (const int id : row) EXPECT_FALSE(of_panel(id).enabled()) << id;
}

TEST_F(panel_window, CanBeUpdatedByTheHandlerOfItsOwnEdit)
{
    host.set("ModB2", 0.33333334f);  // more digits than the field shows
    show_panel();
    go_to_page(1);
    host.on_call = [&] {
        host.set("ModA2", 9);
        host.update_panel();
    };
    SetFocus(of_page(5088).window);
    of_page(5088).send(EM_SETSEL, 0, -1);
    for (const char c : {'1', '2', '.', '5'}) of_page(5088).send(WM_CHAR, static_cast<WPARAM>(c), 1);
    EXPECT_EQ(of_page(5088).text() + " " + of_page(5095).text(), "12.5 9") << "the caret has stayed";
    of_page(5093).click_spin(1);
    EXPECT_EQ(of_page(5092).text(), "1.33333");
    take_events();
    of_page(5092).type("100");
    of_page(5092).type("100.0001");  // equal in the digits that a field shows
    EXPECT_EQ(take_events(), (events{"ModB2 = 100", "OnChange", "ModB2 = 100.0001", "OnChange"}));
    EXPECT_EQ(of_page(5092).text(), "100.0001");
    host.on_call = nullptr;
}

TEST_F(panel_window, AHandlerMayCloseThePanel)
{
    const auto close = [&] { host.close_panel(); };
    host.on_call = close;
    ShowWindow(panel, SW_SHOW);
    pump();
    EXPECT_FALSE(IsWindow(panel));
    EXPECT_FALSE(host.palette_open());
    const std::function<void()> actions[] = {[&] { of_page(5088).type("3"); }, [&] { of_page(5089).click_spin(1); },
                                             [&] { of_panel(5100).send(BM_CLICK); }};
    for (const auto& act : actions) {
        host.on_call = nullptr;
        panel = host.open_panel(frame);
        show_panel();
        go_to_page(1);
        host.on_call = close;
        act();
        EXPECT_FALSE(IsWindow(panel));
    }
    host.on_call = nullptr;
    host.take_events();
    EXPECT_EQ(host.take_errors(), events{});
}

TEST_F(panel_window, AHandlersExceptionGoesToTheErrorManager)
{
    host.on_call = [] { throw zentrix::host::script_error{"The script failed."}; };
    show_panel();
    EXPECT_TRUE(IsWindowVisible(sheet())) << "the panel is laid out all the same";
    go_to_page(1);
    of_page(5088).type("4");
    of_page(5089).click_spin(1);
    of_panel(1).send(BM_CLICK);
    EXPECT_EQ(take_events(), (events{"OnChange", "ModA1 = 4", "OnChange", "ModA1 = 5", "OnChange", "OnApply"}));
    EXPECT_EQ(host.take_errors(), events(4, "The script failed."));
}

}  // namespace
}  // namespace windows_tests
