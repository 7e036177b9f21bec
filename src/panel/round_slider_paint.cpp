#include "panel/memory_dc.h"
#include "panel/round_slider.h"
#include "panel/rules/ring.h"
#include "win32/handles.h"

namespace qorv::panel {

namespace {

/// The system colours of a ring at its upper left and lower right.
struct shades
{
    int light, dark;
};

constexpr shades sunken_outer{COLOR_3DDKSHADOW, COLOR_BTNHIGHLIGHT};
constexpr shades sunken_inner{COLOR_BTNSHADOW, COLOR_3DLIGHT};
constexpr shades raised_outer{COLOR_BTNHIGHLIGHT, COLOR_3DDKSHADOW};
constexpr shades raised_inner{COLOR_3DLIGHT, COLOR_BTNSHADOW};

void paint_ring(CDC& dc, point centre, int radius, shades shade)
{
    draw_ring(centre, radius, ::GetSysColor(shade.light), ::GetSysColor(shade.dark),
              [&](int x, int y, colour mixed) { dc.SetPixelV(x, y, mixed); });
}

void fill_disc(CDC& dc, point centre, int radius, COLORREF colour)
{
    const CBrush brush{colour};
    const win32::selected_object filled{dc, brush}, without_outline{dc, ::GetStockObject(NULL_PEN)};
    dc.Ellipse(centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius);
}

}  // namespace

BOOL CRoundSliderCtrl::OnEraseBkgnd(CDC*) { return TRUE; }

void CRoundSliderCtrl::OnPaint()
{
    CPaintDC paint_dc{this};
    if (::IsRectEmpty(&paint_dc.m_ps.rcPaint)) return;
    CMemDC memory{&paint_dc};
    paint(memory);
}

void CRoundSliderCtrl::paint(CDC& dc)
{
    CRect client;
    GetClientRect(client);
    const auto [centre, radius] = layout_;
    dc.FillSolidRect(client, ::GetSysColor(COLOR_BTNFACE));
    if (edit_mode_ == edit_mode::editable) {
        fill_disc(dc, centre, radius, ::GetSysColor(IsWindowEnabled() ? COLOR_WINDOW : COLOR_BTNFACE));
    }
    paint_ring(dc, centre, radius, sunken_outer);
    paint_ring(dc, centre, radius - 1, sunken_inner);
    paint_ring(dc, centre, radius - 3, raised_outer);
    paint_ring(dc, centre, radius - 4, raised_inner);
    paint_knob(dc);
}

void CRoundSliderCtrl::paint_knob(CDC& dc)
{
    const point centre = knob_centre(scale(), layout_, GetPos());
    const int k = knob_radius_;
    CRgn disc;
    disc.CreateEllipticRgn(centre.x - k, centre.y - k, centre.x + k, centre.y + k);
    CBrush face{::GetSysColor(COLOR_BTNFACE)};
    dc.FillRgn(&disc, &face);
    paint_ring(dc, centre, k - 1, dragging_ ? sunken_outer : raised_outer);
    paint_ring(dc, centre, k - 2, dragging_ ? sunken_inner : raised_inner);
    if (::GetFocus() == m_hWnd) {
        draw_dotted_circle(centre, k - 4, [&](int x, int y) { dc.SetPixelV(x, y, RGB(0, 0, 0)); });
    }
}

}  // namespace qorv::panel
