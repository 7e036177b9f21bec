#include <cwchar>

#include "panel/round_slider.h"
#include "panel/tab_key.h"

namespace qorv::panel {

BEGIN_MESSAGE_MAP(CRoundSliderEdit, CEdit)
ON_CONTROL_REFLECT(EN_CHANGE, &CRoundSliderEdit::OnChange)
ON_WM_LBUTTONDOWN()
ON_WM_MOUSEWHEEL()
ON_WM_GETDLGCODE()
ON_WM_KEYDOWN()
ON_WM_CHAR()
END_MESSAGE_MAP()

void CRoundSliderEdit::SetFont(HFONT font, BOOL redraw)
{
    SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font), redraw);
    SendMessage(EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);  // three digits fill the width
}

void CRoundSliderEdit::OnChange()
{
    if (!owner_ || in_change_ || (GetStyle() & ES_READONLY)) return;
    in_change_ = true;  // the slider may replace the typed text
    wchar_t text[20 + 1];
    GetWindowText(text, 20 + 1);
    owner_->SetPos(static_cast<int>(std::wcstol(text, nullptr, 10)));
    owner_->Redraw();
    in_change_ = false;
}

void CRoundSliderEdit::Select()
{
    SetFocus();
    SetSel(0, -1);
}

void CRoundSliderEdit::OnLButtonDown(UINT flags, CPoint mouse)
{
    if (::GetFocus() == m_hWnd) return CEdit::OnLButtonDown(flags, mouse);
    Select();  // three digits fill the field, so that one more has room only if it replaces them
}

BOOL CRoundSliderEdit::OnMouseWheel(UINT flags, short turned, CPoint)
{
    if (owner_) owner_->Turn(turned, flags);
    return TRUE;
}

UINT CRoundSliderEdit::OnGetDlgCode()
{
    const UINT code = CEdit::OnGetDlgCode();
    return asks_for_tab(GetCurrentMessage(), tab_key::backwards) ? code | DLGC_WANTMESSAGE : code;
}

void CRoundSliderEdit::OnKeyDown(UINT key, UINT repeat, UINT flags)
{
    if (key == VK_TAB && owner_)
        owner_->SetFocus();  // only asked for with Shift
    else
        CEdit::OnKeyDown(key, repeat, flags);
}

void CRoundSliderEdit::OnChar(UINT character, UINT repeat, UINT flags)
{
    if (character != '\t') CEdit::OnChar(character, repeat, flags);  // Shift+Tab, which OnKeyDown handled
}

}  // namespace qorv::panel
