// The controls of panel and pages: id, class, text, place and style.
#include "tests/windows/page_tables.h"
#include "win32/handles.h"

namespace windows_tests {
namespace {

struct expected_control
{
    int id;
    const char *class_name, *text;
    int x, y, width, height;  // dialog units; width 0: any size
};

void expect_control(HWND dialog, const expected_control& expected)
{
    const control found{GetDlgItem(dialog, expected.id)};
    SCOPED_TRACE(expected.id);
    ASSERT_NE(found.window, nullptr);
    EXPECT_STRCASEEQ(found.class_name().c_str(), expected.class_name);
    if (expected.text) {
        EXPECT_EQ(found.text(), expected.text);
    }
    RECT place{expected.x, expected.y, expected.width, expected.height};
    MapDialogRect(dialog, &place);
    const RECT actual = found.place();
    EXPECT_EQ(actual.left, place.left);
    EXPECT_EQ(actual.top, place.top);
    if (expected.width) {
        // The system may choose another width for a spin button.
        EXPECT_NEAR(actual.right - actual.left, place.right, found.class_name() == "msctls_updown32" ? 2 : 0);
        EXPECT_EQ(actual.bottom - actual.top, place.bottom);
    }
}

void expect_range(const control& spin, int low, int high)
{
    int actual_low = -1, actual_high = -1;
    spin.send(UDM_GETRANGE32, reinterpret_cast<WPARAM>(&actual_low), reinterpret_cast<LPARAM>(&actual_high));
    EXPECT_TRUE(actual_low == low && actual_high == high) << actual_low << ".." << actual_high;
}

DWORD style_of(const control& of) { return static_cast<DWORD>(GetWindowLongW(of.window, GWL_STYLE)); }

TEST_F(panel_window, PagesHaveAllTheirControls)
{
    show_panel();
    for (const page_table& page : pages) {
        SCOPED_TRACE(page.tab);
        const HWND dialog = go_to_page(page.index);
        int count = 0;
        const auto expect = [&](const expected_control& expected) {
            expect_control(dialog, expected);
            ++count;
        };
        if (page.modulus_header) {
            expect({5001, "Static", page.modulus_header, 4, 4, 0, 0});
            expect({5002, "Static", "Angle(deg)", 60, 4, 0, 0});
        }
        expect({5053, "Static", "Value", 4, 14, 0, 0});
        expect({5017, "Static", "Step", 32, 14, 0, 0});
        int y = 26;
        for (const row_table& row : page.rows) {
            expect({row.modulus, "Edit", "0", 2, y, 21, 14});
            expect({row.modulus_spin, "msctls_updown32", "", 23, y, 10, 14});
            expect({row.step, "Edit", "1", 33, y, 18, 14});
            expect({row.label, "Static", row.text, 2, y + 18, 0, 0});
            const control spin = of_page(row.modulus_spin);
            EXPECT_EQ(style_of(spin) & 0xff, UDS_AUTOBUDDY | UDS_ARROWKEYS | UDS_NOTHOUSANDS);
            EXPECT_EQ(reinterpret_cast<HWND>(spin.send(UDM_GETBUDDY)), of_page(row.modulus).window);
            expect_range(spin, 0, 9999);
            for (const int edit : {row.modulus, row.step}) {
                EXPECT_EQ((style_of(of_page(edit)) & ES_NUMBER) != 0, page.index == 4) << edit;
                EXPECT_EQ(of_page(edit).send(EM_GETMARGINS), 0) << edit;
            }
            if (row.knob) {
                expect({row.knob, "msctls_trackbar32", "", 54, y - 11, 36, 36});
                expect({row.angle_spin, "msctls_updown32", "", 88, y - 2, 10, 14});
                EXPECT_EQ(style_of(of_page(row.angle_spin)) & 0xff, UDS_ARROWKEYS);
                expect_range(of_page(row.angle_spin), 0, page.index == 4 ? 259 : 359);
                EXPECT_EQ(of_page(row.knob).send(TBM_GETRANGEMAX), 359);
                const control edit{GetWindow(of_page(row.knob).window, GW_CHILD)};
                const RECT place = edit.place(), expected{17, 20, 39, 35};
                EXPECT_TRUE(EqualRect(&place, &expected) && edit.visible());
                EXPECT_EQ(style_of(edit) & (ES_RIGHT | ES_READONLY), ES_RIGHT);
            } else {
                expect({row.unit, "Static", row.unit_text, 54, y + 3, 0, 0});
            }
            y += 36;
        }
        if (page.index == 1) {
            expect({5109, "Static", "NOT USED", 54, 14, 0, 0});
            EXPECT_FALSE(of_page(5109).visible());
        }
        int children = 0;
        for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) ++children;
        EXPECT_EQ(children, count);
    }
}

TEST_F(panel_window, ThePanelHasItsOwnControls)
{
    const expected_control template_5004[] = {
        {1, "Button", "Apply", 75, 73, 40, 13},        {5099, "Button", "Button1", 56, 73, 13, 13},
        {5100, "Button", "Show PCTF", 36, 73, 13, 13}, {5111, "ComboBox", nullptr, 34, 56, 0, 0},
        {5113, "Static", "Display:", 3, 57, 26, 12},
    };
    for (const auto& expected : template_5004) expect_control(panel, expected);
    EXPECT_FALSE(of_panel(5099).visible());
    EXPECT_EQ(style_of(of_panel(5100)) & (BS_TYPEMASK | BS_PUSHLIKE | BS_BITMAP),
              BS_AUTOCHECKBOX | BS_PUSHLIKE | BS_BITMAP);
    EXPECT_EQ(style_of(of_panel(1)) & BS_TYPEMASK, BS_DEFPUSHBUTTON);
    const char* entries[] = {"Real", "Imaginary", "Modulus", "Log of Modulus", "Phase"};
    EXPECT_EQ(of_panel(5111).send(CB_GETCOUNT), 5);
    for (int i = 0; i < 5; ++i) {
        char text[64] = {};
        SendMessageA(of_panel(5111).window, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        EXPECT_STREQ(text, entries[i]);
    }
}

TEST_F(panel_window, StacksSheetAndControlsWhenFirstShown)
{
    const LONG width = control{panel}.client().right;
    show_panel();
    const RECT client = control{panel}.client(), tabs = control{sheet()}.place();
    const RECT apply = of_panel(1).place(), pctf = of_panel(5100).place(), combo = of_panel(5111).place(),
               label = of_panel(5113).place();
    EXPECT_TRUE(client.right == width && tabs.left == 0 && tabs.top == 0 && tabs.right <= width);
    EXPECT_TRUE(apply.right == width - 8 && apply.bottom == client.bottom - 8);
    EXPECT_TRUE(pctf.right == apply.left - 8 && pctf.bottom == apply.bottom);
    EXPECT_TRUE(label.left == 0 && combo.left == label.right && label.top >= tabs.bottom && combo.top > label.top);
    const auto bitmap = reinterpret_cast<HBITMAP>(of_panel(5100).send(BM_GETIMAGE, IMAGE_BITMAP));
    const win32::unique_memory_dc memory{CreateCompatibleDC(nullptr)};
    const win32::selected_object selected{memory.get(), bitmap};
    EXPECT_EQ(GetPixel(memory.get(), 0, 0), GetSysColor(COLOR_BTNFACE));
    const control strip{GetDlgItem(sheet(), 0x3020)};
    RECT area{0, 0, tabs.right, tabs.bottom};
    strip.send(TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    for (const page_table& page : pages) {
        const RECT place = control{go_to_page(page.index)}.place();
        EXPECT_TRUE(EqualRect(&place, &area)) << page.tab;
        char text[32] = {};
        TCITEMA item{TCIF_TEXT, 0, 0, text, sizeof text, 0, 0};
        strip.send(TCM_GETITEMA, static_cast<WPARAM>(page.index), reinterpret_cast<LPARAM>(&item));
        EXPECT_STREQ(text, page.tab);
    }
}

}  // namespace
}  // namespace windows_tests
