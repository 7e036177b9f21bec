#include "host/windows/image_window.h"

#include <algorithm>

#include "host/pictures/zoom.h"
#include "host/text/encoding.h"

namespace zentrix::host {

namespace {

constexpr const char* mode_names[] = {"Real", "Imaginary", "Modulus", "Log of Modulus", "Phase"};

HBRUSH background() { return GetSysColorBrush(COLOR_APPWORKSPACE); }

template <class F>
auto timed(std::chrono::duration<double>& spent, F work)
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

image_window::image_window(std::string title, HWND owner, SIZE client, std::function<image_ref()> source)
    : window{{title, WS_OVERLAPPEDWINDOW, 0, owner, client}}, title_{std::move(title)}, source_{std::move(source)}
{
    show_title();
}

void image_window::show_title()
{
    const std::string mode = limits_ ? "" : std::string{" - "} + mode_names[static_cast<std::size_t>(mode_)];
    SetWindowTextW(handle(), widen(title_ + mode).c_str());
}

void image_window::refresh()
{
    stale_ = true;
    InvalidateRect(handle(), IsRectEmpty(&place_) ? nullptr : &place_, FALSE);
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
    if (!stale_) return picture_;
    stale_ = false;  // before the request, so that a failure is not repeated at once
    const auto image = source_();
    const auto shades = mode_ == display_mode::phase ? phase_palette_ : palette::grey;
    timed(spent_.mapping, [&] {
        const bool needs_limits = shades == palette::grey && !limits_;
        const auto limits = needs_limits ? sampled_limits(*image, mode_) : limits_.value_or(grey_limits{});
        zoom_is_stale_ = true;
        paint_picture({*image, mode_, shades, limits}, picture_);
    });
    return picture_;
}

LRESULT image_window::handle_message(UINT message, WPARAM wparam, LPARAM lparam)
{
    switch (message) {
        case WM_PAINT: return paint(), 0;
        case WM_ERASEBKGND: return 1;  // painting covers the whole area
        case WM_CLOSE: return close_ ? close_() : void(), 0;
        case WM_COMMAND: return command_ ? command_(LOWORD(wparam)) : void(), 0;
        default: return window::handle_message(message, wparam, lparam);
    }
}

void image_window::paint()
{
    // BeginPaint comes first, because it validates the window: otherwise a failure would cause WM_PAINT without end.
    struct painting
    {
        HWND window;
        PAINTSTRUCT state;
        ~painting() { EndPaint(window, &state); }
    } now{handle(), {}};
    const HDC to = BeginPaint(handle(), &now.state);
    try {
        shown();
    } catch (...) {
        draw(to);  // the invalid area needs the previous picture or the background
        throw;
    }
    timed(spent_.painting, [&] { draw(to); });
    ++spent_.drawn;
}

void image_window::draw(HDC to)
{
    RECT client;
    GetClientRect(handle(), &client);
    if (picture_.width == 0) {
        FillRect(to, &client, background());
        return;
    }
    const SIZE size = zoomed_to_fit({picture_.width, picture_.height}, {client.right, client.bottom});
    place_ = {(client.right - size.cx) / 2, (client.bottom - size.cy) / 2, (client.right + size.cx) / 2,
              (client.bottom + size.cy) / 2};
    if (const SIZE present = zoomed_.size(); zoom_is_stale_ || present.cx != size.cx || present.cy != size.cy) {
        zoomed_.resize(size);
        zoom(picture_, size.cx, size.cy, zoomed_.pixels());
        zoom_is_stale_ = false;
    }
    zoomed_.draw(to, place_.left, place_.top);
    ExcludeClipRect(to, place_.left, place_.top, place_.left + size.cx, place_.top + size.cy);
    FillRect(to, &client, background());
}

}  // namespace zentrix::host
