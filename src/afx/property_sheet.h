#pragma once

#include <windows.h>

#include <commctrl.h>

#include <vector>

#include "afx/controls.h"
#include "afx/dialog.h"

/// A page of a property sheet, made from a template when it is first shown.
class CPropertyPage : public CDialog
{
    DECLARE_DYNAMIC(CPropertyPage)
  public:
    explicit CPropertyPage(UINT template_id);

    /// The page comes to the front; FALSE refuses.
    virtual BOOL OnSetActive();
    /// Another page comes to the front; FALSE refuses.
    virtual BOOL OnKillActive();

  protected:
    BOOL OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result) override;

  private:
    friend class CPropertySheet;

    PROPSHEETPAGE description_{};
    bool active_before_ = false;
};

/// A modeless property sheet without buttons. The pages belong to the caller and outlive the sheet's window.
class CPropertySheet : public CWnd
{
    DECLARE_DYNAMIC(CPropertySheet)
    DECLARE_MESSAGE_MAP()
  public:
    CPropertySheet() = default;

    void AddPage(CPropertyPage* page) { pages_.push_back(page); }
    int GetPageCount() const { return static_cast<int>(pages_.size()); }
    CPropertyPage* GetPage(int index) const { return pages_[static_cast<std::size_t>(index)]; }
    /// Creates the page's window if need be.
    BOOL SetActivePage(int index) { return static_cast<BOOL>(SendMessage(PSM_SETCURSEL, static_cast<WPARAM>(index))); }
    int GetActiveIndex() const;
    CTabCtrl* GetTabControl();  ///< once the window exists

    /// Creates the sheet with its first page. The style replaces the system's one.
    BOOL Create(CWnd* parent, DWORD style, DWORD extended_style);

    /// The system's own initialisation, then the row of buttons is cut off.
    virtual BOOL OnInitDialog();

  private:
    LRESULT handle_init_dialog(WPARAM, LPARAM) { return OnInitDialog(); }

    std::vector<CPropertyPage*> pages_;
    CTabCtrl tabs_;
};
