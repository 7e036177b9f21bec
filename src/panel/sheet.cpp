#include "panel/sheet.h"

#include "panel/current.h"
#include "panel/rules/panel_layout.h"

namespace qorv::panel {

CZXSheet::CZXSheet()
{
    for (CZXPage* page :
         {static_cast<CZXPage*>(&rotation_), static_cast<CZXPage*>(&basic_), static_cast<CZXPage*>(&third_),
          static_cast<CZXPage*>(&fourth_), static_cast<CZXPage*>(&fifth_)}) {
        AddPage(page);
    }
}

BOOL CZXSheet::OnInitDialog()
{
    CRect sheet, tabs;
    GetWindowRect(sheet);
    CTabCtrl* const tab_control = GetTabControl();
    tab_control->GetWindowRect(tabs);
    const auto widths = shrunken_widths(tabs.Width(), sheet.Width());
    const UINT in_place = SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE;
    tab_control->SetWindowPos(nullptr, 0, 0, widths.tab, tabs.Height(), in_place);
    SetWindowPos(nullptr, 0, 0, widths.sheet, sheet.Height(), in_place);
    current::sheet = this;
    return CPropertySheet::OnInitDialog();
}

void CZXSheet::RefreshFromTags()
{
    const int index = GetActiveIndex();
    if (index >= 0) static_cast<CZXPage*>(GetPage(index))->LoadFromTags();
}

HWND CZXSheet::FirstValue() const
{
    const int index = GetActiveIndex();
    const HWND first = index < 0 ? nullptr : ::GetNextDlgTabItem(GetPage(index)->m_hWnd, nullptr, FALSE);
    return first && ::IsWindowEnabled(first) ? first : nullptr;
}

BOOL CZXSheet::OnCommand(WPARAM wparam, LPARAM lparam)
{
    // Without this, Enter and Escape in a field would close the sheet, which is a dialog of its own.
    if (LOWORD(wparam) == IDOK || LOWORD(wparam) == IDCANCEL) return TRUE;
    return CPropertySheet::OnCommand(wparam, lparam);
}

void CZXSheet::PostNcDestroy()
{
    if (current::sheet == this) current::sheet = nullptr;
}

}  // namespace qorv::panel
