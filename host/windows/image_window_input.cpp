// Mouse and keys of an image_window.
#include "host/windows/image_window.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "host/pictures/pointer_text.h"
#include "host/windows/resource.h"

namespace zentrix::host {

namespace {

// The system's IDC_SIZEALL and IDC_SIZEWE as numbers, which are constant expressions.
constexpr std::size_t most_painted_at_once = std::size_t{1} << 20;  // pixels; a few milliseconds
constexpr WORD move_cursor = 32646, sideways_cursor = 32644;

bool is_held(int key) { return GetKeyState(key) < 0; }

}  // namespace

/// Returns whether the message was one of the mouse.
bool image_window::mouse_input(UINT message, WPARAM wparam, LPARAM lparam)
{
    POINT at{GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)};
    switch (message) {
        case WM_LBUTTONDBLCLK:
            if (PtInRect(std::array{strip_area()}.data(), at)) return choose_limits(std::nullopt), true;
            [[fallthrough]];
        case WM_LBUTTONDOWN: return press(at), true;
        case WM_MOUSEMOVE: return move_to(at), true;
        case WM_MOUSELEAVE: return tracks_mouse_ = false, status_ ? status_->point("") : void(), true;
        case WM_LBUTTONUP: return ReleaseCapture(), true;
        case WM_CAPTURECHANGED: return release(), true;
        case WM_MOUSEWHEEL: ScreenToClient(handle(), &at); return wheel(at, GET_WHEEL_DELTA_WPARAM(wparam)), true;
        default: return false;
    }
}

void image_window::press(POINT at)
{
    const RECT strip_place = strip_area(), area = picture_area();
    from_ = at;
    if (PtInRect(&strip_place, at) && rendered_.shades.width > 0 && !fixed_limits_ && !plot_) {
        const histogram_strip present = strip();
        handle_dragged_ = present.handle_at(at.x, rendered_.limits);
        if (handle_dragged_ == limit_handle::none) return;
        dragged_strip_ = present;
        dragged_limits_ = rendered_.limits;
        dragging_ = dragged::limits;
    } else if (PtInRect(&area, at))
        dragging_ = dragged::picture;
    else
        return;
    SetCapture(handle());
}

void image_window::move_to(POINT at)
{
    if (!tracks_mouse_) {
        TRACKMOUSEEVENT leave{sizeof leave, TME_LEAVE, handle(), 0};
        tracks_mouse_ = TrackMouseEvent(&leave);
    }
    if (dragging_ == dragged::picture) {
        map_.pan(at.x - from_.x, at.y - from_.y);
        from_ = at;
        view_changed();
    } else if (dragging_ == dragged::limits)
        choose_limits(dragged_strip_->dragged(handle_dragged_, dragged_limits_, dragged_strip_->value_at(from_.x),
                                              dragged_strip_->value_at(at.x)));
    point(at);
}

void image_window::release()
{
    dragging_ = dragged::nothing;
    if (!std::exchange(dragged_strip_, std::nullopt)) return;
    strip_is_stale_ = true;
    redraw_picture();
}

void image_window::wheel(POINT at, int delta)
{
    wheel_ += delta;
    const int steps = wheel_ / WHEEL_DELTA;
    wheel_ -= steps * WHEEL_DELTA;
    if (steps == 0) return;
    map_.step(steps, {at.x + 0.0, at.y + 0.0});
    view_changed();
    point(at);
}

bool image_window::key(WPARAM key)
{
    const bool with_control = is_held(VK_CONTROL);
    const pixel_box seen = map_.visible();
    const int step = std::max(1, (key == VK_LEFT || key == VK_RIGHT ? seen.width() : seen.height()) / 16);
    const auto pan = [&](int right, int down) { map_.pan(right, down), view_changed(); };
    switch (key) {
        case VK_ADD:
        case VK_OEM_PLUS: return view_command(IDM_ZOOM_IN);
        case VK_SUBTRACT:
        case VK_OEM_MINUS: return view_command(IDM_ZOOM_OUT);
        case '0': return with_control && view_command(IDM_ZOOM_ONE);
        case '1':
        case VK_NUMPAD1: return view_command(IDM_ZOOM_ONE);
        case 'F': return !with_control && view_command(IDM_ZOOM_FIT);
        case 'A': return !with_control && view_command(IDM_AUTOMATIC_LIMITS);
        case 'B': return !with_control && view_command(IDM_ANNOTATIONS);
        case 'H': return !with_control && view_command(IDM_HISTOGRAM);
        case VK_LEFT: return pan(step, 0), true;
        case VK_RIGHT: return pan(-step, 0), true;
        case VK_UP: return pan(0, step), true;
        case VK_DOWN: return pan(0, -step), true;
        case VK_SPACE: return show_uncorrected(true), true;
        default: return false;
    }
}

