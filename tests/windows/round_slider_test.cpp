// The round slider: its picture pixel by pixel, its notifications, and real mouse input.
#include "panel/round_slider.h"

#include "panel/rules/ring.h"
#include "tests/windows/page_tables.h"

namespace windows_tests {
namespace {

using namespace qorv::panel;

/// The picture that the rules give; the two filled discs are drawn by the system, as the slider has them drawn.
std::vector<COLORREF> expected_picture(int width, int height, int knob_radius, int position, bool enabled, bool focused,
                                       bool dragging)
{
    const HDC screen = GetDC(nullptr), dc = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    const HGDIOBJ former = SelectObject(dc, bitmap);
    const RECT all{0, 0, width, height};
    FillRect(dc, &all, GetSysColorBrush(COLOR_BTNFACE));
    const auto [centre, radius] = lay_out_knob({0, 0, width, height}, knob_radius);
    SelectObject(dc, GetStockObject(NULL_PEN));
    SelectObject(dc, GetSysColorBrush(enabled ? COLOR_WINDOW : COLOR_BTNFACE));
    Ellipse(dc, centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius);
    const auto ring = [&](point around, int r, int light, int dark) {
        draw_ring(around, r, GetSysColor(light), GetSysColor(dark),
                  [&](int x, int y, colour mixed) { SetPixel(dc, x, y, mixed); });
    };
    ring(centre, radius, COLOR_3DDKSHADOW, COLOR_BTNHIGHLIGHT);
    ring(centre, radius - 1, COLOR_BTNSHADOW, COLOR_3DLIGHT);
    ring(centre, radius - 3, COLOR_BTNHIGHLIGHT, COLOR_3DDKSHADOW);
    ring(centre, radius - 4, COLOR_3DLIGHT, COLOR_BTNSHADOW);
    const point at = knob_centre({}, {centre, radius}, position);
    const int k = knob_radius;
    const HRGN disc = CreateEllipticRgn(at.x - k, at.y - k, at.x + k, at.y + k);
    FillRgn(dc, disc, GetSysColorBrush(COLOR_BTNFACE));
    DeleteObject(disc);
    ring(at, k - 1, dragging ? COLOR_3DDKSHADOW : COLOR_BTNHIGHLIGHT, dragging ? COLOR_BTNHIGHLIGHT : COLOR_3DDKSHADOW);
    ring(at, k - 2, dragging ? COLOR_BTNSHADOW : COLOR_3DLIGHT, dragging ? COLOR_3DLIGHT : COLOR_BTNSHADOW);
    if (focused) draw_dotted_circle(at, k - 4, [&](int x, int y) { SetPixel(dc, x, y, 0); });
    std::vector<COLORREF> pixels;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) pixels.push_back(GetPixel(dc, x, y));
    }
    SelectObject(dc, former);
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return pixels;
}

/// `right` is where the spin button beside the knob begins.
void expect_picture(const control& knob, LONG right, bool enabled, bool focused, bool dragging)
{
    pump();
    const RECT area = knob.client();
    const auto position = static_cast<int>(knob.send(TBM_GETPOS));
    const auto is = pixels_of(knob.window, area.right, area.bottom);
    const auto wanted = expected_picture(area.right, area.bottom, 5, position, enabled, focused, dragging);
    const HRGN inside = CreateEllipticRgn(0, 0, area.right, area.bottom);
    const RECT edit{17, 20, 39, 35};
    int compared = 0, different = 0;
    for (int y = 0; y < area.bottom; ++y) {
        for (int x = 0; x < area.right; ++x) {
            if (x >= right || !PtInRegion(inside, x, y) || PtInRect(&edit, {x, y})) continue;
            const auto i = static_cast<std::size_t>(y * area.right + x);
            ++compared;
            if (is[i] != wanted[i] && different++ < 3) {
                ADD_FAILURE() << std::hex << is[i] << " instead of " << wanted[i] << std::dec << " at " << x << ',' << y
                              << ", position " << position;
            }
        }
    }
    DeleteObject(inside);
    EXPECT_GT(compared, 1500);
    EXPECT_EQ(different, 0) << enabled << focused << dragging;
}

