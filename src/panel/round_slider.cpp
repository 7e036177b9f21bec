#include "panel/round_slider.h"

#include <cstdlib>
#include <cwchar>

#include "win32/handles.h"

namespace qorv::panel {

namespace {

int height_of(HFONT font)
{
    LOGFONT description{};
    ::GetObject(font, sizeof description, &description);
    return std::abs(description.lfHeight);
}

int dots_per_inch(HWND window) { return ::GetDeviceCaps(win32::window_dc{window}.get(), LOGPIXELSX); }

HFONT font_of(const CWnd& window) { return reinterpret_cast<HFONT>(window.SendMessage(WM_GETFONT)); }

}  // namespace

BEGIN_MESSAGE_MAP(CRoundSliderCtrl, CSliderCtrl)
ON_WM_CREATE()
ON_WM_SIZE()
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_ENABLE()
ON_WM_LBUTTONDOWN()
ON_WM_MOUSEMOVE()
ON_WM_LBUTTONUP()
ON_WM_CAPTURECHANGED()
ON_WM_MOUSEWHEEL()
ON_WM_GETDLGCODE()
ON_WM_CHAR()
ON_WM_KEYDOWN()
ON_WM_KEYUP()
ON_WM_SETFOCUS()
ON_WM_KILLFOCUS()
ON_MESSAGE(TBM_SETPOS, &CRoundSliderCtrl::OnSetPos)
ON_MESSAGE(WM_SETFONT, &CRoundSliderCtrl::OnSetFont)
END_MESSAGE_MAP()

BOOL CRoundSliderCtrl::PreCreateWindow(CREATESTRUCT& create)
{
    being_created_ = true;  // no slider message works before the slider's own WM_CREATE
    return CSliderCtrl::PreCreateWindow(create);
}

int CRoundSliderCtrl::OnCreate(LPCREATESTRUCT create)
{
    if (CSliderCtrl::OnCreate(create) != 0) return -1;
    being_created_ = false;
    set_up();
    return 0;
}

void CRoundSliderCtrl::PreSubclassWindow()
{
    CSliderCtrl::PreSubclassWindow();
    if (!being_created_) set_up();
}

void CRoundSliderCtrl::set_up()
{
    SetRange(0, 359);
    SetLineSize(1);
    SetPageSize(10);
    Layout();
}

void CRoundSliderCtrl::Layout()
{
    CRect client;
    GetClientRect(client);
    layout_ = lay_out_knob({client.left, client.top, client.right, client.bottom}, knob_radius_);
    CRgn ellipse;
    ellipse.CreateEllipticRgnIndirect(client);
    if (SetWindowRgn(ellipse, TRUE)) ellipse.Detach();  // SetWindowRgn took ownership
    if (!edit_.m_hWnd) {
        make_edit();
    } else {
        edit_.EnableWindow(IsWindowEnabled());
        SetPos(GetPos());
    }
    show_edit();
}

void CRoundSliderCtrl::make_edit()
{
    if (!edit_.Create(WS_CHILD | ES_READONLY | edit_style_, CRect{}, this, 0)) return;
    edit_.SetOwner(this);
    const HFONT font = font_of(*GetParent());
    edit_.SetFont(font, FALSE);
    edit_.SetWindowText(FormatPos());
    edit_.EnableWindow(IsWindowEnabled());
    PlaceEdit();
}

void CRoundSliderCtrl::show_edit()
{
    if (edit_mode_ == edit_mode::hidden) {
        edit_.ShowWindow(SW_HIDE);
    } else {
        edit_.SetReadOnly(edit_mode_ == edit_mode::read_only);
        edit_.ShowWindow(SW_SHOW);
    }
}

CRect CRoundSliderCtrl::GetEditRect() const
{
    const auto place = edit_rectangle(layout_, knob_radius_, height_of(font_of(edit_)));
    return {place.left, place.top, place.right, place.bottom};
}

void CRoundSliderCtrl::PlaceEdit()
{
    const auto place = at_resolution(dots_per_inch(m_hWnd), edit_place);
    edit_.MoveWindow(CRect{place.left, place.top, place.right, place.bottom});
}

void CRoundSliderCtrl::SetFormat(const CString& format)
{
    format_ = format;
    if (m_hWnd) SetPos(GetPos());
}

CString CRoundSliderCtrl::FormatPos(int position) const
{
    wchar_t text[512];
    std::swprintf(text, std::size(text), format_, static_cast<long>(position));
    return text;
}

void CRoundSliderCtrl::SetZero(int degrees)
{
    zero_ = degrees;
    if (m_hWnd) Invalidate(FALSE);
}

void CRoundSliderCtrl::SetInverted(bool inverted)
{
    inverted_ = inverted;
    if (m_hWnd) Invalidate(FALSE);
}

void CRoundSliderCtrl::SetEditMode(edit_mode mode)
{
    edit_mode_ = mode;
    if (m_hWnd) Layout();
}

dial CRoundSliderCtrl::scale() const { return {GetRangeMin(), GetRangeMax(), zero_, inverted_}; }

LRESULT CRoundSliderCtrl::OnSetPos(WPARAM redraw, LPARAM position)
{
    DefWindowProc(TBM_SETPOS, redraw, scale().clamp(static_cast<int>(position)));
    if (edit_.m_hWnd) {
        const CString text = FormatPos();
        wchar_t shown[512];
        edit_.GetWindowText(shown, static_cast<int>(std::size(shown)));
        if (CString{shown} != text) {
            edit_.SetWindowText(text);
            edit_.SetSel(text.GetLength(), text.GetLength());  // typing continues at the end
        }
        PlaceEdit();
    }
    NotifyParent(TB_LINEUP);
    return 0;
}

bool CRoundSliderCtrl::SetPos(CPoint mouse)
{
    const int position = position_of_point(scale(), layout_, {mouse.x, mouse.y});
    if (position == GetPos()) return false;
    SetPos(position);
    return true;
}

void CRoundSliderCtrl::NotifyParent(int code)
{
    GetParent()->PostMessage(WM_HSCROLL, static_cast<WPARAM>(MAKELONG(code, GetPos())),
                             reinterpret_cast<LPARAM>(m_hWnd));
}

LRESULT CRoundSliderCtrl::OnSetFont(WPARAM font, LPARAM redraw)
{
    Default();
    if (!edit_.m_hWnd) return 0;
    const int height = height_of(reinterpret_cast<HFONT>(font));
    const auto inside = edit_rectangle(layout_, knob_radius_, height);
    edit_.MoveWindow(CRect{inside.left, inside.top, inside.right, inside.bottom}, FALSE);
    PlaceEdit();
    edit_.SetFont(reinterpret_cast<HFONT>(font), static_cast<BOOL>(redraw));
    return 0;
}

void CRoundSliderCtrl::OnSize(UINT type, int width, int height)
{
    CSliderCtrl::OnSize(type, width, height);
    if (!being_created_) Layout();
}

void CRoundSliderCtrl::OnEnable(BOOL enable)
{
    CSliderCtrl::OnEnable(enable);
    edit_.EnableWindow(enable);
    Invalidate(FALSE);
}

}  // namespace qorv::panel