bool image_window::view_command(unsigned id)
{
    switch (id) {
        case IDM_ZOOM_IN: map_.step(1, map_.middle_of_area()); break;
        case IDM_ZOOM_OUT: map_.step(-1, map_.middle_of_area()); break;
        case IDM_ZOOM_ONE: map_.set_zoom(1, map_.middle_of_area()); break;
        case IDM_ZOOM_FIT: map_.fit(); break;
        case IDM_AUTOMATIC_LIMITS: return choose_limits(std::nullopt), true;
        case IDM_ANNOTATIONS: annotated_ = !annotated_; break;
        case IDM_HISTOGRAM:
            if (!fixed_limits_) has_strip_ = !has_strip_;
            return lay_out(), true;
        default: return false;
    }
    view_changed();
    return true;
}

/// Shows the present values with other limits; small pictures at once, without a request.
/// limits  nothing: automatic ones
void image_window::choose_limits(std::optional<grey_limits> limits)
{
    if (fixed_limits_) return;
    chosen_limits_[static_cast<std::size_t>(mode_)] = limits;
    if (!rendered_.values || !is_grey()) return;
    rendered_.limits = limits.value_or(rendered_.automatic);
    strip_is_stale_ = true;
    if (rendered_.values->count() > most_painted_at_once) {
        redraw_strip();
        return refresh();
    }
    paint_picture({*rendered_.values, mode_, palette::grey, rendered_.limits}, rendered_.shades);
    redraw_picture();
    if (pending() || received_ < newest_) refresh();  // the awaited picture would have the former limits
}

void image_window::show_uncorrected(bool uncorrected)
{
    if (uncorrected == uncorrected_ || facts_.is_spectrum || fixed_limits_) return;
    if (uncorrected) limits_for_uncorrected_ = rendered_.limits;
    uncorrected_ = uncorrected;
    show_title();
    refresh();
}

/// Says what is under the mouse.
void image_window::point(POINT at)
{
    if (!status_ || !rendered_.values) return;
    const auto pixel = map_.pixel_at(at.x, at.y);
    if (!pixel) return status_->point("");
    const image& values = *rendered_.values;
    const auto scaled = [](std::uint32_t place, int of, std::uint32_t to) {  // a picture of the screen's resolution
        return static_cast<std::uint32_t>((place + 0.5) / of * to);
    };
    const pixel_place place{scaled(pixel->x, source_.width(), values.size(0)),
                            scaled(pixel->y, source_.height(), values.size(1))};
    const std::string value = value_text(values, place, mode_);
    if (!facts_.is_spectrum) return status_->point(value + "    " + place_text(*pixel, facts_.pixel_nm));
    const auto scale = frequencies_of({source_.width(), source_.height()}, facts_.pixel_nm);
    status_->point(
        value + "    " +
        frequency_text((pixel->x + 0.5 - scale.zero.x) * scale.right, (scale.zero.y - pixel->y - 0.5) * scale.down));
}

bool image_window::limit_at(POINT in_client) const
{
    const RECT place = strip_area();
    return !plot_ && PtInRect(&place, in_client) && rendered_.shades.width > 0 &&
           strip().handle_at(in_client.x, rendered_.limits) != limit_handle::none;
}

/// Sets the cursor over what can be dragged.
bool image_window::set_cursor() const
{
    POINT at;
    GetCursorPos(&at);
    ScreenToClient(handle(), &at);
    if (dragging_ == dragged::picture) return SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(move_cursor))), true;
    if (limit_at(at) || dragging_ == dragged::limits)
        return SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(sideways_cursor))), true;
    return false;
}

}  // namespace zentrix::host
