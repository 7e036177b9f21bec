#include "host/windows/image_window.h"

#include <algorithm>

#include "host/objects/value.h"
#include "host/pictures/zoom.h"
#include "host/text/encoding.h"

namespace zentrix::host {

namespace {

constexpr const char* mode_names[] = {"Real", "Imaginary", "Modulus", "Log of Modulus", "Phase"};

constexpr UINT picture_ready = WM_APP + 1;
constexpr UINT_PTR rest_timer = 100;
constexpr UINT rest_ms = 250;

HBRUSH background() { return GetSysColorBrush(COLOR_APPWORKSPACE); }

template <class F>
void timed(std::chrono::duration<double>& spent, F work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    spent += std::chrono::steady_clock::now() - start;
}

}  // namespace

SIZE zoomed_to_fit(SIZE picture, SIZE area)
{
    const double zoom = std::min(static_cast<double>(area.cx) / picture.cx, static_cast<double>(area.cy) / picture.cy);
    return {std::max(1L, static_cast<LONG>(picture.cx * zoom + 0.5)),
            std::max(1L, static_cast<LONG>(picture.cy * zoom + 0.5))};
}

image_window::image_window(std::string title, HWND owner, SIZE client, picture_supply& source)
    : window{{title, WS_OVERLAPPEDWINDOW, 0, owner, client}}, title_{std::move(title)}, source_{source}
{
    source_.on_ready([window = handle()] { PostMessageW(window, picture_ready, 0, 0); });
    show_title();
}

image_window::~image_window() { source_.on_ready({}); }

void image_window::show_title()
{
    const std::string mode = limits_ ? "" : std::string{" - "} + mode_names[static_cast<std::size_t>(mode_)];
    SetWindowTextW(handle(), widen(title_ + mode).c_str());
}

void image_window::refresh()
{
    pending_ = true;
    requested_ = visible();
    if (!requested_) return;  // painting does it
    source_.request(request(false));
    SetTimer(handle(), rest_timer, rest_ms, nullptr);
}

picture_request image_window::request(bool full) const
{
    RECT client;
    GetClientRect(handle(), &client);
    const SIZE size = zoomed_to_fit({source_.width(), source_.height()}, {client.right, client.bottom});
    return {.mode = mode_,
            .shades = mode_ == display_mode::phase ? phase_palette_ : palette::grey,
            .limits = limits_,
            .zoom = std::max(static_cast<double>(size.cx) / source_.width(),
                             static_cast<double>(size.cy) / source_.height()),
            .full = full};
}

void image_window::take_picture()
{
    if (auto picture = source_.take()) show_picture(std::move(*picture));
}

void image_window::show_picture(rendered_picture&& rendered)
{
    pending_ = false;
    if (!rendered.failure.empty()) {
        if (rendered.is_known) return;
        throw script_error{rendered.failure};
    }
    rendered_ = std::move(rendered);
    zoom_is_stale_ = true;
    InvalidateRect(handle(), IsRectEmpty(&place_) ? nullptr : &place_, FALSE);
}

/// Requests full resolution when the user rests: no button is held, and no input waits.
void image_window::refine()
{
    const auto is_down = [](int button) { return GetAsyncKeyState(button) < 0; };
    if (is_down(VK_LBUTTON) || is_down(VK_RBUTTON) || HIWORD(GetQueueStatus(QS_INPUT)) != 0) return;
    KillTimer(handle(), rest_timer);
    if (!rendered_.is_full || pending_) source_.request(request(true));
}

void image_window::set_mode(display_mode mode)
{
    mode_ = mode;
    show_title();
    refresh();
}

void image_window::set_phase_palette(palette shades)
{
    phase_palette_ = shades;
    refresh();
}

void image_window::set_limits(grey_limits limits)
{
    limits_ = limits;
    mode_ = display_mode::real;
    show_title();
    refresh();
}

const picture& image_window::shown()
{
    if (!rendered_.is_full || pending_) show_picture(source_.wait_for(request(true)));
    return rendered_.shades;
}

LRESULT image_window::handle_message(UINT message, WPARAM wparam, LPARAM lparam)
{
    switch (message) {
        case WM_PAINT: return paint(), 0;
        case WM_ERASEBKGND: return 1;  // painting covers the whole area
        case picture_ready: return take_picture(), 0;
        case WM_SIZE: return rendered_.is_full ? void() : refresh(), 0;
        case WM_TIMER:
            if (wparam == rest_timer) return refine(), 0;
            return window::handle_message(message, wparam, lparam);
        case WM_CLOSE: return close_ ? close_() : void(), 0;
        case WM_COMMAND: return command_ ? command_(LOWORD(wparam)) : void(), 0;
        default: return window::handle_message(message, wparam, lparam);
    }
}

void image_window::paint()
{
    struct painting
    {
        HWND window;
        PAINTSTRUCT state;
        ~painting() { EndPaint(window, &state); }
    } now{handle(), {}};
    const HDC to = BeginPaint(handle(), &now.state);
    if (!requested_) refresh();
    timed(spent_.painting, [&] { draw(to); });
    ++spent_.drawn;
}

void image_window::draw(HDC to)
{
    RECT client;
    GetClientRect(handle(), &client);
    if (rendered_.shades.width == 0) {
        FillRect(to, &client, background());
        return;
    }
    const SIZE size = zoomed_to_fit({rendered_.shades.width, rendered_.shades.height}, {client.right, client.bottom});
    place_ = {(client.right - size.cx) / 2, (client.bottom - size.cy) / 2, (client.right + size.cx) / 2,
              (client.bottom + size.cy) / 2};
    if (const SIZE present = zoomed_.size(); zoom_is_stale_ || present.cx != size.cx || present.cy != size.cy) {
        zoomed_.resize(size);
        zoom(rendered_.shades, size.cx, size.cy, zoomed_.pixels());
        zoom_is_stale_ = false;
    }
    zoomed_.draw(to, place_.left, place_.top);
    ExcludeClipRect(to, place_.left, place_.top, place_.left + size.cx, place_.top + size.cy);
    FillRect(to, &client, background());
}

}  // namespace zentrix::host
