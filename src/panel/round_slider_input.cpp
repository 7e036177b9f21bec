#include "panel/round_slider.h"
#include "panel/tab_key.h"

namespace qorv::panel {

void CRoundSliderCtrl::Redraw()
{
    Invalidate();
    UpdateWindow();
}

void CRoundSliderCtrl::OnLButtonDown(UINT, CPoint mouse)
{
    if (dragging_) return;
    dragging_ = true;
    moved_ = false;
    SetCapture();
    SetFocus();
    if (SetPos(mouse)) {
        moved_ = true;
        NotifyParent(TB_THUMBTRACK);
    }
    Redraw();
}

void CRoundSliderCtrl::OnMouseMove(UINT flags, CPoint mouse)
{
    if (!dragging_) return CSliderCtrl::OnMouseMove(flags, mouse);
    if (!SetPos(mouse)) return;
    moved_ = true;
    NotifyParent(TB_THUMBTRACK);
    Redraw();
}

void CRoundSliderCtrl::OnLButtonUp(UINT flags, CPoint mouse)
{
    if (!dragging_) return CSliderCtrl::OnLButtonUp(flags, mouse);
    dragging_ = false;
    ::ReleaseCapture();
    if (SetPos(mouse)) {
        NotifyParent(TB_THUMBTRACK);
        moved_ = true;
    }
    if (moved_) {
        NotifyParent(TB_THUMBPOSITION);
        moved_ = false;
    }
    Redraw();
}

void CRoundSliderCtrl::OnCaptureChanged(CWnd*)
{
    // Not passed to the base class: the linear slider would announce the end of a drag that it did not start.
    if (!dragging_) return;
    dragging_ = moved_ = false;  // another window has the mouse; no button-up will arrive
    Redraw();
}

void CRoundSliderCtrl::Turn(int turned, UINT flags)
{
    if (dragging_) return;
    turned_ += turned;
    const int notches = turned_ / WHEEL_DELTA;
    if (notches == 0) return;
    turned_ -= notches * WHEEL_DELTA;
    const int size = flags & MK_CONTROL ? GetPageSize() : flags & MK_SHIFT ? GetLineSize() : wheel_size_;
    const long long change = static_cast<long long>(notches) * size;
    SetPos(scale().wrap(GetPos() + static_cast<int>(change % scale().count())));
    Redraw();
}

BOOL CRoundSliderCtrl::OnMouseWheel(UINT flags, short turned, CPoint)
{
    Turn(turned, flags);
    return TRUE;  // the linear slider would move without telling the text and the parent
}

bool CRoundSliderCtrl::edit_takes_focus() const { return edit_mode_ == edit_mode::editable && edit_.m_hWnd; }

UINT CRoundSliderCtrl::OnGetDlgCode()
{
    UINT code = CSliderCtrl::OnGetDlgCode();
    if (!edit_takes_focus()) return code;
    if (asks_for_tab(GetCurrentMessage(), tab_key::forwards)) code |= DLGC_WANTMESSAGE;
    return code | DLGC_WANTCHARS;
}

void CRoundSliderCtrl::OnChar(UINT character, UINT repeat, UINT flags)
{
    const bool digit = character >= '0' && character <= '9';
    if (!digit || !edit_takes_focus()) return CSliderCtrl::OnChar(character, repeat, flags);
    edit_.Select();
    edit_.SendMessage(WM_CHAR, character, 1);
}

void CRoundSliderCtrl::OnKeyDown(UINT key, UINT repeat, UINT flags)
{
    if (key == VK_TAB && edit_takes_focus()) return edit_.Select();
    int change = 0, code = 0;
    switch (key) {
        case VK_PRIOR: change = -GetPageSize(), code = TB_PAGEUP; break;
        case VK_NEXT: change = GetPageSize(), code = TB_PAGEDOWN; break;
        case VK_LEFT:
        case VK_UP: change = -GetLineSize(), code = TB_LINEUP; break;
        case VK_RIGHT:
        case VK_DOWN: change = GetLineSize(), code = TB_LINEDOWN; break;
        case VK_HOME:
        case VK_END: return;  // a circle has no ends
        default: return CSliderCtrl::OnKeyDown(key, repeat, flags);
    }
    SetPos(scale().wrap(GetPos() + change));  // notifies with TB_LINEUP, as every position set does
    NotifyParent(code);                       // the key's own code, as a linear slider sends it
    Redraw();
}

void CRoundSliderCtrl::OnKeyUp(UINT key, UINT repeat, UINT flags)
{
    switch (key) {
        case VK_PRIOR:
        case VK_NEXT:
        case VK_LEFT:
        case VK_UP:
        case VK_RIGHT:
        case VK_DOWN: return NotifyParent(TB_ENDTRACK);
        case VK_HOME:
        case VK_END: return;
        default: CSliderCtrl::OnKeyUp(key, repeat, flags);
    }
}

void CRoundSliderCtrl::OnSetFocus(CWnd* previous)
{
    CSliderCtrl::OnSetFocus(previous);
    Invalidate(FALSE);  // the dotted circle
    // Backwards, too, the text is between the knob and the control after it.
    if (previous && previous != &edit_ && held(VK_TAB) && held(VK_SHIFT) && edit_takes_focus()) edit_.Select();
}

void CRoundSliderCtrl::OnKillFocus(CWnd* next)
{
    CSliderCtrl::OnKillFocus(next);
    Invalidate(FALSE);
}

}  // namespace qorv::panel
