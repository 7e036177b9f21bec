#include "host/windows/image_window.h"

#include <algorithm>
#include <utility>

#include "host/objects/value.h"
#include "host/text/encoding.h"

namespace zentrix::host {

namespace {

constexpr const char* mode_names[] = {"Real", "Imaginary", "Modulus", "Log of Modulus", "Phase"};

constexpr char status_tip[] =
    "The pixel under the mouse: its value and its place from the upper left corner; or the last message.\n"
    "At the right the zoom, and how many pixels of the file are not finite";
constexpr char status_tip_of_spectrum[] = "Under the mouse: frequency, period and direction. At the right the zoom";

constexpr UINT picture_ready = WM_APP + 1;
constexpr UINT_PTR rest_timer = 100;
constexpr UINT rest_ms = 250;

}  // namespace

SIZE zoomed_to_fit(SIZE picture, SIZE area)
{
    const auto [width, height] = fitted({picture.cx, picture.cy}, {area.cx, area.cy});
    return {width, height};
}

image_window::image_window(std::string title, HWND owner, SIZE client, picture_supply& source)
    : window{{title, WS_OVERLAPPEDWINDOW, 0, owner, client}}, title_{std::move(title)}, source_{source}
{
    source_.on_ready([window = handle()] { PostMessageW(window, picture_ready, 0, 0); });
    show_title();
    lay_out();
}

image_window::~image_window() { source_.on_ready({}); }

void image_window::show_title()
{
    std::string title = title_;
    if (!fixed_limits_ && !facts_.is_spectrum) title.append(" - ").append(mode_names[static_cast<std::size_t>(mode_)]);
    if (uncorrected_) title.append(" - before the correction");
    SetWindowTextW(handle(), widen(title).c_str());
}

void image_window::refresh()
{
    changed_ = newest_ + 1;
    requested_ = visible();
    if (!requested_) return;  // painting does it
    changed_ = newest_ = source_.request(request(false));
    SetTimer(handle(), rest_timer, rest_ms, nullptr);
}

void image_window::refresh_at_rest()
{
    changed_ = newest_ + 1;
    requested_ = visible();
    if (requested_) SetTimer(handle(), rest_timer, rest_ms, nullptr);
}

std::optional<grey_limits> image_window::wanted_limits() const
{
    if (fixed_limits_) return fixed_limits_;
    const auto& chosen = chosen_limits_[static_cast<std::size_t>(mode_)];
    return uncorrected_ && !chosen ? limits_for_uncorrected_ : chosen;
}

picture_request image_window::request(bool full) const
{
    return {.mode = mode_,
            .shades = mode_ == display_mode::phase ? phase_palette_ : palette::grey,
            .limits = wanted_limits(),
            .uncorrected = uncorrected_,
            .zoom = std::max(static_cast<double>(map_.whole().width()) / source_.width(),
                             static_cast<double>(map_.whole().height()) / source_.height()),
            .full = full};
}

void image_window::take_picture()
{
    if (auto picture = source_.take()) show_picture(std::move(*picture));
}

void image_window::show_picture(rendered_picture&& rendered)
{
    received_ = rendered.number;
    if (rendered.is_known) return;
    if (!rendered.failure.empty()) throw script_error{rendered.failure};
    rendered_ = std::move(rendered);
    strip_is_stale_ = true;
    redraw_picture();
}

/// Requests full resolution when the user rests: no button is held, and no input waits.
void image_window::refine()
{
    const auto is_down = [](int button) { return GetAsyncKeyState(button) < 0; };
    if (is_down(VK_LBUTTON) || is_down(VK_RBUTTON) || HIWORD(GetQueueStatus(QS_INPUT)) != 0) return;
    KillTimer(handle(), rest_timer);
    if (!is_refined()) newest_ = source_.request(request(true));
}

void image_window::set_mode(display_mode mode)
{
    mode_ = mode;
    show_title();
    lay_out();
    refresh();
}

void image_window::set_phase_palette(palette shades)
{
    phase_palette_ = shades;
    lay_out();
    refresh();
}

void image_window::set_limits(grey_limits limits)
{
    fixed_limits_ = limits;
    mode_ = display_mode::real;
    show_title();
    refresh();
}

void image_window::add_status_line(const image_facts& facts)
{
    facts_ = facts;
    status_.emplace(handle());
    tips_.emplace(handle());
    tips_->explain(status_->handle(), facts.is_spectrum ? status_tip_of_spectrum : status_tip);
    show_title();
    if (facts.not_finite > 0)
        status_->note(std::to_string(facts.not_finite) + (facts.not_finite == 1 ? " pixel" : " pixels") +
                      " not finite");
    lay_out();
}

void image_window::set_pixel_nm(double pixel_nm)
{
    if (std::exchange(facts_.pixel_nm, pixel_nm) != pixel_nm) view_changed();
}

void image_window::add_histogram()
{
    has_strip_ = true;
    lay_out();
}

void image_window::add_plot(double height, std::function<picture(int width, int height, double letters)> paint)
{
    plot_ = std::move(paint);
    plot_letters_ = height;
    lay_out();
}

void image_window::refresh_plot()
{
    strip_is_stale_ = true;
    redraw_strip();
}

void image_window::set_title(const std::string& title)
{
    title_ = title;
    show_title();
}

void image_window::say(const std::string& text)
{
    if (status_) status_->say(text);
}

const picture& image_window::shown()
{
    if (!is_refined()) {
        auto picture = source_.wait_for(request(true));
        newest_ = picture.number;
        show_picture(std::move(picture));
    }
    return rendered_.shades;
}

LRESULT image_window::handle_message(UINT message, WPARAM wparam, LPARAM lparam)
{
    if (mouse_input(message, wparam, lparam)) return 0;
    switch (message) {
        case WM_PAINT: return paint(), 0;
        case WM_ERASEBKGND: return 1;  // painting covers the whole area
        case picture_ready: return take_picture(), 0;
        case WM_SIZE: return lay_out(), 0;
        case WM_TIMER:
            if (wparam == rest_timer) return refine(), 0;
            break;
        case WM_KEYDOWN:
            if (key(wparam)) return 0;
            break;
        case WM_KEYUP:
            if (wparam == VK_SPACE) return show_uncorrected(false), 0;
            break;
        case WM_KILLFOCUS: return show_uncorrected(false), 0;
        case WM_SETCURSOR:
            if (LOWORD(lparam) == HTCLIENT && set_cursor()) return TRUE;
            break;
        case WM_CLOSE: return close_ ? close_() : void(), 0;
        case WM_COMMAND:
            if (!view_command(LOWORD(wparam)) && command_) command_(LOWORD(wparam));
            return 0;
        default: break;
    }
    return window::handle_message(message, wparam, lparam);
}

}  // namespace zentrix::host
