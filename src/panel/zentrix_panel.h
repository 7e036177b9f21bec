#pragma once

#include "panel/picture_button.h"
#include "panel/sheet.h"
#include "panel/tool_tips.h"

namespace qorv::panel {

/// The floating panel: the sheet of pages, and below it the display selector, the PCTF button and Apply. User actions
/// become calls of the handler's methods. The tags hold the new values before each call.
class CZentrixPanel : public CDialog
{
    DECLARE_MESSAGE_MAP()
  public:
    CZentrixPanel() = default;
    ~CZentrixPanel() override { DestroyWindow(); }  // while its members still exist

    /// Creates the window as a hidden child of `parent`.
    BOOL Create(CWnd* parent);

    /// Reads the panel's tags into its controls. Without a handler the controls are disabled and no tag is read.
    void RefreshFromTags();

    BOOL OnInitDialog() override;

  protected:
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result) override;
    void PostNcDestroy() override;
    LRESULT OnDestroy(WPARAM, LPARAM);
    void OnShowWindow(BOOL show, UINT status);
    /// Passes the focus on to the first value of the active page.
    void OnSetFocus(CWnd* previous);
    void OnApply();
    void OnPreferences();
    void OnPCTF();
    void OnChangeDisplay();
    void OnCancel() override {}  // Escape must not hide the panel

  private:
    void enable_row(bool enable);
    void first_showing();
    void lay_out();
    void place_sheet();
    void place_controls();
    void explain_controls();

    CZXSheet sheet_;
    bool enabled_ = true;
    CComboBox display_;
    int display_entry_ = 0;
    CButton apply_;
    picture_button pctf_;
    tool_tips tips_;
    std::wstring tip_;
};

}  // namespace qorv::panel
