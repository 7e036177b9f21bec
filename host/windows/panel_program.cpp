#include "host/windows/panel_program.h"

#include <windowsx.h>

#include <cstdio>
#include <stdexcept>
#include <utility>

#include "host/text/encoding.h"
#include "host/text/system_path.h"
#include "host/windows/disabled_windows.h"
#include "host/windows/resource.h"

namespace zentrix::host {

panel_program::panel_program(engine& engine, const image_ref& wave, const microscope& scope,
                             panel_program_options options)
    : engine_{engine}, options_{std::move(options)}
{
    if (!options_.log.empty()) {
        log_.open(options_.log, std::ios::binary);
        if (!log_) throw std::runtime_error{utf8_path(options_.log) + ": cannot be written"};
    }
    handler_ = panel_handler::make(engine, wave, scope, options_.start, *this);
    history_.emplace(handler_->state());
    make_windows({static_cast<LONG>(wave->size(0)), static_cast<LONG>(wave->size(1))});
    listen();
    try {
        engine.call("ZXSetZentrixHandler", {object_ref{handler_}, object_ref{handler_->tags()}});
    } catch (...) {
        stop_listening();
        throw;
    }
}

panel_program::~panel_program()
{
    estimate_.reset();
    frame_->close();
    handler_->detach();
    stop_listening();
}

void panel_program::stop_listening()
{
    handler_->on_call({});
    handler_->tags()->on_write({});
    window::on_failure({});
    engine_.records().listening = previous_;
}

void panel_program::listen()
{
    previous_ = engine_.records().listening;
    engine_.records().listening.dialog = [this](const dialog_record& shown) { alert(shown.text); };
    engine_.records().listening.error = [this](const error_record& error) { alert(error.text); };
    window::on_failure([this](const std::string& text) { alert(text); });
    handler_->on_call([this](const std::string& call) { log("call " + call); });
    handler_->tags()->on_write(
        [this](std::string_view path, const tag& value) { log("tag " + std::string{path} + " = " + text_of(value)); });
}

void panel_program::show()
{
    place_windows();
    ShowWindow(wave_window_->handle(), SW_SHOW);
    show_panel(true);
}

void panel_program::run()
{
    show();
    start_timers();
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) dispatch(message);
    take_screenshots();  // if the loop ended before the timer
}

bool panel_program::handle_waiting_messages()
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) return false;
        dispatch(message);
    }
    return true;
}

void panel_program::dispatch(MSG& message)
{
    const bool own_timer = message.message == WM_TIMER && message.hwnd == wave_window_->handle();
    if (own_timer && message.wParam == screenshot_timer) return take_screenshots();
    if (message.message == WM_MOUSEWHEEL) send_to_picture_under_mouse(message);
    follow_gesture(message);
    const bool for_us = message.hwnd && GetForegroundWindow() != nullptr;
    // In a field, Ctrl+Z takes back what was typed there, once; after that it undoes edits.
    const bool undoes_typing =
        message.message == WM_KEYDOWN && message.wParam == 'Z' && SendMessageW(message.hwnd, EM_CANUNDO, 0, 0) != 0;
    if (for_us && !undoes_typing && TranslateAcceleratorW(wave_window_->handle(), keys_.get(), &message)) return;
    if (!frame_->handles(message) && !(estimate_ && estimate_->handles(message))) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    constexpr WPARAM control_z = 0x1a;
    if (message.message == WM_CHAR && message.wParam == control_z) SendMessageW(message.hwnd, EM_EMPTYUNDOBUFFER, 0, 0);
}

/// The wheel zooms the picture under the mouse, whatever has the focus.
void panel_program::send_to_picture_under_mouse(MSG& message) const
{
    const HWND under = WindowFromPoint({GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam)});
    for (const auto* const one : {&wave_window_, &transfer_window_, &diffractogram_window_})
        if (*one && under == (*one)->handle()) message.hwnd = under;
}

void panel_program::pictures_changed()
{
    note_edit();
    if (!handler_ || !wave_window_) return;
    if (!said_.empty()) say("");
    refresh_table();
    if (estimate_ && !handler_->previewing()) estimate_->stop();  // the user has changed what it searches
    const double pixel_nm = handler_->scope().pixel_nm;
    for (const auto* const one : {&wave_window_, &transfer_window_, &diffractogram_window_}) {
        if (!*one) continue;
        (*one)->set_pixel_nm(pixel_nm);
        if (one == &diffractogram_window_ && handler_->diffractograms().is_slow()) {
            (*one)->refresh_at_rest();
            (*one)->refresh_plot();
        } else
            (*one)->refresh();
    }
}

void panel_program::show_mode(display_mode mode)
{
    wave_window_->set_mode(mode);
    if (diffractogram_of_display_) choose_diffractogram();
}

void panel_program::show_transfer_function(bool shown)
{
    if (shown && !transfer_window_) make_transfer_window();
    if (!transfer_window_) return;
    if (shown) transfer_window_->refresh();
    ShowWindow(transfer_window_->handle(), shown ? SW_SHOWNOACTIVATE : SW_HIDE);
}

void panel_program::panel_closed()
{
    if (transfer_window_ && transfer_window_->visible()) handler_->set_transfer_function(false);
}

void panel_program::log(const std::string& line)
{
    if (log_.is_open()) log_ << line << '\n' << std::flush;
}

void panel_program::alert(const std::string& text)
{
    log("alert " + text);
    std::fprintf(stderr, "zentrix: %s\n", text.c_str());
    if (std::exchange(chosen_failed_, false))  // what fails under the box is another matter
        show_box(text, MB_ICONWARNING);
    else
        say(text);
}

void panel_program::say(const std::string& text)
{
    said_ = text;
    if (wave_window_) wave_window_->say(text);
}

void panel_program::show_box(const std::string& text, UINT style)
{
    if (boxed_ || options_.quit_after_ms) return;
    boxed_ = true;
    MSGBOXPARAMSW box{};
    box.cbSize = sizeof box;
    box.hwndOwner = wave_window_->handle();
    box.hInstance = GetModuleHandleW(nullptr);
    const std::wstring wide = widen(text);
    box.lpszText = wide.c_str();
    box.lpszCaption = L"Zentrix";
    box.dwStyle = MB_OK | style;
    box.lpszIcon = MAKEINTRESOURCEW(IDI_PROGRAM);
    {
        const disabled_windows others;  // their keys would do nothing while the box has the message loop
        MessageBoxIndirectW(&box);
    }
    boxed_ = false;
}

std::string panel_program::costs() const
{
    const auto& computed = handler_->pictures().spent();
    const auto& drawn = wave_window_->spent();
    const auto each = [](std::chrono::duration<double> sum, int count) {
        return count == 0 ? 0 : 1000 * sum.count() / count;
    };
    const double transfer = each(computed.transfer, computed.computed);
    const double transform = each(computed.transform, computed.computed);
    const double shades = each(computed.shades, computed.computed), screen = each(drawn.painting, drawn.drawn);
    char text[200];
    std::snprintf(text, sizeof text,
                  "%d pictures, %.1f ms each: transfer function %.1f, transform %.1f, shades %.1f, screen %.1f",
                  computed.computed, transfer + transform + shades + screen, transfer, transform, shades, screen);
    return text;
}

}  // namespace zentrix::host
