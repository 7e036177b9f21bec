#pragma once

#include "panel/sheet.h"

namespace qorv::panel {

/// The floating panel: the sheet of pages on top, below it a display selector, the PCTF button and Apply. What the user
/// does there becomes calls of the handler's methods; the values concerned are in the tags before each call.
class CZentrixPanel : public CDialog
{
    DECLARE_DYNCREATE(CZentrixPanel)
    DECLARE_MESSAGE_MAP()
  public:
    CZentrixPanel() = default;
    ~CZentrixPanel() override { DestroyWindow(); }  // while the sheet is still there

    /// A hidden child of `parent`.
    BOOL Create(CWnd* parent);

    /// Shows what the panel's tags say. Without a handler the row of controls is greyed and nothing read.
    void RefreshFromTags();
    const CZXSheet& GetSheet() const { return sheet_; }

    BOOL OnInitDialog() override;

  protected:
    void DoDataExchange(CDataExchange* exchange) override;
    void PostNcDestroy() override;
    void OnShowWindow(BOOL show, UINT status);
    void OnApply();
    void OnPreferences();
    void OnPCTF();
    void OnChangeDisplay();
    void OnCancel() override {}  // Escape hides no floating panel

  private:
    void enable_row(bool enable);
    void first_showing();
    void lay_out();
    void place_sheet();
    void place_controls();

    CZXSheet sheet_;
    bool enabled_ = true;
    CBitmap ring_, pctf_bitmap_;
    CComboBox display_;
    int display_entry_ = 0;
    CButton apply_, pctf_;
};

}  // namespace qorv::panel