TEST_F(panel_window, knob_is_painted_by_the_rules_to_the_pixel)
{
    show_panel();
    go_to_page(1);
    const control knob = of_page(5000), other = of_page(5092);
    const LONG right = of_page(5048).place().left - knob.place().left;
    for (const int position : {0, 45, 123, 200, 359}) {
        knob.send(TBM_SETPOS, TRUE, position);
        SetFocus(other.window);
        expect_picture(knob, right, true, false, false);
        SetFocus(knob.window);
        expect_picture(knob, right, true, true, false);
    }
    const RECT part{30, 20, 50, 50};  // spoilt, and painted alone
    const HDC on_knob = GetDC(knob.window);
    FillRect(on_knob, &part, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    ReleaseDC(knob.window, on_knob);
    InvalidateRect(knob.window, &part, FALSE);
    expect_picture(knob, right, true, true, false);
    const int cx = knob.client().right / 2, cy = knob.client().bottom / 2;
    knob.mouse(WM_LBUTTONDOWN, cx - 15, cy - 8);
    expect_picture(knob, right, true, true, true);
    knob.mouse(WM_MOUSEMOVE, cx + 3, cy + 18);
    expect_picture(knob, right, true, true, true);
    knob.mouse(WM_LBUTTONUP, cx + 3, cy + 18);
    expect_picture(knob, right, true, true, false);
    SetFocus(other.window);
    host.set("BasicPaneIsEnabled", 0);
    host.update_panel();
    expect_picture(knob, right, false, false, false);
}

/// A parent that writes down what its slider says: "code@position".
class listening_parent : public CWnd
{
    DECLARE_MESSAGE_MAP()
  public:
    events said;
    events take()
    {
        pump();
        return std::exchange(said, {});
    }

  protected:
    void OnHScroll(UINT code, UINT position, CWnd*)
    {
        said.push_back(std::to_string(code) + "@" + std::to_string(position));
    }
};

BEGIN_MESSAGE_MAP(listening_parent, CWnd)
ON_WM_HSCROLL()
END_MESSAGE_MAP()

class lone_knob : public testing::Test
{
  protected:
    lone_knob()
    {
        parent.CreateEx(0, TEXT("STATIC"), nullptr, WS_CHILD | WS_VISIBLE, CRect{0, 0, 150, 150},
                        CWnd::FromHandle(the_frame()), 0);
        knob.Create(WS_CHILD | WS_VISIBLE, CRect{10, 10, 110, 110}, &parent, 7);
        parent.take();
    }

    listening_parent parent;
    CRoundSliderCtrl knob;
};

TEST_F(lone_knob, comes_with_the_dial_of_a_circle_and_no_text)
{
    EXPECT_EQ(knob.GetRangeMin(), 0);
    EXPECT_EQ(knob.GetRangeMax(), 359);
    EXPECT_EQ(knob.GetLineSize(), 1);
    EXPECT_EQ(knob.GetPageSize(), 10);
    EXPECT_EQ(knob.GetKnobRadius(), 7);
    const control edit{GetWindow(knob.m_hWnd, GW_CHILD)};
    EXPECT_FALSE(edit.visible());
    knob.SetEditMode(edit_mode::read_only);
    EXPECT_TRUE(edit.visible());
    EXPECT_TRUE(GetWindowLongW(edit.window, GWL_STYLE) & ES_READONLY);
    edit.type("99");  // by somebody else; a read-only field says nothing
    EXPECT_EQ(knob.GetPos(), 0);
    const HRGN shape = CreateRectRgn(0, 0, 0, 0), ellipse = CreateEllipticRgn(0, 0, 100, 100);
    GetWindowRgn(knob.m_hWnd, shape);
    EXPECT_EQ(CombineRgn(shape, shape, ellipse, RGN_XOR), NULLREGION);
    DeleteObject(shape);
    DeleteObject(ellipse);
}

TEST_F(lone_knob, tells_its_parent_of_everything)
{
    const control slider{knob.m_hWnd};
    slider.send(TBM_SETPOS, TRUE, 30);
    slider.send(TBM_SETPOS, TRUE, 30);
    EXPECT_EQ(parent.take(), (events{"0@30", "0@30"}));
    slider.send(TBM_SETPOS, TRUE, 1000);
    slider.send(TBM_SETPOS, TRUE, -1);
    EXPECT_EQ(parent.take(), (events{"0@359", "0@0"}));
    const struct
    {
        WPARAM key;
        events down, up;
    } keys[] = {{VK_PRIOR, {"0@350", "2@350"}, {"8@350"}},
                {VK_NEXT, {"0@0", "3@0"}, {"8@0"}},
                {VK_LEFT, {"0@359", "0@359"}, {"8@359"}},
                {VK_UP, {"0@358", "0@358"}, {"8@358"}},
                {VK_RIGHT, {"0@359", "1@359"}, {"8@359"}},
                {VK_DOWN, {"0@0", "1@0"}, {"8@0"}},
                {VK_HOME, {}, {}},
                {VK_END, {}, {}}};
    for (const auto& [key, down, up] : keys) {
        slider.send(WM_KEYDOWN, key, 1);
        EXPECT_EQ(parent.take(), down) << key;
        slider.send(WM_KEYUP, key, 1);
        EXPECT_EQ(parent.take(), up) << key;
    }
    slider.mouse(WM_LBUTTONDOWN, 50, 10);
    EXPECT_EQ(parent.take(), (events{"0@90", "5@90"}));
    slider.mouse(WM_LBUTTONDOWN, 10, 50);  // of no account during a drag
    slider.mouse(WM_MOUSEMOVE, 50, 5);
    EXPECT_EQ(parent.take(), events{});
    slider.mouse(WM_LBUTTONUP, 10, 50);
    EXPECT_EQ(parent.take(), (events{"0@180", "5@180", "4@180"}));
    slider.mouse(WM_LBUTTONDOWN, 10, 50);
    slider.mouse(WM_LBUTTONUP, 10, 50);
    EXPECT_EQ(parent.take(), events{}) << "pressed and not moved";
    slider.mouse(WM_LBUTTONDOWN, 50, 90);
    SetCapture(parent.m_hWnd);  // the drag ends with the capture
    ReleaseCapture();
    parent.take();
    slider.mouse(WM_MOUSEMOVE, 90, 50);
    EXPECT_EQ(parent.take(), events{});
    EXPECT_EQ(knob.GetPos(), 270);
}

TEST_F(lone_knob, follows_zero_sense_range_and_format)
{
    const control slider{knob.m_hWnd}, edit{GetWindow(knob.m_hWnd, GW_CHILD)};
    knob.SetZero(90);
    slider.mouse(WM_LBUTTONDOWN, 50, 90);
    slider.mouse(WM_LBUTTONUP, 50, 90);
    EXPECT_EQ(knob.GetPos(), 180);
    knob.SetZero(0);
    knob.SetInverted(true);
    slider.mouse(WM_LBUTTONDOWN, 90, 50);
    slider.mouse(WM_LBUTTONUP, 90, 50);
    EXPECT_EQ(knob.GetPos(), 180);
    knob.SetRange(-3, 4);
    slider.send(TBM_SETPOS, TRUE, 5);
    EXPECT_EQ(knob.GetPos(), 4);
    slider.key(VK_RIGHT);
    EXPECT_EQ(knob.GetPos(), -3);
    knob.SetFormat(TEXT("<%03ld>"));
    EXPECT_EQ(edit.text(), "<-03>");
    EXPECT_EQ(knob.FormatPos(12), CString{TEXT("<012>")});
}

TEST_F(panel_window, knob_follows_the_real_mouse)
{
    show_panel();
    SetForegroundWindow(frame);
    go_to_page(1);
    heard();
    const control knob = of_page(5004);
    POINT centre{knob.client().right / 2, knob.client().bottom / 2};
    ClientToScreen(knob.window, &centre);
    const auto move = [&](int dx, int dy, DWORD button) { real_mouse({centre.x + dx, centre.y + dy}, button); };
    move(12, 0, 0);
    move(12, 0, MOUSEEVENTF_LEFTDOWN);
    move(12, -12, 0);
    move(0, -14, 0);
    move(-14, 0, 0);
    move(-14, 0, MOUSEEVENTF_LEFTUP);
    EXPECT_EQ(heard(), (events{"AngA1 = 45", "OnChange", "AngA1 = 90", "OnChange", "AngA1 = 180", "OnChange"}));
}

}  // namespace
}  // namespace windows_tests
