// Panels are created, used in all ways that a user has, and destroyed. Nothing may be left. By hand, for longer:
//     ZENTRIX_ROUNDS=1000 tools/under-wine build/windows/tests/windows_tests.exe --gtest_filter=*LeaveNothingBehind
#include "tests/windows/holdings.h"
#include "tests/windows/page_tables.h"

namespace windows_tests {
namespace {

class many_panels : public panel_window
{
  protected:
    /// The panel's tooltip window.
    HWND tips() const
    {
        HWND found = nullptr;
        const auto each = [](HWND window, LPARAM result) -> BOOL {
            if (control{window}.class_name() != "tooltips_class32") return TRUE;
            *reinterpret_cast<HWND*>(result) = window;
            return FALSE;
        };
        EnumThreadWindows(GetCurrentThreadId(), each, reinterpret_cast<LPARAM>(&found));
        return found;
    }

    /// Whether the tooltip of a control shows a text that contains `part`.
    bool shows_tip(const control& of, const std::string& part) const
    {
        RECT place;
        GetWindowRect(of.window, &place);
        SetCursorPos((place.left + place.right) / 2, place.top + 6);  // not on the text of a knob
        const control tip{tips()};
        tip.send(TTM_POP);
        tip.send(TTM_SETDELAYTIME, TTDT_INITIAL, 1);
        for (int move = 0; move < 300; ++move) {
            of.send(WM_MOUSEMOVE, 0, MAKELPARAM(2, 2));
            // Each move starts the delay again, so the next one is not sent at once.
            for (const ULONGLONG start = GetTickCount64(); GetTickCount64() - start < 30; Sleep(1)) {
                pump();
                if (tip.visible() && tip.text().find(part) != std::string::npos) return true;
            }
        }
        return false;
    }

    void live()
    {
        panel = host.open_panel(frame);
        show_panel();
        for (const page_table& page : pages) {
            go_to_page(page.index);
            for (const row_table& row : page.rows) {
                of_page(row.modulus).type("2x");
                of_page(row.modulus).type("2");
                of_page(row.modulus_spin).click_spin(1);
                if (!row.knob) continue;
                of_page(row.knob).click(27, 5);
                of_page(row.knob).send(WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
            }
            RedrawWindow(panel, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        }
        EXPECT_EQ(of_page(5101).text(), "3");
        EXPECT_EQ(of_page(5104).send(TBM_GETPOS), 91);
        EXPECT_TRUE(shows_tip(of_page(5101), "Now 3 mm"));
        of_panel(5100).send(BM_CLICK);
        show_panel(false);
        show_panel();
        host.close_panel();
        pump();
        for (const char* key : {"ModA5", "AngA5"}) key[0] == 'A' ? host.set(key, 0) : host.set(key, 0.0f);
        host.take_events();
        host.take_reads();
    }
};

TEST_F(many_panels, LeaveNothingBehind)
{
    host.close_panel();
    expect_flat([this] { live(); });
    panel = host.open_panel(frame);
}

TEST_F(many_panels, ExplainTheirControlsInTooltips)
{
    host.set("ModB2", 1234.5625f);
    host.set("AngB2", 110);
    show_panel();
    go_to_page(1);
    EXPECT_TRUE(shows_tip(of_page(5092), "Now 1234.5625 nm")) << control{tips()}.text();
    EXPECT_TRUE(shows_tip(of_page(5000), "C21 = 3 B2 = 3703.6875 nm, phi21 = angle = 110 degrees"))
        << control{tips()}.text();
    EXPECT_TRUE(shows_tip(of_panel(5100), "sin(chi)")) << control{tips()}.text();
    const control strip{GetDlgItem(sheet(), 0x3020)};
    const HWND first = tips();
    host.close_panel();
    EXPECT_FALSE(IsWindow(first));
    EXPECT_FALSE(IsWindow(strip.window));
    panel = host.open_panel(frame);
}

}  // namespace
}  // namespace windows_tests
