#include "host/windows/image_window.h"

#include <windowsx.h>

#include <algorithm>
#include <cmath>

#include "host/pictures/pointer_text.h"
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
    image_ = source_();
    const auto shades = mode_ == display_mode::phase ? phase_palette_ : palette::grey;
    timed(spent_.mapping, [&] {
        const bool needs_limits = shades == palette::grey && !limits_;
        const auto limits = needs_limits ? sampled_limits(*image_, mode_) : limits_.value_or(grey_limits{});
        zoom_is_stale_ = true;
        paint_picture({*image_, mode_, shades, limits}, picture_);
    });
    return picture_;
}

LRESULT image_window::handle_message(UINT message, WPARAM wparam, LPARAM lparam)
{
    switch (message) {
        case WM_PAINT: return paint(), 0;
        case WM_ERASEBKGND: return 1;  // painting covers the whole area
        case WM_SIZE: return status_ ? status_->place() : void(), 0;
        case WM_MOUSEMOVE: return mouse_moved({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)}), 0;
        case WM_MOUSELEAVE: return tracks_mouse_ = false, mouse_moved({-1, -1}), 0;
        case WM_CLOSE: return close_ ? close_() : void(), 0;
        case WM_COMMAND: return command_ ? command_(LOWORD(wparam)) : void(), 0;
        default: return window::handle_message(message, wparam, lparam);
    }
}

void image_window::add_status_line(const image_facts& facts)
{
    facts_ = facts;
    status_.emplace(handle());
    if (facts.not_finite > 0)
        status_->note(std::to_string(facts.not_finite) + (facts.not_finite == 1 ? " pixel" : " pixels") +
                      " not finite");
    status_->place();
}

void image_window::say(const std::string& text)
{
    if (status_) status_->say(text);
}

RECT image_window::picture_area() const
{
    RECT area;
    GetClientRect(handle(), &area);
    area.bottom = std::max(0L, area.bottom - status_height());
    return area;
}

void image_window::mouse_moved(POINT at)
{
    if (!status_ || !image_) return;
    if (!PtInRect(&place_, at)) return status_->point("");
    if (!tracks_mouse_) {
        TRACKMOUSEEVENT leave{sizeof leave, TME_LEAVE, handle(), 0};
        tracks_mouse_ = TrackMouseEvent(&leave);
    }
    const auto along = [](LONG from_edge, LONG length, std::uint32_t pixels) {
        return static_cast<std::uint32_t>(std::int64_t{from_edge} * pixels / length);
    };
    const pixel_place pixel{along(at.x - place_.left, place_.right - place_.left, image_->size(0)),
                            along(at.y - place_.top, place_.bottom - place_.top, image_->size(1))};
    status_->point(value_text(*image_, pixel, mode_) + "    " + place_text(pixel, facts_.pixel_nm));
}

void image_window::show_facts()
{
    if (!status_ || picture_.width == 0) return;
    const double percent = 100.0 * (place_.right - place_.left) / picture_.width;
    status_->zoom(std::to_string(std::lround(percent)) + " %");
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
    RECT client = picture_area();
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
    show_facts();
    zoomed_.draw(to, place_.left, place_.top);
    ExcludeClipRect(to, place_.left, place_.top, place_.left + size.cx, place_.top + size.cy);
    FillRect(to, &client, background());
}

}  // namespace zentrix::host
