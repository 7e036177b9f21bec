#include "host/windows/microscope_dialog.h"

#include <charconv>
#include <stdexcept>
#include <string>

#include "host/text/encoding.h"
#include "host/windows/resource.h"
#include "host/windows/tool_tips.h"
#include "host/windows/window.h"
#include "lens/numbers.h"
#include "lens/plausible_units.h"

namespace zentrix::host {

namespace {

struct field
{
    int id;
    const char* name;
    double microscope::*value;
    double lens::coherence::*width;
    const char* tip;
};

constexpr field fields[] = {
    {IDC_KILOVOLTS, "The accelerating voltage", &microscope::kilovolts, nullptr,
     "Accelerating voltage in kilovolts: 300 for 300,000 V"},
    {IDC_PIXEL, "The pixel size", &microscope::pixel_nm, nullptr, "Width of a pixel in the object, in nanometres"},
    {IDC_FOCUS_SPREAD, "The focus spread", nullptr, &lens::coherence::focus_spread_nm,
     "Standard deviation of the focus in nanometres, 0 for none.\nThe full width at half maximum is 2.35 times as "
     "large."},
    {IDC_CONVERGENCE, "The convergence", nullptr, &lens::coherence::convergence_mrad,
     "Standard deviation of the illumination angle along each axis, in milliradians, 0 for none"},
    {IDC_VIBRATION, "The vibration", nullptr, &lens::coherence::vibration_nm,
     "Standard deviation of the image's movement along each axis, in nanometres, 0 for none"},
};
constexpr char damped_tip[] =
    "Ticked: the corrected wave is also multiplied by the envelope, which suppresses noise.\n"
    "Otherwise the widths only count for the transfer function, the table of coefficients and estimates.";

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

/// What the dialog edits, and its tooltips.
struct session
{
    microscope edited;
    std::optional<tool_tips> tips;
};

void explain(HWND dialog, std::optional<tool_tips>& tips)
{
    tips.emplace(dialog);
    for (const field& one : fields) tips->explain(GetDlgItem(dialog, one.id), one.tip);
    tips->explain(GetDlgItem(dialog, IDC_DAMPED), damped_tip);
    tips->explain(GetDlgItem(dialog, IDOK), "Uses these settings. Undo takes them back.");
    tips->explain(GetDlgItem(dialog, IDCANCEL), "Keeps the former settings");
}

struct problem
{
    int field;
    std::string text;
};

/// Throws  std::invalid_argument with a sentence for a number that is not possible or usually in another unit
void check(const field& one, double value)
{
    if (one.id == IDC_KILOVOLTS) lens::check_kilovolts(value);
    if (one.id == IDC_PIXEL) lens::check_pixel_size(value);
    if (value < 0) throw std::invalid_argument{std::string{one.name} + " must not be negative."};
}

/// Reads the dialog into `scope`. Returns the first problem.
std::optional<problem> read(HWND dialog, microscope& scope)
{
    for (const field& one : fields) {
        wchar_t typed[64] = {};
        GetDlgItemTextW(dialog, one.id, typed, static_cast<int>(std::size(typed)));
        const auto number = lens::parse_typed_number(narrow(typed));
        if (!number) return problem{one.id, std::string{one.name} + " is not a number."};
        try {
            check(one, *number);
        } catch (const std::invalid_argument& implausible) {
            return problem{one.id, implausible.what()};
        }
        value_of(scope, one) = *number;
    }
    scope.damped = IsDlgButtonChecked(dialog, IDC_DAMPED) == BST_CHECKED;
    return std::nullopt;
}

void accept(HWND dialog, microscope& scope)
{
    const auto found = read(dialog, scope);
    SetDlgItemTextW(dialog, IDC_PROBLEM, found ? widen(found->text).c_str() : L"");
    if (!found) {
        EndDialog(dialog, IDOK);
        return;
    }
    MessageBeep(MB_ICONWARNING);
    const HWND edit = GetDlgItem(dialog, found->field);
    SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(edit), TRUE);
    SendMessageW(edit, EM_SETSEL, 0, -1);
}

INT_PTR handle_message(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(dialog, DWLP_USER, lparam);
        auto& opened = *reinterpret_cast<session*>(lparam);
        fill(dialog, opened.edited);
        explain(dialog, opened.tips);
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    if (LOWORD(wparam) == IDOK)
        accept(dialog, reinterpret_cast<session*>(GetWindowLongPtrW(dialog, DWLP_USER))->edited);
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
    session opened{present, {}};
    const auto answer = DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_MICROSCOPE), owner, &procedure,
                                        reinterpret_cast<LPARAM>(&opened));
    return answer == IDOK ? std::optional{opened.edited} : std::nullopt;
}

}  // namespace zentrix::host
