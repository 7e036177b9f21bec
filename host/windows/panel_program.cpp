#include "host/windows/panel_program.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "host/files/image_file.h"
#include "host/parameters/parameter_file.h"
#include "host/text/encoding.h"
#include "host/text/system_path.h"
#include "host/windows/estimate_dialog.h"
#include "host/windows/file_dialog.h"
#include "host/windows/microscope_dialog.h"
#include "host/windows/panel_parameters.h"
#include "host/windows/resource.h"
#include "host/windows/screenshot.h"

namespace zentrix::host {

namespace {

constexpr LONG largest_picture = 640;  // initial size of the wave window [screen pixels]
constexpr LONG margin = 24;
constexpr wchar_t parameter_files[] = L"Parameters and records (*.json)\0*.json\0";
constexpr UINT_PTR screenshot_timer = 1, quit_timer = 2;
constexpr UINT time_to_paint_ms = 300;  // the window system may be another process

}  // namespace

panel_program::panel_program(engine& engine, const image_ref& wave, const microscope& scope,
                             panel_program_options options)
    : engine_{engine}, options_{std::move(options)}
{
    if (!options_.log.empty()) {
        log_.open(options_.log, std::ios::binary);
        if (!log_) throw std::runtime_error{utf8_path(options_.log) + ": cannot be written"};
    }
    size_ = zoomed_to_fit({static_cast<LONG>(wave->size(0)), static_cast<LONG>(wave->size(1))},
                          {largest_picture, largest_picture});
    handler_ = panel_handler::make(engine, wave, scope, options_.start, *this);
    make_windows();
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

void panel_program::make_windows()
{
    wave_window_ = std::make_unique<image_window>(options_.title, nullptr, size_, handler_->pictures());
    const HINSTANCE module = GetModuleHandleW(nullptr);
    keys_ = LoadAcceleratorsW(module, MAKEINTRESOURCEW(IDR_PROGRAM_KEYS));
    win32::unique_menu menu{LoadMenuW(module, MAKEINTRESOURCEW(IDR_PROGRAM_MENU))};
    if (SetMenu(wave_window_->handle(), menu.get())) static_cast<void>(menu.release());  // destroyed with the window
    wave_window_->set_mode(options_.start.shown);
    colour_phases(options_.phase_palette == palette::cyclic);
    wave_window_->on_close([] { PostQuitMessage(0); });
    wave_window_->on_command([this](unsigned id) { command(id); });
    const auto& registered = engine_.windows();
    if (registered.empty()) throw script_error{"The library has registered no floating window."};
    frame_ = std::make_unique<floating_frame>(engine_, registered.front().title, wave_window_->handle());
}

void panel_program::place_windows()
{
    const auto move = [](HWND window, LONG left, LONG top) {
        SetWindowPos(window, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    };
    // The menu reduced the client area, so the window is resized.
    RECT around{0, 0, size_.cx, size_.cy};
    AdjustWindowRect(&around, WS_OVERLAPPEDWINDOW, TRUE);
    SetWindowPos(wave_window_->handle(), nullptr, margin, margin, around.right - around.left,
                 around.bottom - around.top, SWP_NOZORDER | SWP_NOACTIVATE);
    GetWindowRect(wave_window_->handle(), &around);  // the system enforces a minimum width
    move(frame_->handle(), around.right + margin / 2, margin);
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

void panel_program::start_timers()
{
    // With a timer procedure the timer also works in the message loops of dialogs and menus.
    const auto quit = [](HWND, UINT, UINT_PTR, DWORD) { PostQuitMessage(0); };
    if (options_.quit_after_ms) SetTimer(wave_window_->handle(), quit_timer, *options_.quit_after_ms, quit);
    if (!options_.screenshot.empty() || !options_.screenshot_of_all.empty())
        SetTimer(wave_window_->handle(), screenshot_timer, time_to_paint_ms, nullptr);
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
    const bool for_us = message.hwnd && GetForegroundWindow() != nullptr;
    // In a field, Ctrl+Z takes back what was typed there.
    const bool undoes_typing =
        message.message == WM_KEYDOWN && message.wParam == 'Z' && SendMessageW(message.hwnd, EM_CANUNDO, 0, 0) != 0;
    if (for_us && !undoes_typing && TranslateAcceleratorW(wave_window_->handle(), keys_, &message)) return;
    if (frame_->handles(message) || (estimate_ && estimate_->handles(message))) return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

void panel_program::show_panel(bool shown)
{
    if (shown)
        frame_->show();
    else
        frame_->hide();
}

void panel_program::command(unsigned id)
{
    switch (id) {
        case IDM_SAVE: return save();
        case IDM_SAVE_PARAMETERS: return save_parameters();
        case IDM_LOAD_PARAMETERS: return load_parameters();
        case IDM_QUIT: return PostQuitMessage(0);
        case IDM_PANEL: return show_panel(!frame_->visible());
        case IDM_MICROSCOPE: return handler_->edit_microscope();
        case IDM_ESTIMATE: return show_estimate_dialog();
        case IDM_UNDO_ESTIMATE: return undo_estimate();
        case IDM_PHASE_COLOURS: return colour_phases(wave_window_->phase_palette() == palette::grey);
    }
}

void panel_program::colour_phases(bool coloured)
{
    wave_window_->set_phase_palette(coloured ? palette::cyclic : palette::grey);
    CheckMenuItem(GetMenu(wave_window_->handle()), IDM_PHASE_COLOURS, coloured ? MF_CHECKED : MF_UNCHECKED);
}

void panel_program::save()
{
    const auto file = ask_file(wave_window_->handle(), {false, L"Wave (*.npy)\0*.npy\0", L"npy", L"corrected.npy"});
    if (file.empty()) return;
    const image_ref& result = handler_->result();
    const auto record = record_path({file});  // throws before anything is written
    write_image(file, *result);
    write_record(record, provenance_of(file), {{file, result.get()}});
}

provenance panel_program::provenance_of(const std::filesystem::path& result) const
{
    const parameter_set set = parameters_of(handler_->coefficients(), handler_->scope());
    provenance made{.command = {"zentrix"}, .inputs = {}, .parameters = set, .program = options_.program};
    const bool by_one_command = handler_->applied().empty();
    made.command.emplace_back(by_one_command ? "correct" : "panel");
    if (options_.input) {
        made.inputs.push_back(*options_.input);
        made.command.push_back(options_.input->name);
    }
    if (by_one_command) {
        made.command.insert(made.command.end(), {"-o", utf8_path(result)});
        for (std::string& word : option_words(set)) made.command.push_back(std::move(word));
        return made;
    }
    for (const auto& [lens, scope] : handler_->applied())
        made.more["applied_before"].push_back(as_json(parameters_of(lens, scope)));
    return made;
}

void panel_program::show_estimate_dialog()
{
    if (!estimate_)
        estimate_ = std::make_unique<estimate_dialog>(
            wave_window_->handle(), frame_->handle(),
            estimate_listener{.begin =
                                  [this] {
                                      return std::pair{handler_->source(), handler_->optics()};
                                  },
                              .preview = [this](const lens::aberrations& lens) { handler_->preview(lens); },
                              .finished = [this](const estimate& found) { accept_estimate(found); },
                              .given_up = [this] { handler_->end_preview(); }});
    estimate_->show();
}

void panel_program::accept_estimate(const estimate& found)
{
    handler_->end_preview();
    for (const auto& one : found.coefficients)
        log("estimate " + std::string{lens::traits(one.which).name} + (one.determined ? "" : " not determined"));
    if (!found.any_determined()) return;
    const auto former = handler_->coefficients();
    auto lens = found.setup.lens;
    for (const auto& about : lens::all_coefficients)  // the panel has whole degrees
        lens[about.which].angle_degrees = std::round(lens[about.which].angle_degrees);
    handler_->set(lens, handler_->scope());
    before_estimate_ = former;
    applied_before_estimate_ = handler_->applied().size();
    EnableMenuItem(GetMenu(wave_window_->handle()), IDM_UNDO_ESTIMATE, MF_ENABLED);
}

void panel_program::undo_estimate()
{
    const auto former = std::exchange(before_estimate_, std::nullopt);
    if (!former) return;
    if (handler_->applied().size() == applied_before_estimate_)  // else they belong to another wave
        handler_->set(*former, handler_->scope());
    EnableMenuItem(GetMenu(wave_window_->handle()), IDM_UNDO_ESTIMATE, MF_GRAYED);
}

void panel_program::save_parameters()
{
    const auto file = ask_file(wave_window_->handle(), {false, parameter_files, L"json", L"parameters.json"});
    if (!file.empty()) write_parameters(file, parameters_of(handler_->coefficients(), handler_->scope()));
}

void panel_program::load_parameters()
{
    const auto file = ask_file(wave_window_->handle(), {true, parameter_files, L"json", L""});
    if (file.empty()) return;
    const auto [lens, scope, note] = for_panel(read_parameters(file), handler_->scope());
    handler_->set(lens, scope);
    if (!note.empty()) alert(note);
}

void panel_program::pictures_changed()
{
    if (estimate_ && !handler_->previewing()) estimate_->stop();  // the user has changed what it searches
    if (wave_window_) wave_window_->refresh();
    if (transfer_window_) transfer_window_->refresh();
}

void panel_program::show_mode(display_mode mode) { wave_window_->set_mode(mode); }

void panel_program::show_transfer_function(bool shown)
{
    if (shown && !transfer_window_) make_transfer_window();
    if (!transfer_window_) return;
    if (shown) transfer_window_->refresh();
    ShowWindow(transfer_window_->handle(), shown ? SW_SHOWNOACTIVATE : SW_HIDE);
}

void panel_program::make_transfer_window()
{
    transfer_window_ =
        std::make_unique<image_window>("Phase contrast transfer function", wave_window_->handle(),
                                       SIZE{size_.cx / 2, size_.cy / 2}, handler_->transfer_function_pictures());
    transfer_window_->set_limits({-1, 1});
    transfer_window_->on_close([this] { handler_->set_transfer_function(false); });
    RECT frame;
    GetWindowRect(frame_->handle(), &frame);
    SetWindowPos(transfer_window_->handle(), nullptr, frame.left, frame.bottom + margin / 2, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

std::optional<microscope> panel_program::ask_microscope(const microscope& present)
{
    return host::ask_microscope(wave_window_->handle(), present);
}

void panel_program::panel_closed()
{
    if (transfer_window_ && transfer_window_->visible()) handler_->set_transfer_function(false);
}

void panel_program::take_screenshots()
{
    KillTimer(wave_window_->handle(), screenshot_timer);
    wave_window_->shown();  // waits for it
    for (const HWND window : {wave_window_->handle(), frame_->handle()})
        RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    if (const auto file = std::exchange(options_.screenshot, {}); !file.empty())
        write_png(file, picture_of_client(frame_->handle()));
    if (const auto file = std::exchange(options_.screenshot_of_all, {}); !file.empty())
        write_png(file, picture_of_screen({wave_window_->handle(), frame_->handle()}));
}

void panel_program::log(const std::string& line)
{
    if (log_.is_open()) log_ << line << '\n' << std::flush;
}

void panel_program::alert(const std::string& text)
{
    log("alert " + text);
    std::fprintf(stderr, "zentrix: %s\n", text.c_str());
    if (alerting_ || options_.quit_after_ms) return;  // one box at a time; none in an unattended run
    alerting_ = true;
    MessageBoxW(wave_window_->handle(), widen(text).c_str(), L"Zentrix", MB_OK | MB_ICONWARNING);
    alerting_ = false;
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
