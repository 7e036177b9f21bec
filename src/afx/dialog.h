#pragma once

#include <windows.h>

#include "afx/wnd.h"

/// A modeless dialog made from a template of this module.
class CDialog : public CWnd
{
    DECLARE_DYNAMIC(CDialog)
    DECLARE_MESSAGE_MAP()
  public:
    CDialog() = default;

    /// Returns FALSE when the system makes no window.
    BOOL Create(UINT template_id, CWnd* parent);

    /// Fills the controls. TRUE lets the system choose the first focus.
    virtual BOOL OnInitDialog();

  protected:
    // Enter and Escape close a modal dialog; a modeless one that does not want to be hidden by them overrides both.
    virtual void OnOK();
    virtual void OnCancel();
};

/// The system's side of a dialog: passes its first message to OnInitDialog.
INT_PTR CALLBACK AfxDlgProc(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam);
