#pragma once

#include "afx/types.h"

class CWnd;

/// Thrown by CDataExchange::Fail.
class CUserException
{};

/// One run of DoDataExchange: the window, and whether controls are read (TRUE) or filled.
class CDataExchange
{
  public:
    CDataExchange(CWnd* window, BOOL save_and_validate) : m_pDlgWnd{window}, m_bSaveAndValidate{save_and_validate} {}

    CWnd* const m_pDlgWnd;
    const BOOL m_bSaveAndValidate;

    /// The control's window.
    /// Throws  CUserException when the dialog has no such control
    HWND PrepareCtrl(int id);
    /// Ends the run because a control's content is refused.
    [[noreturn]] void Fail() { throw CUserException{}; }
};

/// Attaches an object to a control of the dialog, on the first run.
void DDX_Control(CDataExchange* exchange, int id, CWnd& control);
/// The text of a control.
void DDX_Text(CDataExchange* exchange, int id, CString& text);
/// The position of a slider.
void DDX_Slider(CDataExchange* exchange, int id, int& position);
/// The selected entry of a combo box, -1 for none.
void DDX_CBIndex(CDataExchange* exchange, int id, int& index);
