#include "host/windows/panel_program.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "host/files/png.h"
#include "host/windows/resource.h"
#include "host/windows/screen_place.h"
#include "host/windows/screenshot.h"

namespace zentrix::host {

namespace {

constexpr LONG largest_picture = 640;  // initial size of the wave window [screen pixels]
constexpr LONG margin = 24;
constexpr UINT time_to_paint_ms = 300;  // the window system may be another process

}  // namespace

void panel_program::make_windows(SIZE wave)
{
    size_ = zoomed_to_fit(wave, {largest_picture, largest_picture});
    wave_window_ = std::make_unique<image_window>(options_.title, nullptr, size_, handler_->pictures());
    wave_window_->add_status_line({handler_->scope().pixel_nm, options_.not_finite});
    wave_window_->add_histogram();
    const HINSTANCE module = GetModuleHandleW(nullptr);
    keys_.reset(LoadAcceleratorsW(module, MAKEINTRESOURCEW(IDR_PROGRAM_KEYS)));
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
    RECT around{0, 0, size_.cx, size_.cy + wave_window_->height_below_picture()};
    AdjustWindowRect(&around, WS_OVERLAPPEDWINDOW, TRUE);
    SetWindowPos(wave_window_->handle(), nullptr, margin, margin, around.right - around.left,
                 around.bottom - around.top, SWP_NOZORDER | SWP_NOACTIVATE);
    GetWindowRect(wave_window_->handle(), &around);  // the system enforces a minimum width
    move(frame_->handle(), around.right + margin / 2, margin);
}

void panel_program::switch_window(int step)
{
    std::vector<HWND> windows{wave_window_->handle(), frame_->handle()};
    const auto add = [&](const auto& one) {
        if (one && IsWindowVisible(one->handle())) windows.push_back(one->handle());
    };
    add(transfer_window_);
    add(diffractogram_window_);
    add(table_);
    add(conventions_);
    add(estimate_);
    const auto present = std::ranges::find(windows, GetActiveWindow()) - windows.begin();
    const auto count = std::ssize(windows);
    const HWND next = windows[static_cast<std::size_t>((present + step + count) % count)];
    if (next == frame_->handle()) return frame_->activate();
    if (IsIconic(next)) ShowWindow(next, SW_RESTORE);
    SetActiveWindow(next);
}

void panel_program::make_transfer_window()
{
    transfer_window_ =
        std::make_unique<image_window>("Phase contrast transfer function", wave_window_->handle(),
                                       SIZE{size_.cx / 2, size_.cy / 2}, handler_->transfer_function_pictures());
    transfer_window_->set_limits({-1, 1});
    transfer_window_->add_status_line({.pixel_nm = handler_->scope().pixel_nm, .is_spectrum = true});
    transfer_window_->on_close([this] { handler_->set_transfer_function(false); });
    RECT frame;
    GetWindowRect(frame_->handle(), &frame);
    place_on_screen(transfer_window_->handle(), {frame.left, frame.bottom + margin / 2});
}

void panel_program::start_timers()
{
    // With a timer procedure the timer also works in the message loops of dialogs and menus.
    const auto quit = [](HWND, UINT, UINT_PTR, DWORD) { PostQuitMessage(0); };
    if (options_.quit_after_ms) SetTimer(wave_window_->handle(), quit_timer, *options_.quit_after_ms, quit);
    if (!options_.screenshot.empty() || !options_.screenshot_of_all.empty())
        SetTimer(wave_window_->handle(), screenshot_timer, time_to_paint_ms, nullptr);
}

void panel_program::take_screenshots()
{
    KillTimer(wave_window_->handle(), screenshot_timer);
    try {
        wave_window_->shown();  // waits for it
    } catch (const std::exception&) {
        window::report_exception();
    }
    for (const HWND window : {wave_window_->handle(), frame_->handle()})
        RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    if (const auto file = std::exchange(options_.screenshot, {}); !file.empty())
        write_png(file, picture_of_client(frame_->handle()));
    if (const auto file = std::exchange(options_.screenshot_of_all, {}); !file.empty())
        write_png(file, picture_of_screen({wave_window_->handle(), frame_->handle()}));
}

}  // namespace zentrix::host
