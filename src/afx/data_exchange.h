#pragma once

#include "afx/types.h"

class CWnd;

/// Thrown out of DoDataExchange by Fail.
class CUserException
{};

/// One run of DoDataExchange: which window, and whether the controls are read or filled.
class CDataExchange
{
  public:
    CDataExchange(CWnd* window, BOOL save_and_validate) : m_pDlgWnd{window}, m_bSaveAndValidate{save_and_validate} {}

    CWnd* const m_pDlgWnd;
    const BOOL m_bSaveAndValidate;

    /// The control's window. Throws CUserException when the dialog has no such control.
    HWND PrepareCtrl(int id);
    /// Ends the run: a control's content is refused.
    [[noreturn]] void Fail() { throw CUserException{}; }
};

/// Gives a control of the dialog to its object, at the first run.
void DDX_Control(CDataExchange* exchange, int id, CWnd& control);
void DDX_Text(CDataExchange* exchange, int id, CString& text);
/// The position of a slider.
void DDX_Slider(CDataExchange* exchange, int id, int& position);
/// The selected entry of a combo box, -1 for none.
void DDX_CBIndex(CDataExchange* exchange, int id, int& index);
