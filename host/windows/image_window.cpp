#include "host/windows/image_window.h"

#include <windowsx.h>

#include <algorithm>
#include <cmath>

#include "host/objects/value.h"
#include "host/pictures/pointer_text.h"
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
    const RECT area = picture_area();
    const SIZE size = zoomed_to_fit({source_.width(), source_.height()}, {area.right, area.bottom});
    const double across = static_cast<double>(size.cx) / source_.width(),
                 down = static_cast<double>(size.cy) / source_.height();
    return {.mode = mode_,
            .shades = mode_ == display_mode::phase ? phase_palette_ : palette::grey,
            .limits = limits_,
            .zoom = std::max(across, down),
            .full = full};
}

void image_window::take_picture()
{
    if (auto picture = source_.take()) show_picture(std::move(*picture));
}

void image_window::show_picture(rendered_picture&& rendered)
{
    pending_ = false;
    if (rendered.is_known) return;
    if (!rendered.failure.empty()) throw script_error{rendered.failure};
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
        case WM_SIZE:
            if (status_) status_->place();
            if (!rendered_.is_full) refresh();
            return 0;
        case WM_TIMER: return wparam == rest_timer ? refine() : void(), 0;
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
    if (!status_ || !rendered_.values) return;
    if (!PtInRect(&place_, at)) return status_->point("");
    if (!tracks_mouse_) {
        TRACKMOUSEEVENT leave{sizeof leave, TME_LEAVE, handle(), 0};
        tracks_mouse_ = TrackMouseEvent(&leave);
    }
    const auto pixel_of = [&](std::uint32_t columns, std::uint32_t rows) {
        const auto along = [](LONG from_edge, LONG length, std::uint32_t pixels) {
            return static_cast<std::uint32_t>(std::int64_t{from_edge} * pixels / length);
        };
        return pixel_place{along(at.x - place_.left, place_.right - place_.left, columns),
                           along(at.y - place_.top, place_.bottom - place_.top, rows)};
    };
    const image& values = *rendered_.values;
    const auto place =
        pixel_of(static_cast<std::uint32_t>(source_.width()), static_cast<std::uint32_t>(source_.height()));
    status_->point(value_text(values, pixel_of(values.size(0), values.size(1)), mode_) + "    " +
                   place_text(place, facts_.pixel_nm));
}

void image_window::show_facts()
{
    if (!status_ || !rendered_.values) return;
    const double percent = 100.0 * (place_.right - place_.left) / source_.width();
    status_->zoom(std::to_string(std::lround(percent)) + " %");
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
    RECT client = picture_area();
    if (!rendered_.values) {
        FillRect(to, &client, background());
        return;
    }
    const SIZE size = zoomed_to_fit({source_.width(), source_.height()}, {client.right, client.bottom});
    place_ = {(client.right - size.cx) / 2, (client.bottom - size.cy) / 2, (client.right + size.cx) / 2,
              (client.bottom + size.cy) / 2};
    if (const SIZE present = zoomed_.size(); zoom_is_stale_ || present.cx != size.cx || present.cy != size.cy) {
        zoomed_.resize(size);
        zoom(rendered_.shades, size.cx, size.cy, zoomed_.pixels());
        zoom_is_stale_ = false;
    }
    show_facts();
    zoomed_.draw(to, place_.left, place_.top);
    ExcludeClipRect(to, place_.left, place_.top, place_.left + size.cx, place_.top + size.cy);
    FillRect(to, &client, background());
}

}  // namespace zentrix::host
