// What stands where: every control by id, class, text and place.
#include "tests/windows/page_tables.h"

namespace windows_tests {
namespace {

struct wanted_control
{
    int id;
    const char *class_name, *text;
    int x, y, width, height;  // dialog units; no width: the width is free
};

void expect_control(HWND dialog, const wanted_control& wanted)
{
    const control found{GetDlgItem(dialog, wanted.id)};
    SCOPED_TRACE(wanted.id);
    ASSERT_NE(found.window, nullptr);
    EXPECT_STRCASEEQ(found.class_name().c_str(), wanted.class_name);
    if (wanted.text) {
        EXPECT_EQ(found.text(), wanted.text);
    }
    RECT place{wanted.x, wanted.y, wanted.width, wanted.height};
    MapDialogRect(dialog, &place);
    const RECT is = found.place();
    EXPECT_EQ(is.left, place.left);
    EXPECT_EQ(is.top, place.top);
    if (wanted.width) {
        // The system has its own mind about a spin button's width.
        EXPECT_NEAR(is.right - is.left, place.right, found.class_name() == "msctls_updown32" ? 2 : 0);
        EXPECT_EQ(is.bottom - is.top, place.bottom);
    }
}

void expect_range(const control& spin, int low, int high)
{
    int is_low = -1, is_high = -1;
    spin.send(UDM_GETRANGE32, reinterpret_cast<WPARAM>(&is_low), reinterpret_cast<LPARAM>(&is_high));
    EXPECT_TRUE(is_low == low && is_high == high) << is_low << ".." << is_high;
}

int children_of(HWND dialog)
{
    int count = 0;
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) ++count;
    return count;
}

DWORD style_of(HWND dialog, int id) { return static_cast<DWORD>(GetWindowLongW(GetDlgItem(dialog, id), GWL_STYLE)); }

TEST_F(panel_window, pages_have_every_control_in_its_place)
{
    show_panel();
    for (const page_table& page : pages) {
        SCOPED_TRACE(page.tab);
        const HWND dialog = go_to_page(page.index);
        int count = 0;
        const auto expect = [&](const wanted_control& wanted) {
            expect_control(dialog, wanted);
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
            const auto spin_style = style_of(dialog, row.modulus_spin);
            EXPECT_EQ(spin_style & 0xff, UDS_AUTOBUDDY | UDS_ARROWKEYS | UDS_NOTHOUSANDS);
            EXPECT_EQ(reinterpret_cast<HWND>(of_page(row.modulus_spin).send(UDM_GETBUDDY)),
                      of_page(row.modulus).window);
            expect_range(of_page(row.modulus_spin), 0, 9999);
            for (const int edit : {row.modulus, row.step}) {
                EXPECT_EQ((style_of(dialog, edit) & ES_NUMBER) != 0, page.index == 4) << edit;
            }
            if (row.knob) {
                expect({row.knob, "msctls_trackbar32", "", 54, y - 11, 36, 36});
                expect({row.angle_spin, "msctls_updown32", "", 88, y - 2, 10, 14});
                EXPECT_EQ(style_of(dialog, row.angle_spin) & 0xff, UDS_ARROWKEYS);
                expect_range(of_page(row.angle_spin), 0, page.index == 4 ? 259 : 359);
                EXPECT_EQ(of_page(row.knob).send(TBM_GETRANGEMAX), 359);
                const control edit{GetWindow(of_page(row.knob).window, GW_CHILD)};
                const RECT place = edit.place(), wanted{17, 20, 39, 35};
                EXPECT_TRUE(EqualRect(&place, &wanted) && edit.visible());
                EXPECT_EQ(GetWindowLongW(edit.window, GWL_STYLE) & (ES_RIGHT | ES_READONLY), ES_RIGHT);
            } else {
                expect({row.unit, "Static", row.unit_text, 54, y + 3, 0, 0});
            }
            y += 36;
        }
        if (page.index == 1) {
            expect({5109, "Static", "NOT USED", 54, 14, 0, 0});
            EXPECT_FALSE(of_page(5109).visible());
        }
        EXPECT_EQ(children_of(dialog), count);
    }
}

TEST_F(panel_window, controls_stand_as_the_template_says_until_shown)
{
    const wanted_control template_5004[] = {
        {1, "Button", "Apply", 75, 73, 40, 13},        {5099, "Button", "Button1", 56, 73, 13, 13},
        {5100, "Button", "Show PCTF", 36, 73, 13, 13}, {5111, "ComboBox", nullptr, 34, 56, 0, 0},
        {5113, "Static", "Display:", 3, 57, 26, 12},
    };
    for (const auto& wanted : template_5004) expect_control(panel, wanted);
    EXPECT_FALSE(of_panel(5099).visible());
    EXPECT_EQ(style_of(panel, 5100) & (BS_TYPEMASK | BS_PUSHLIKE | BS_BITMAP),
              BS_AUTOCHECKBOX | BS_PUSHLIKE | BS_BITMAP);
    EXPECT_EQ(style_of(panel, 1) & BS_TYPEMASK, BS_DEFPUSHBUTTON);
    const char* entries[] = {"Real", "Imaginary", "Modulus", "Log of Modulus", "Phase"};
    EXPECT_EQ(of_panel(5111).send(CB_GETCOUNT), 5);
    for (int i = 0; i < 5; ++i) {
        char text[64] = {};
        SendMessageA(of_panel(5111).window, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        EXPECT_STREQ(text, entries[i]);
    }
}

TEST_F(panel_window, stacks_sheet_and_controls_when_first_shown)
{
    const auto size = [&](int id) {
        const RECT r = of_panel(id).place();
        return POINT{r.right - r.left, r.bottom - r.top};
    };
    const POINT apply = size(1), label = size(5113), combo = size(5111), pctf = size(5100);
    const LONG width = control{panel}.client().right;
    show_panel();
    const RECT sheet_place = control{sheet()}.place(), client = control{panel}.client();
    EXPECT_EQ(sheet_place.left, 0);
    EXPECT_EQ(sheet_place.top, 0);
    EXPECT_EQ(client.right, width);
    const LONG bottom = sheet_place.bottom + apply.y + label.y + 25;
    EXPECT_EQ(client.bottom, bottom);
    const struct
    {
        int id;
        RECT place;
    } wanted[] = {
        {5113, {0, bottom - apply.y - 13 - label.y, label.x, bottom - apply.y - 8}},
        {5111, {label.x, bottom - apply.y - 8 - label.y, label.x + combo.x, bottom - apply.y - 8 - label.y + combo.y}},
        {1, {width - apply.x, bottom - apply.y - 8, width - 8, bottom - 8}},
        {5100, {width - apply.x - 8 - pctf.x, bottom - pctf.y - 8, width - apply.x - 8, bottom - 8}},
    };
    for (const auto& [id, place] : wanted) {
        const RECT is = of_panel(id).place();
        EXPECT_TRUE(EqualRect(&is, &place))
            << id << ": " << is.left << ',' << is.top << ',' << is.right << ',' << is.bottom;
    }
    EXPECT_NE(of_panel(5100).send(BM_GETIMAGE, IMAGE_BITMAP), 0);
    // Tabs and pages fill the sheet, before and after a page comes to the front.
    const control tabs{GetDlgItem(sheet(), 0x3020)};
    EXPECT_LE(sheet_place.right, width);
    RECT area{0, 0, sheet_place.right, sheet_place.bottom};
    tabs.send(TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    const RECT first = control{active_page()}.place();
    EXPECT_TRUE(EqualRect(&first, &area));
    for (const page_table& page : pages) {
        const RECT is = control{go_to_page(page.index)}.place();
        EXPECT_TRUE(EqualRect(&is, &area)) << page.tab;
        TCITEMA item{};
        char text[32] = {};
        item.mask = TCIF_TEXT;
        item.pszText = text;
        item.cchTextMax = sizeof text;
        tabs.send(TCM_GETITEMA, static_cast<WPARAM>(page.index), reinterpret_cast<LPARAM>(&item));
        EXPECT_STREQ(text, page.tab);
    }
}

/// Pixels that a control's text takes beyond its room; negative where it fits.
LONG overhang(const control& of)
{
    const std::string text = of.text();
    const HDC dc = GetDC(of.window);
    const HGDIOBJ former = SelectObject(dc, reinterpret_cast<HGDIOBJ>(of.send(WM_GETFONT)));
    SIZE needed{};
    GetTextExtentPoint32A(dc, text.c_str(), static_cast<int>(text.size()), &needed);
    SelectObject(dc, former);
    ReleaseDC(of.window, dc);
    RECT room = of.client();
    if (of.class_name() == "Edit") of.send(EM_GETRECT, 0, reinterpret_cast<LPARAM>(&room));
    return needed.cx - (room.right - room.left);
}

TEST_F(panel_window, cuts_no_text_and_no_usual_number)
{
    const struct
    {
        float modulus, step;
        int angle;
    } values[] = {{-62.5f, 0.5f, 35}, {0.15f, 0.01f, 210}, {1200, 10, 300}};
    for (const page_table& page : pages) {
        for (std::size_t i = 0; i < page.rows.size(); ++i) {
            host.set(page.rows[i].key, values[i].modulus);
            host.set(page.rows[i].step_key(), values[i].step);
            if (page.rows[i].knob) host.set(page.rows[i].angle_key, values[i].angle);
        }
    }
    show_panel();
    for (const page_table& page : pages) {
        for (HWND child = GetWindow(go_to_page(page.index), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
            if (!IsWindowVisible(child) || control{child}.class_name() == "msctls_trackbar32") continue;
            EXPECT_LE(overhang({child}), 0) << page.tab << ": " << control{child}.text();
        }
        screenshot(page.tab);
    }
    for (const int id : {1, 5113}) EXPECT_LE(overhang(of_panel(id)), 0) << id;
    go_to_page(1);
    const control knob = of_page(5004);
    knob.mouse(WM_LBUTTONDOWN, 40, 15);
    EXPECT_LE(overhang({GetWindow(knob.window, GW_CHILD)}), 0);
    screenshot("drag");
    knob.mouse(WM_LBUTTONUP, 40, 15);
}

}  // namespace
}  // namespace windows_tests
