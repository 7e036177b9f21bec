#pragma once

#include <windows.h>

#include <commctrl.h>

#include <vector>

#include "afx/controls.h"
#include "afx/dialog.h"

/// A page of a property sheet. Its window is created from a template when it is first shown.
class CPropertyPage : public CDialog
{
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
    bool was_active_ = false;
};

/// A modeless property sheet without buttons. The caller owns the pages, which must outlive the sheet's window.
class CPropertySheet : public CWnd
{
    DECLARE_MESSAGE_MAP()
  public:
    CPropertySheet() = default;

    void AddPage(CPropertyPage* page) { pages_.push_back(page); }
    int GetPageCount() const { return static_cast<int>(pages_.size()); }
    CPropertyPage* GetPage(int index) const { return pages_[static_cast<std::size_t>(index)]; }
    /// Creates the page's window if necessary.
    BOOL SetActivePage(int index) { return static_cast<BOOL>(SendMessage(PSM_SETCURSEL, static_cast<WPARAM>(index))); }
    int GetActiveIndex() const;
    CTabCtrl* GetTabControl();  ///< requires the sheet's window

    /// Creates the sheet with its first page. The styles replace the system's.
    BOOL Create(CWnd* parent, DWORD style, DWORD extended_style);

    /// Runs the system's initialization, then removes the row of buttons.
    virtual BOOL OnInitDialog();

  private:
    LRESULT handle_init_dialog(WPARAM, LPARAM) { return OnInitDialog(); }

    std::vector<CPropertyPage*> pages_;
    CTabCtrl tabs_;
};
