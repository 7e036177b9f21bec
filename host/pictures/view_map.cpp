#include "host/pictures/view_map.h"

#include <algorithm>
#include <cmath>

namespace zentrix::host {

namespace {

constexpr double largest_zoom = 64;

double fitting_zoom(extent image, extent area)
{
    return std::min(static_cast<double>(area.width) / image.width, static_cast<double>(area.height) / image.height);
}

extent enlarged(extent image, double zoom)
{
    return {std::max(1, static_cast<int>(image.width * zoom + 0.5)),
            std::max(1, static_cast<int>(image.height * zoom + 0.5))};
}

/// Where an image begins that is in the middle of the area if it is smaller, and otherwise covers it.
int allowed(double start, int length, int area)
{
    if (length <= area) return (area - length) / 2;
    return static_cast<int>(std::lround(std::clamp(start, static_cast<double>(area - length), 0.0)));
}

}  // namespace

extent fitted(extent image, extent area) { return enlarged(image, fitting_zoom(image, area)); }

void view_map::resize(extent image, extent area)
{
    const bool same_image = image.width == image_.width && image.height == image_.height;
    const point middle = in_image(middle_of_area());
    image_ = image;
    area_ = area;
    if (fitted_ || !same_image) return fit();
    place(area.width / 2.0 - middle.x * zoom_, area.height / 2.0 - middle.y * zoom_);
}

void view_map::fit()
{
    fitted_ = true;
    zoom_ = fitting_zoom(image_, area_);
    place(0, 0);
}

void view_map::place(double left, double top)
{
    const extent size = enlarged(image_, zoom_);
    whole_.left = allowed(left, size.width, area_.width);
    whole_.top = allowed(top, size.height, area_.height);
    whole_.right = whole_.left + size.width;
    whole_.bottom = whole_.top + size.height;
}

void view_map::set_zoom(double zoom, point fixed)
{
    const double fitting = fitting_zoom(image_, area_);
    const point kept = in_image(fixed);
    zoom_ = std::clamp(zoom, std::min(1.0, fitting), std::max(largest_zoom, fitting));
    fitted_ = false;
    place(fixed.x - kept.x * zoom_, fixed.y - kept.y * zoom_);
}

void view_map::step(int steps, point fixed)
{
    constexpr double tolerance = 1e-6;  // a zoom that is a step by its formula counts as one
    const double now = 2 * std::log2(zoom_);
    const double next = steps > 0 ? std::floor(now + tolerance) + steps : std::ceil(now - tolerance) + steps;
    set_zoom(std::exp2(next / 2), fixed);
}

void view_map::pan(int right, int down)
{
    const int left = whole_.left, top = whole_.top;
    place(left + right, top + down);
    if (whole_.left != left || whole_.top != top) fitted_ = false;
}

pixel_box view_map::visible() const
{
    return {std::max(0, whole_.left), std::max(0, whole_.top), std::min(area_.width, whole_.right),
            std::min(area_.height, whole_.bottom)};
}

point view_map::on_screen(point in_image) const
{
    return {whole_.left + in_image.x * whole_.width() / image_.width,
            whole_.top + in_image.y * whole_.height() / image_.height};
}

point view_map::in_image(point on_screen) const
{
    return {(on_screen.x - whole_.left) * image_.width / whole_.width(),
            (on_screen.y - whole_.top) * image_.height / whole_.height()};
}

std::optional<pixel_place> view_map::pixel_at(int x, int y) const
{
    if (!visible().contains(x, y)) return std::nullopt;
    const point place = in_image({x + 0.5, y + 0.5});
    return pixel_place{static_cast<std::uint32_t>(std::clamp(static_cast<int>(place.x), 0, image_.width - 1)),
                       static_cast<std::uint32_t>(std::clamp(static_cast<int>(place.y), 0, image_.height - 1))};
}

}  // namespace zentrix::host
