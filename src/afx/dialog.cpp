#include "afx/dialog.h"

#include "afx/app.h"

BEGIN_MESSAGE_MAP(CDialog, CWnd)
ON_BN_CLICKED(IDOK, &CDialog::OnOK)
ON_BN_CLICKED(IDCANCEL, &CDialog::OnCancel)
END_MESSAGE_MAP()

BOOL CDialog::Create(UINT template_id, CWnd* parent)
{
    const AfxHookWindowCreate hook{this};
    return ::CreateDialogParam(AfxGetResourceHandle(), MAKEINTRESOURCE(template_id), parent ? parent->m_hWnd : nullptr,
                               &AfxDlgProc, 0) != nullptr;
}

BOOL CDialog::OnInitDialog()
{
    UpdateData(FALSE);
    return TRUE;
}

void CDialog::OnOK()
{
    if (UpdateData(TRUE)) ::EndDialog(m_hWnd, IDOK);
}

void CDialog::OnCancel() { ::EndDialog(m_hWnd, IDCANCEL); }

INT_PTR CALLBACK AfxDlgProc(HWND dialog, UINT message, WPARAM, LPARAM) noexcept
{
    if (message != WM_INITDIALOG) return FALSE;
    auto* const object = dynamic_cast<CDialog*>(CWnd::FromHandlePermanent(dialog));
    try {
        return object ? object->OnInitDialog() : TRUE;
    } catch (...) {
        AfxProcessException(message);
        return TRUE;
    }
}
