#include "host/windows/estimate_dialog.h"

#include <commctrl.h>

#include <algorithm>
#include <memory>

#include "host/parallel/processors.h"
#include "host/text/encoding.h"
#include "host/windows/estimate_text.h"
#include "host/windows/resource.h"
#include "host/windows/running_estimate.h"
#include "host/windows/window.h"

namespace zentrix::host {

namespace {

constexpr UINT_PTR poll_timer = 1;
constexpr UINT poll_ms = 100;
constexpr int progress_steps = 1000;

struct state
{
    const image_ref& wave;
    const std::function<lens::optics()>& setup;
    const estimate_listener& listener;
    std::unique_ptr<running_estimate> running;
};

int box_of(lens::coefficient which) { return IDC_FREE + static_cast<int>(which); }

void say(HWND dialog, const std::string& text) { SetDlgItemTextW(dialog, IDC_ESTIMATE_TEXT, widen(text).c_str()); }

void show_progress(HWND dialog, double fraction)
{
    SendDlgItemMessageW(dialog, IDC_ESTIMATE_BAR, PBM_SETPOS, static_cast<WPARAM>(fraction * progress_steps), 0);
}

void enable(HWND dialog, bool searching)
{
    for (const auto& about : lens::all_coefficients) EnableWindow(GetDlgItem(dialog, box_of(about.which)), !searching);
    EnableWindow(GetDlgItem(dialog, IDOK), !searching);
    SetDlgItemTextW(dialog, IDCANCEL, searching ? L"Stop" : L"Close");
}

estimate_options chosen(HWND dialog)
{
    estimate_options options;
    options.free.clear();
    for (const auto& about : lens::all_coefficients)
        if (IsDlgButtonChecked(dialog, box_of(about.which)) == BST_CHECKED) options.free.push_back(about.which);
    options.threads = std::max<std::ptrdiff_t>(processors() - 1, 1);  // one for the windows
    return options;
}

void start(HWND dialog, state& of)
{
    const auto options = chosen(dialog);
    if (options.free.empty()) return say(dialog, "Tick the coefficients to search.");
    of.running = std::make_unique<running_estimate>(of.wave, of.setup(), options);
    say(dialog, "Searching ...");
    enable(dialog, true);
    SetFocus(GetDlgItem(dialog, IDCANCEL));
    SetTimer(dialog, poll_timer, poll_ms, nullptr);
}

void finish(HWND dialog, state& of)
{
    KillTimer(dialog, poll_timer);
    const auto ended = std::move(of.running);
    enable(dialog, false);
    const auto& result = ended->result();
    if (result && !result->stopped) {
        say(dialog, text_of(*result));
        show_progress(dialog, 1);
        return of.listener.finished(*result);
    }
    say(dialog, result ? "Stopped. The coefficients stay as they are." : ended->failure());
    show_progress(dialog, 0);
    of.listener.given_up();
}

void poll(HWND dialog, state& of)
{
    if (!of.running) return;
    if (of.running->has_ended()) return finish(dialog, of);
    show_progress(dialog, of.running->fraction());
    if (const auto best = of.running->take_best()) of.listener.preview(*best);
}

/// Next to the owner, whose picture shows the progress.
void place(HWND dialog)
{
    RECT owner{}, own{};
    GetWindowRect(GetWindow(dialog, GW_OWNER), &owner);
    GetWindowRect(dialog, &own);
    const LONG top = std::max<LONG>(owner.bottom - (own.bottom - own.top), 0);
    SetWindowPos(dialog, nullptr, owner.right, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void prepare(HWND dialog)
{
    place(dialog);
    SendDlgItemMessageW(dialog, IDC_ESTIMATE_BAR, PBM_SETRANGE, 0, MAKELPARAM(0, progress_steps));
    for (const auto which : estimate_options{}.free) CheckDlgButton(dialog, box_of(which), BST_CHECKED);
    say(dialog, "Searches the coefficients that are ticked, from the wave itself. The others keep their values.");
}

void command(HWND dialog, state& of, int id)
{
    if (id == IDOK && !of.running) start(dialog, of);
    if (id != IDCANCEL) return;
    if (of.running)
        of.running->stop();  // the timer sees its end
    else
        EndDialog(dialog, 0);
}

INT_PTR handle_message(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(dialog, DWLP_USER, lparam);
        prepare(dialog);
        return TRUE;
    }
    auto* const of = reinterpret_cast<state*>(GetWindowLongPtrW(dialog, DWLP_USER));
    if (!of || (message != WM_COMMAND && message != WM_TIMER)) return FALSE;
    if (message == WM_TIMER)
        poll(dialog, *of);
    else
        command(dialog, *of, LOWORD(wparam));
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

void show_estimate_dialog(HWND owner, const image_ref& wave, const std::function<lens::optics()>& setup,
                          const estimate_listener& listener)
{
    state of{wave, setup, listener, nullptr};
    DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_ESTIMATE), owner, &procedure,
                    reinterpret_cast<LPARAM>(&of));
    if (of.running) listener.given_up();  // the program quits
}

}  // namespace zentrix::host
