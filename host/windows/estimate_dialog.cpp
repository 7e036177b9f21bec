#include "host/windows/estimate_dialog.h"

#include <commctrl.h>

#include <algorithm>

#include "host/objects/value.h"
#include "host/parallel/processors.h"
#include "host/text/encoding.h"
#include "host/windows/estimate_text.h"
#include "host/windows/resource.h"
#include "host/windows/screen_place.h"
#include "host/windows/window.h"

namespace zentrix::host {

namespace {

constexpr UINT_PTR poll_timer = 1;
constexpr UINT poll_ms = 100;
constexpr int progress_steps = 1000;

int box_of(lens::coefficient which) { return IDC_FREE + static_cast<int>(which); }

}  // namespace

estimate_dialog::estimate_dialog(HWND owner, HWND next_to, estimate_listener listener) : listener_{std::move(listener)}
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&classes);
    dialog_.reset(CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_ESTIMATE), owner, &procedure,
                                     reinterpret_cast<LPARAM>(this)));
    if (!dialog_) throw script_error{"The dialog for estimates cannot be created."};
    SendDlgItemMessageW(handle(), IDC_ESTIMATE_BAR, PBM_SETRANGE, 0, MAKELPARAM(0, progress_steps));
    for (const auto which : estimate_options{}.free) CheckDlgButton(handle(), box_of(which), BST_CHECKED);
    say("Searches the coefficients that are ticked, from the wave itself. The others keep their values.");
    place_next_to(handle(), next_to);
    explain_controls();
}

estimate_dialog::~estimate_dialog() = default;

void estimate_dialog::explain_controls()
{
    tips_.emplace(handle());
    const auto explain = [this](int id, const std::string& text) { tips_->explain(GetDlgItem(handle(), id), text); };
    for (const auto& about : lens::all_coefficients)
        explain(box_of(about.which), std::string{about.name} + ", " + std::string{about.meaning} +
                                         "\nTicked: it is searched. Otherwise it keeps its value.");
    explain(IDC_NO_ENVELOPE,
            "Ticked: nothing damps the wave, whatever the settings say.\nOtherwise the widths of the settings count as "
            "known to a tenth; if all are 0, the envelope counts as unknown.");
    explain(IDC_ESTIMATE_BAR, "The part of the search that is done");
    explain(IDC_ESTIMATE_TEXT, "What was found, with its standard deviation, or why it is not determined");
    explain(IDOK, "Searches the ticked coefficients, starting at the values of the panel");
    explain(IDCANCEL, "During a search: stops it; the panel is then as before. Otherwise closes this window.");
}

void estimate_dialog::show()
{
    ShowWindow(handle(), SW_SHOW);
    SetForegroundWindow(handle());
    SetFocus(GetDlgItem(handle(), running_ ? IDCANCEL : IDOK));
}

void estimate_dialog::stop() noexcept
{
    if (running_) running_->stop();  // the timer sees its end
}

void estimate_dialog::command(int id)
{
    if (id == IDOK && !running_) start();
    if (id != IDCANCEL) return;
    if (running_)
        stop();
    else
        ShowWindow(handle(), SW_HIDE);
}

void estimate_dialog::start()
{
    auto options = chosen();
    if (options.free.empty()) return say("Tick the coefficients to search.");
    auto [make_wave, setup] = listener_.begin();
    const bool no_envelope = IsDlgButtonChecked(handle(), IDC_NO_ENVELOPE) == BST_CHECKED;
    if (no_envelope) setup.spread = {};
    options.widths_are_known = no_envelope || setup.spread != lens::coherence{};
    running_ = std::make_unique<running_estimate>(make_wave, setup, options);
    say("Searching ...");
    show_progress(0);
    enable(true);
    SetFocus(GetDlgItem(handle(), IDCANCEL));
    SetTimer(handle(), poll_timer, poll_ms, nullptr);
}

void estimate_dialog::poll()
{
    if (!running_) return;
    if (running_->has_ended()) return finish();
    show_progress(running_->fraction());
    if (const auto best = running_->take_best(); best && !running_->stopping()) listener_.preview(*best);
}

void estimate_dialog::finish()
{
    KillTimer(handle(), poll_timer);
    const auto ended = std::move(running_);
    enable(false);
    const auto& result = ended->result();
    if (result && !result->stopped && !ended->stopping()) {
        say(text_of(*result));
        show_progress(1);
        return listener_.finished(*result);
    }
    say(result || ended->stopping() ? "Stopped. The coefficients stay as they are." : ended->failure());
    show_progress(0);
    listener_.given_up();
}

estimate_options estimate_dialog::chosen() const
{
    estimate_options options;
    options.free.clear();
    for (const auto& about : lens::all_coefficients)
        if (IsDlgButtonChecked(handle(), box_of(about.which)) == BST_CHECKED) options.free.push_back(about.which);
    options.threads = std::max<std::ptrdiff_t>(processors() - 1, 1);  // one for the windows
    return options;
}

void estimate_dialog::say(const std::string& text)
{
    SetDlgItemTextW(handle(), IDC_ESTIMATE_TEXT, widen(text).c_str());
}

void estimate_dialog::show_progress(double fraction)
{
    SendDlgItemMessageW(handle(), IDC_ESTIMATE_BAR, PBM_SETPOS, static_cast<WPARAM>(fraction * progress_steps), 0);
}

void estimate_dialog::enable(bool searching)
{
    for (const auto& about : lens::all_coefficients)
        EnableWindow(GetDlgItem(handle(), box_of(about.which)), !searching);
    for (const int id : {IDC_NO_ENVELOPE, IDOK}) EnableWindow(GetDlgItem(handle(), id), !searching);
    SetDlgItemTextW(handle(), IDCANCEL, searching ? L"Stop" : L"Close");
}

INT_PTR CALLBACK estimate_dialog::procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) noexcept
{
    try {
        if (message == WM_INITDIALOG) SetWindowLongPtrW(dialog, DWLP_USER, lparam);
        auto* const self = reinterpret_cast<estimate_dialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
        if (!self || !self->dialog_) return FALSE;  // while it is created or destroyed
        if (message == WM_TIMER) self->poll();
        if (message == WM_COMMAND) self->command(LOWORD(wparam));
        return message == WM_TIMER || message == WM_COMMAND;
    } catch (...) {
        window::report_exception();
        return TRUE;
    }
}

}  // namespace zentrix::host
