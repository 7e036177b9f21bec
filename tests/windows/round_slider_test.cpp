// The round slider: its picture, its notifications, and mouse input of the system.
#include "panel/round_slider.h"

#include "host/windows/screenshot.h"
#include "panel/rules/ring.h"
#include "tests/support/digest.h"
#include "tests/windows/page_tables.h"
#include "win32/handles.h"

namespace windows_tests {
namespace {

using namespace qorv::panel;

/// The picture of a page's knob. Its inline edit and the overlap with the spin button, from `right` on, are black.
zentrix::host::picture picture_of(const control& knob, LONG right)
{
    pump();
    auto taken = zentrix::host::picture_of_client(knob.window);
    const RECT edit{17, 20, 39, 35};
    const win32::unique_region inside{CreateEllipticRgn(0, 0, taken.width, taken.height)};
    auto pixel = taken.bytes.begin();
    for (int y = 0; y < taken.height; ++y) {
        for (int x = 0; x < taken.width; ++x, pixel += 3)
            if (x >= right || !PtInRegion(inside.get(), x, y) || PtInRect(&edit, {x, y})) std::fill_n(pixel, 3, 0);
    }
    return taken;
}

COLORREF pixel_of(const zentrix::host::picture& of, int x, int y)
{
    const std::uint8_t* const pixel = &of.bytes[static_cast<std::size_t>(3 * (y * of.width + x))];
    return RGB(pixel[0], pixel[1], pixel[2]);
}

TEST_F(panel_window, AKnobLooksAsStored)
{
    show_panel();
    go_to_page(1);
    const control knob = of_page(5000), other = of_page(5092);
    const LONG right = of_page(5048).place().left - knob.place().left;
    const int cx = knob.client().right / 2, cy = knob.client().bottom / 2, radius = 21;
    support::fnv1a digest;
    const auto look = [&] {
        auto now = picture_of(knob, right);
        for (const std::uint8_t byte : now.bytes) digest.add(byte);
        return now;
    };
    for (const int position : {0, 45, 123, 200, 359}) {
        knob.send(TBM_SETPOS, TRUE, position);
        SetFocus(other.window);
        look();
        SetFocus(knob.window);
        look();
    }
    const auto whole = look();
    EXPECT_EQ(pixel_of(whole, cx - 12, cy), GetSysColor(COLOR_WINDOW)) << "disc";
    EXPECT_EQ(pixel_of(whole, 3, cy), GetSysColor(COLOR_BTNFACE)) << "background";
    EXPECT_EQ(pixel_of(whole, cx + radius - 2, cy), GetSysColor(COLOR_BTNFACE)) << "knob";
    EXPECT_EQ(pixel_of(whole, cx + radius - 1, cy), RGB(0, 0, 0)) << "focus";
    EXPECT_EQ(pixel_of(whole, cx - 15, cy - 15),
              ring_colour(-15, -15, GetSysColor(COLOR_3DDKSHADOW), GetSysColor(COLOR_BTNHIGHLIGHT)));
    const RECT part{30, 20, 50, 50};
    FillRect(win32::window_dc{knob.window}.get(), &part, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    InvalidateRect(knob.window, &part, FALSE);
    EXPECT_EQ(look().bytes, whole.bytes) << "repainted in part";
    knob.mouse(WM_LBUTTONDOWN, cx - 15, cy - 8);
    look();
    knob.mouse(WM_MOUSEMOVE, cx + 3, cy + 18);
    const auto pressed = look();
    knob.mouse(WM_LBUTTONUP, cx + 3, cy + 18);
    EXPECT_NE(look().bytes, pressed.bytes);
    SetFocus(other.window);
    host.set("BasicPaneIsEnabled", 0);
    host.update_panel();
    EXPECT_EQ(pixel_of(look(), cx - 12, cy), GetSysColor(COLOR_BTNFACE)) << "disabled";
    // With Wine's system colours and ellipses.
    EXPECT_EQ(digest.value(), 0x91b7ead54d9a7f30u) << std::hex << digest.value();
}

/// A parent that records its slider's notifications: "code@position".
class recording_parent : public CWnd
{
    DECLARE_MESSAGE_MAP()
  public:
    events received;
    events take()
    {
        pump();
        return std::exchange(received, {});
    }

  protected:
    void OnHScroll(UINT code, UINT position, CWnd*)
    {
        received.push_back(std::to_string(code) + "@" + std::to_string(position));
    }
};

BEGIN_MESSAGE_MAP(recording_parent, CWnd)
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

    recording_parent parent;
    CRoundSliderCtrl knob;
};

TEST_F(lone_knob, StartsWithTheRangeOfACircleAndNoText)
{
    EXPECT_TRUE(knob.GetRangeMin() == 0 && knob.GetRangeMax() == 359 && knob.GetKnobRadius() == 7);
    EXPECT_TRUE(knob.GetLineSize() == 1 && knob.GetPageSize() == 10);
    const control edit{GetWindow(knob.m_hWnd, GW_CHILD)};
    EXPECT_FALSE(edit.visible());
    knob.SetEditMode(edit_mode::read_only);
    EXPECT_TRUE(edit.visible());
    EXPECT_TRUE(GetWindowLongW(edit.window, GWL_STYLE) & ES_READONLY);
    edit.type("99");  // programmatically; a read-only field is not read
    EXPECT_EQ(knob.GetPos(), 0);
    const win32::unique_region shape{CreateRectRgn(0, 0, 0, 0)}, ellipse{CreateEllipticRgn(0, 0, 100, 100)};
    GetWindowRgn(knob.m_hWnd, shape.get());
    EXPECT_EQ(CombineRgn(shape.get(), shape.get(), ellipse.get(), RGN_XOR), NULLREGION);
}

TEST_F(lone_knob, NotifiesItsParent)
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
    knob.SetWheelSize(5);
    for (const auto& [held, position] : {std::pair{0, "0@5"}, {MK_CONTROL, "0@15"}, {MK_SHIFT, "0@16"}}) {
        slider.send(WM_MOUSEWHEEL, MAKEWPARAM(held, WHEEL_DELTA), 0);
        EXPECT_EQ(parent.take(), events{position}) << held;
    }
    slider.mouse(WM_LBUTTONDOWN, 50, 10);
    EXPECT_EQ(parent.take(), (events{"0@90", "5@90"}));
    slider.mouse(WM_LBUTTONDOWN, 10, 50);  // ignored during a drag
    slider.mouse(WM_MOUSEMOVE, 50, 5);
    EXPECT_EQ(parent.take(), events{});
    slider.mouse(WM_LBUTTONUP, 10, 50);
    EXPECT_EQ(parent.take(), (events{"0@180", "5@180", "4@180"}));
    slider.click(10, 50);
    EXPECT_EQ(parent.take(), events{}) << "pressed but not moved";
    slider.mouse(WM_LBUTTONDOWN, 50, 90);
    SetCapture(parent.m_hWnd);  // the drag ends with the capture
    ReleaseCapture();
    parent.take();
    slider.mouse(WM_MOUSEMOVE, 90, 50);
    EXPECT_EQ(parent.take(), events{});
    EXPECT_EQ(knob.GetPos(), 270);
}

TEST_F(lone_knob, UsesZeroInversionRangeAndFormat)
{
    const control slider{knob.m_hWnd}, edit{GetWindow(knob.m_hWnd, GW_CHILD)};
    knob.SetZero(90);
    knob.SetInverted(true);
    slider.click(90, 50);
    EXPECT_EQ(knob.GetPos(), 90);
    knob.SetRange(-3, 4);
    slider.send(TBM_SETPOS, TRUE, 5);
    slider.key(VK_RIGHT);
    knob.SetFormat(TEXT("<%03ld>"));
    EXPECT_EQ(edit.text(), "<-03>");
    EXPECT_EQ(knob.FormatPos(12), CString{TEXT("<012>")});
}

}  // namespace
}  // namespace windows_tests
