#include "host/windows/microscope_dialog.h"

#include <charconv>

#include "host/text/encoding.h"
#include "host/windows/resource.h"
#include "host/windows/window.h"
#include "lens/numbers.h"

namespace zentrix::host {

namespace {

struct field
{
    int id;
    double microscope::*value;
    double lens::coherence::*width;
    bool may_be_zero;
};

constexpr field fields[] = {
    {IDC_KILOVOLTS, &microscope::kilovolts, nullptr, false},
    {IDC_PIXEL, &microscope::pixel_nm, nullptr, false},
    {IDC_FOCUS_SPREAD, nullptr, &lens::coherence::focus_spread_nm, true},
    {IDC_CONVERGENCE, nullptr, &lens::coherence::convergence_mrad, true},
    {IDC_VIBRATION, nullptr, &lens::coherence::vibration_nm, true},
};

double& value_of(microscope& scope, const field& one) { return one.value ? scope.*one.value : scope.spread.*one.width; }

void fill(HWND dialog, microscope& scope)
{
    for (const field& one : fields) {
        char text[64] = {};
        std::to_chars(text, text + sizeof text - 1, value_of(scope, one));
        SetDlgItemTextA(dialog, one.id, text);
    }
    CheckDlgButton(dialog, IDC_DAMPED, scope.damped ? BST_CHECKED : BST_UNCHECKED);
}

/// Reads the dialog into `scope`. Returns the id of the first invalid field, or 0.
int read(HWND dialog, microscope& scope)
{
    for (const field& one : fields) {
        wchar_t typed[64] = {};
        GetDlgItemTextW(dialog, one.id, typed, static_cast<int>(std::size(typed)));
        const auto number = lens::parse_number(narrow(typed));
        if (!number || *number < 0 || (*number == 0 && !one.may_be_zero)) return one.id;
        value_of(scope, one) = *number;
    }
    scope.damped = IsDlgButtonChecked(dialog, IDC_DAMPED) == BST_CHECKED;
    return 0;
}

void accept(HWND dialog, microscope& scope)
{
    const int invalid = read(dialog, scope);
    if (invalid == 0) {
        EndDialog(dialog, IDOK);
        return;
    }
    MessageBeep(MB_ICONWARNING);
    const HWND edit = GetDlgItem(dialog, invalid);
    SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(edit), TRUE);
    SendMessageW(edit, EM_SETSEL, 0, -1);
}

INT_PTR handle_message(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(dialog, DWLP_USER, lparam);
        fill(dialog, *reinterpret_cast<microscope*>(lparam));
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    if (LOWORD(wparam) == IDOK) accept(dialog, *reinterpret_cast<microscope*>(GetWindowLongPtrW(dialog, DWLP_USER)));
    if (LOWORD(wparam) == IDCANCEL) EndDialog(dialog, IDCANCEL);
    return TRUE;
}

INT_PTR CALLBACK procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) noexcept
{
    try {
        return handle_message(dialog, message, wparam, lparam);
    } catch (...) {
        window::report_exception();
        return FALSE;
    }
}

}  // namespace

std::optional<microscope> ask_microscope(HWND owner, const microscope& present)
{
    microscope edited = present;
    const auto answer = DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_MICROSCOPE), owner, &procedure,
                                        reinterpret_cast<LPARAM>(&edited));
    return answer == IDOK ? std::optional{edited} : std::nullopt;
}

}  // namespace zentrix::host
