#include "afx/data_exchange.h"

#include <windows.h>

#include <commctrl.h>

#include <vector>

#include "afx/wnd.h"

HWND CDataExchange::PrepareCtrl(int id)
{
    const HWND control = ::GetDlgItem(m_pDlgWnd->m_hWnd, id);
    if (!control) Fail();
    return control;
}

void DDX_Control(CDataExchange* exchange, int id, CWnd& control)
{
    if (control.m_hWnd) return;
    if (!control.SubclassWindow(exchange->PrepareCtrl(id))) exchange->Fail();
}

void DDX_Text(CDataExchange* exchange, int id, CString& text)
{
    const HWND control = exchange->PrepareCtrl(id);
    std::vector<TCHAR> buffer(static_cast<std::size_t>(::GetWindowTextLength(control)) + 1);
    ::GetWindowText(control, buffer.data(), static_cast<int>(buffer.size()));
    const CString shown{buffer.data()};
    if (exchange->m_bSaveAndValidate) {
        text = shown;
    } else if (!(shown == text)) {  // setting the text moves the caret to the front
        ::SetWindowText(control, text);
    }
}

void DDX_Slider(CDataExchange* exchange, int id, int& position)
{
    const HWND control = exchange->PrepareCtrl(id);
    if (exchange->m_bSaveAndValidate) {
        position = static_cast<int>(::SendMessage(control, TBM_GETPOS, 0, 0));
    } else {
        ::SendMessage(control, TBM_SETPOS, TRUE, position);
    }
}

void DDX_CBIndex(CDataExchange* exchange, int id, int& index)
{
    const HWND control = exchange->PrepareCtrl(id);
    if (exchange->m_bSaveAndValidate) {
        index = static_cast<int>(::SendMessage(control, CB_GETCURSEL, 0, 0));
    } else {
        ::SendMessage(control, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    }
}
