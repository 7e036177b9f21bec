#include "panel/zentrix_panel.h"

#include "panel/current.h"
#include "panel/rules/panel_layout.h"
#include "panel/rules/tip_texts.h"
#include "resources/resource.h"

namespace qorv::panel {

namespace {

/// In the order of entry_of_display_mode.
constexpr LPCTSTR display_names[] = {TEXT("Real"), TEXT("Imaginary"), TEXT("Modulus"), TEXT("Log of Modulus"),
                                     TEXT("Phase")};

extent size_of(const CWnd& window)
{
    CRect place;
    window.GetWindowRect(place);
    return {place.Width(), place.Height()};
}

void move_to(CWnd& window, const rectangle& place)
{
    window.MoveWindow(CRect{place.left, place.top, place.right, place.bottom});
}

}  // namespace

BEGIN_MESSAGE_MAP(CZentrixPanel, CDialog)
ON_MESSAGE(WM_DESTROY, &CZentrixPanel::OnDestroy)
ON_WM_SHOWWINDOW()
ON_WM_SETFOCUS()
ON_BN_CLICKED(IDOK, &CZentrixPanel::OnApply)
ON_BN_CLICKED(IDC_PREFERENCES, &CZentrixPanel::OnPreferences)
ON_BN_CLICKED(IDC_PCTF, &CZentrixPanel::OnPCTF)
ON_CBN_SELCHANGE(IDC_DISPLAY, &CZentrixPanel::OnChangeDisplay)
END_MESSAGE_MAP()

BOOL CZentrixPanel::Create(CWnd* parent) { return CDialog::Create(IDD_PANEL, parent); }

BOOL CZentrixPanel::OnInitDialog()
{
    CDialog::OnInitDialog();
    for (const LPCTSTR name : display_names) display_.AddString(name);
    UpdateData(FALSE);
    // The sheet is created without a visible parent and becomes a child of the panel when that is first shown.
    sheet_.Create(CWnd::FromHandle(HWND_MESSAGE), WS_CHILD, WS_EX_CONTROLPARENT);
    return FALSE;  // otherwise the system would give the focus to its first control, Apply
}

void CZentrixPanel::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_DISPLAY, display_);
    DDX_Control(exchange, IDOK, apply_);
    DDX_Control(exchange, IDC_PCTF, pctf_);
    DDX_CBIndex(exchange, IDC_DISPLAY, display_entry_);
}

LRESULT CZentrixPanel::OnDestroy(WPARAM, LPARAM)
{
    tips_.DestroyWindow();  // while the explained controls exist: it has subclassed them
    return Default();
}

void CZentrixPanel::PostNcDestroy()
{
    if (current::panel == this) current::panel = nullptr;
}

void CZentrixPanel::RefreshFromTags()
{
    if (!current::link->has_handler()) return enable_row(false);
    if (!current::link->has_tags()) return;
    const panel_load loaded = load_panel(*current::link);
    display_entry_ = loaded.display_entry;
    UpdateData(FALSE);
    enable_row(loaded.enabled);
    pctf_.SetCheck(loaded.has_pctf);
}

void CZentrixPanel::enable_row(bool enable)
{
    if (enable == enabled_) return;
    enabled_ = enable;
    for (const int id : {IDOK, IDC_DISPLAY_LABEL, IDC_DISPLAY, IDC_PCTF}) GetDlgItem(id)->EnableWindow(enable);
}

void CZentrixPanel::OnShowWindow(BOOL show, UINT status)
{
    CDialog::OnShowWindow(show, status);
    if (!show) return current::link->call(on_close);
    if (sheet_.m_hWnd && sheet_.GetParent() != this) first_showing();
}

void CZentrixPanel::OnSetFocus(CWnd* previous)
{
    const HWND value = sheet_.m_hWnd && sheet_.IsWindowVisible() ? sheet_.FirstValue() : nullptr;
    if (!value) return CDialog::OnSetFocus(previous);
    ::SendMessage(::GetParent(value), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(value), TRUE);  // selects its text, too
}

