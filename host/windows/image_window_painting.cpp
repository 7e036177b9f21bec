// What an image_window draws: the picture with its annotations, the histogram, the background.
#include "host/windows/image_window.h"

#include <algorithm>
#include <cmath>

#include "host/pictures/pointer_text.h"
#include "host/pictures/zoom.h"

namespace zentrix::host {

namespace {

constexpr char strip_tip[] =
    "How often each value is displayed, and the values that are black and white.\n"
    "Drag one of these limits, or the range between both. Double click: automatic";
constexpr char plot_tip[] =
    "Means over all directions, against the frequency: the transfer function with its zeros (circles) and envelope, "
    "the\n"
    "information limit (dashed), and the power of the diffractogram in a logarithmic scale of its own";

constexpr double letters_at_96_dpi = 13, strip_letters = 4;  // the strip's height in letters

HBRUSH background() { return GetSysColorBrush(COLOR_APPWORKSPACE); }

template <class F>
void timed(std::chrono::duration<double>& spent, F work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    spent += std::chrono::steady_clock::now() - start;
}

}  // namespace

double image_window::letters() const
{
    static const int dots_per_inch = GetDeviceCaps(win32::window_dc{nullptr}.get(), LOGPIXELSY);
    return std::round(letters_at_96_dpi * dots_per_inch / 96);
}

int image_window::strip_height() const
{
    if (plot_) return static_cast<int>(plot_letters_ * letters());
    return has_strip_ && is_grey() ? static_cast<int>(strip_letters * letters()) : 0;
}

int image_window::height_below_picture() const { return strip_height() + (status_ ? status_->height() : 0); }

RECT image_window::picture_area() const
{
    RECT area;
    GetClientRect(handle(), &area);
    area.bottom = std::max(0L, area.bottom - height_below_picture());
    return area;
}

RECT image_window::strip_area() const
{
    const RECT above = picture_area();
    return {0, above.bottom, above.right, above.bottom + strip_height()};
}

histogram_strip image_window::strip() const
{
    if (dragged_strip_) return *dragged_strip_;  // its axis stays until the drag ends
    const RECT area = strip_area();
    return {std::max(1, static_cast<int>(area.right)), strip_height(), 0.85 * letters(), rendered_.histogram.range,
            rendered_.limits};
}

/// After a change of the window's size or of what is below the picture.
void image_window::lay_out()
{
    if (status_) status_->place();
    const RECT area = picture_area();
    map_.resize({source_.width(), source_.height()},
                {std::max(1, static_cast<int>(area.right)), std::max(1, static_cast<int>(area.bottom))});
    strip_is_stale_ = true;
    if (tips_) tips_->explain_area(strip_area(), plot_ ? plot_tip : strip_tip);
    InvalidateRect(handle(), nullptr, FALSE);
    view_changed();
}

/// After a change of zoom, place or annotations.
void image_window::view_changed()
{
    overlay_is_stale_ = true;
    if (status_) status_->zoom(zoom_text(map_.zoom()));
    redraw_picture();
    if (requested_ && !rendered_.is_full) refresh();  // another resolution
}

void image_window::redraw_picture()
{
    picture_is_stale_ = true;
    const RECT area = picture_area();
    InvalidateRect(handle(), &area, FALSE);
    if (strip_is_stale_) redraw_strip();
}

void image_window::redraw_strip()
{
    const RECT strip = strip_area();
    InvalidateRect(handle(), &strip, FALSE);
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
    const RECT area = picture_area();
    if (rendered_.shades.width == 0) {
        RECT client;
        GetClientRect(handle(), &client);
        FillRect(to, &client, background());
        return;
    }
    if (strip_height() > 0) draw_strip(to);
    draw_picture(to);
    const pixel_box seen = map_.visible();
    ExcludeClipRect(to, seen.left, seen.top, seen.right, seen.bottom);
    FillRect(to, &area, background());
}

void image_window::draw_picture(HDC to)
{
    const pixel_box seen = map_.visible();
    if (seen.empty()) return;
    if (picture_is_stale_) {
        if (overlay_is_stale_) make_overlay();
        visible_.resize({seen.width(), seen.height()});
        zoom_part(rendered_.shades, map_.whole(), seen, visible_.pixels());
        overlay_.paint(seen, visible_.pixels());
        picture_is_stale_ = false;
    }
    visible_.draw(to, seen.left, seen.top);
}

void image_window::make_overlay()
{
    overlay_ = {};
    overlay_is_stale_ = false;
    if (!status_ || !annotated_) return;
    if (facts_.is_spectrum)
        add_frequency_rings(overlay_, map_, frequencies_of({source_.width(), source_.height()}, facts_.pixel_nm),
                            letters());
    else
        add_scale_bar(overlay_, map_, facts_.pixel_nm, letters());
    if (!is_grey()) add_phase_wheel(overlay_, map_, letters());
}

void image_window::draw_strip(HDC to)
{
    const RECT area = strip_area();
    if (area.right <= 0) return;
    if (strip_is_stale_) {
        const auto painted = plot_ ? plot_(area.right, area.bottom - area.top, letters())
                                   : strip().paint(rendered_.histogram.counts, rendered_.limits);
        strip_canvas_.resize({painted.width, painted.height});
        zoom(painted, painted.width, painted.height, strip_canvas_.pixels());
        strip_is_stale_ = false;
    }
    strip_canvas_.draw(to, area.left, area.top);
}

}  // namespace zentrix::host
