#pragma once

#include <windows.h>

#include "afx/wnd.h"

/// A modeless dialog, created from a template of this module.
class CDialog : public CWnd
{
    DECLARE_MESSAGE_MAP()
  public:
    CDialog() = default;

    /// Returns FALSE when the system creates no window.
    BOOL Create(UINT template_id, CWnd* parent);

    /// Fills the controls. TRUE lets the system choose the initial focus.
    virtual BOOL OnInitDialog();

  protected:
    // Called for Enter and Escape, which end a modal dialog. A modeless dialog that must stay visible overrides both.
    virtual void OnOK();
    virtual void OnCancel();
};

/// The dialog procedure of all CDialog: passes WM_INITDIALOG to OnInitDialog.
INT_PTR CALLBACK AfxDlgProc(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