void CZentrixPanel::first_showing()
{
    current::panel = this;
    const HWND window = m_hWnd;
    std::exception_ptr failure;
    try {
        RefreshFromTags();
        current::link->call(on_change);
    } catch (...) {
        failure = std::current_exception();  // the panel is laid out even if the handler fails
    }
    // The handler may have closed the panel.
    if (current::panel == this && ::IsWindow(window)) lay_out();
    if (failure) std::rethrow_exception(failure);
}

void CZentrixPanel::lay_out()
{
    CRect client;
    GetClientRect(client);
    client.bottom = panel_height(size_of(sheet_), size_of(apply_), size_of(*GetDlgItem(IDC_DISPLAY_LABEL)));
    CRect window = client;
    ::AdjustWindowRectEx(window, GetStyle(), FALSE, GetExStyle());
    SetWindowPos(nullptr, 0, 0, window.Width(), window.Height(), SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    place_sheet();
    place_controls();
    explain_controls();
}

void CZentrixPanel::place_sheet()
{
    const extent size = size_of(sheet_);
    CRect place{0, 0, size.width, size.height};
    sheet_.SetParent(this);
    sheet_.MoveWindow(place);
    // The system leaves a margin around the tab control. Without this the pages would cover the control's frame.
    sheet_.GetTabControl()->MoveWindow(place);
    sheet_.GetTabControl()->AdjustRect(FALSE, place);
    for (int index = sheet_.GetPageCount() - 1; index >= 0; --index) {
        sheet_.SetActivePage(index);  // creates the page if necessary
        sheet_.GetPage(index)->MoveWindow(place);
    }
    sheet_.ShowWindow(SW_SHOW);
}

void CZentrixPanel::place_controls()
{
    CRect client;
    GetClientRect(client);
    CWnd& label = *GetDlgItem(IDC_DISPLAY_LABEL);
    const auto row = lay_out_controls({client.left, client.top, client.right, client.bottom}, size_of(label),
                                      size_of(display_), size_of(apply_), size_of(pctf_));
    pctf_.LoadPicture(IDB_PCTF);
    move_to(label, row.label);
    move_to(display_, row.combo);
    move_to(apply_, row.apply);
    move_to(pctf_, row.pctf);
}

void CZentrixPanel::explain_controls()
{
    if (tips_.m_hWnd || !tips_.Create(this)) return;
    tips_.Explain(*this, sheet_.GetTabControl()->m_hWnd);
    for (const int id : {IDC_DISPLAY_LABEL, IDC_DISPLAY, IDC_PCTF, IDOK}) tips_.Explain(*this, GetDlgItem(id)->m_hWnd);
    for (int index = 0; index < sheet_.GetPageCount(); ++index)
        static_cast<CZXPage*>(sheet_.GetPage(index))->Explain(tips_);
}

BOOL CZentrixPanel::OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    auto& notification = *reinterpret_cast<NMHDR*>(lparam);
    const HWND asked = asked_by_tool_tips(m_hWnd, notification);
    if (!asked) return CDialog::OnNotify(wparam, lparam, result);
    const auto text_of_id = [](int id) {
        switch (id) {
            case IDC_DISPLAY_LABEL:
            case IDC_DISPLAY: return display_tip;
            case IDC_PCTF: return pctf_tip;
            case IDOK: return apply_tip;
            default: return tabs_tip;
        }
    };
    answer_tool_tips(notification, text_of_id(::GetDlgCtrlID(asked)), tip_);
    return TRUE;
}

void CZentrixPanel::OnApply() { current::link->call(on_apply); }
void CZentrixPanel::OnPreferences() { current::link->call(on_preferences); }
void CZentrixPanel::OnPCTF() { current::link->call(on_pctf); }

void CZentrixPanel::OnChangeDisplay()
{
    UpdateData(TRUE);
    if (!current::link->has_tags()) return;
    const auto mode = display_mode_of_entry(display_entry_);
    current::link->write_long(display_mode_key, mode);
    current::link->call(on_change_display, static_cast<std::uint32_t>(mode));
}

}  // namespace qorv::panel
