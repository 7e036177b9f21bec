#include "afx/property_sheet.h"

#include "afx/app.h"

namespace {

// Ids of the system's property sheet dialog.
constexpr int tab_control_id = 0x3020;
constexpr int sheet_button_ids[] = {IDOK, IDCANCEL, 0x3021 /* Apply */, 9 /* Help */};

/// The dialog procedure of all pages. WM_INITDIALOG carries the page's object, which is then attached to the window.
INT_PTR CALLBACK page_proc(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) noexcept
{
    if (message == WM_INITDIALOG) {
        auto* const page = reinterpret_cast<CPropertyPage*>(reinterpret_cast<const PROPSHEETPAGE*>(lparam)->lParam);
        try {
            page->SubclassWindow(dialog);
        } catch (...) {
            AfxProcessException(message);
            return TRUE;
        }
    }
    return AfxDlgProc(dialog, message, wparam, lparam);
}

/// The first fields of an extended dialog template, which the system's headers do not declare.
struct extended_template
{
    WORD version, signature;
    DWORD help_id, extended_style, style;
};

struct sheet_styles
{
    DWORD style, extended_style;
};
const sheet_styles* requested = nullptr;  // the callback has no parameter for them

/// Puts the requested styles into the system's template. DS_SHELLFONT is kept as the template has it.
int CALLBACK before_creation(HWND, UINT message, LPARAM lparam) noexcept
{
    if (message != PSCB_PRECREATE || !requested) return 0;
    auto* const extended = reinterpret_cast<extended_template*>(lparam);
    auto* const plain = reinterpret_cast<DLGTEMPLATE*>(lparam);
    const bool is_extended = extended->signature == 0xffff;
    auto& style = is_extended ? extended->style : plain->style;
    auto& extended_style = is_extended ? extended->extended_style : plain->dwExtendedStyle;
    style = requested->style | (style & DS_SHELLFONT);
    extended_style = requested->extended_style;
    return 0;
}

}  // namespace

CPropertyPage::CPropertyPage(UINT template_id)
{
    description_.dwSize = sizeof description_;
    description_.dwFlags = PSP_DEFAULT;
    description_.hInstance = AfxGetResourceHandle();
    description_.pszTemplate = MAKEINTRESOURCE(template_id);
    description_.pfnDlgProc = &page_proc;
    description_.lParam = reinterpret_cast<LPARAM>(this);
}

BOOL CPropertyPage::OnSetActive()
{
    if (was_active_) UpdateData(FALSE);
    was_active_ = true;
    return TRUE;
}

BOOL CPropertyPage::OnKillActive() { return UpdateData(TRUE); }

BOOL CPropertyPage::OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    if (CDialog::OnNotify(wparam, lparam, result)) return TRUE;
    const auto* const header = reinterpret_cast<const NMHDR*>(lparam);
    if (header->hwndFrom != m_hWnd && header->hwndFrom != ::GetParent(m_hWnd)) return FALSE;
    switch (header->code) {
        case PSN_SETACTIVE: *result = OnSetActive() ? 0 : -1; return TRUE;
        case PSN_KILLACTIVE: *result = !OnKillActive(); return TRUE;
        default: return FALSE;
    }
}

BEGIN_MESSAGE_MAP(CPropertySheet, CWnd)
ON_MESSAGE(WM_INITDIALOG, &CPropertySheet::handle_init_dialog)
END_MESSAGE_MAP()

BOOL CPropertySheet::Create(CWnd* parent, DWORD style, DWORD extended_style)
{
    std::vector<PROPSHEETPAGE> descriptions;
    for (const CPropertyPage* page : pages_) descriptions.push_back(page->description_);
    PROPSHEETHEADER header{};
    header.dwSize = sizeof header;
    header.dwFlags = PSH_PROPSHEETPAGE | PSH_MODELESS | PSH_USECALLBACK | PSH_NOAPPLYNOW | PSH_NOCONTEXTHELP;
    header.hwndParent = parent ? parent->m_hWnd : nullptr;
    header.hInstance = AfxGetResourceHandle();
    header.pszCaption = TEXT("");
    header.nPages = static_cast<UINT>(descriptions.size());
    header.ppsp = descriptions.data();
    header.pfnCallback = &before_creation;

    const sheet_styles styles{style, extended_style};
    requested = &styles;
    const AfxHookWindowCreate hook{this};
    const INT_PTR created = ::PropertySheet(&header);
    requested = nullptr;
    return created > 0;
}

BOOL CPropertySheet::OnInitDialog()
{
    const auto result = static_cast<BOOL>(Default());
    const HWND first_button = ::GetDlgItem(m_hWnd, IDOK);
    if (first_button) {
        CRect sheet, button;
        GetWindowRect(sheet);
        ::GetWindowRect(first_button, button);
        SetWindowPos(nullptr, 0, 0, sheet.Width(), button.top - sheet.top, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    for (const int id : sheet_button_ids) {
        if (const HWND button = ::GetDlgItem(m_hWnd, id)) {
            ::ShowWindow(button, SW_HIDE);
            ::EnableWindow(button, FALSE);
        }
    }
    return result;
}

int CPropertySheet::GetActiveIndex() const
{
    // Asks the sheet, not its tab control, which switches earlier than the sheet does.
    const HWND page = reinterpret_cast<HWND>(SendMessage(PSM_GETCURRENTPAGEHWND));
    for (int index = 0; index < GetPageCount(); ++index) {
        if (page && GetPage(index)->m_hWnd == page) return index;
    }
    return -1;
}

CTabCtrl* CPropertySheet::GetTabControl()
{
    if (!tabs_.m_hWnd) tabs_.SubclassWindow(::GetDlgItem(m_hWnd, tab_control_id));
    return &tabs_;
}
