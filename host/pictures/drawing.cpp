#include "host/pictures/drawing.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/pictures/font.h"

namespace zentrix::host {

namespace {

/// The part of the pixel from i to i + 1 that is between two edges.
double share(int i, double from, double to)
{
    return std::clamp(std::min(to, i + 1.0) - std::max(from, i + 0.0), 0.0, 1.0);
}

struct pixel_range
{
    int begin, end;
};

pixel_range pixels_between(double from, double to, int size)
{
    return {static_cast<int>(std::clamp(std::floor(from), 0.0, static_cast<double>(size))),
            static_cast<int>(std::clamp(std::ceil(to), 0.0, static_cast<double>(size)))};
}

double distance_to_segment(point p, point a, point b)
{
    const double dx = b.x - a.x, dy = b.y - a.y, length2 = dx * dx + dy * dy;
    const double along = length2 == 0 ? 0 : std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length2, 0.0, 1.0);
    return std::hypot(p.x - a.x - along * dx, p.y - a.y - along * dy);
}

}  // namespace

drawing::drawing(int width, int height)
    : width_{width}, height_{height}, shades_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
{}

void drawing::set(int x, int y, rgb ink, double opacity)
{
    if (x < 0 || y < 0 || x >= width_ || y >= height_ || opacity <= 0) return;
    shade& below = at(x, y);
    const auto over = static_cast<float>(std::min(opacity, 1.0));
    const float total = over + below.opacity * (1 - over), part = over / total;
    below.red += part * (static_cast<float>(ink[0]) - below.red);
    below.green += part * (static_cast<float>(ink[1]) - below.green);
    below.blue += part * (static_cast<float>(ink[2]) - below.blue);
    below.opacity = total;
}

void drawing::fill(const box& area, rgb ink, double opacity)
{
    const auto columns = pixels_between(area.left, area.right, width_),
               rows = pixels_between(area.top, area.bottom, height_);
    for (int y = rows.begin; y < rows.end; ++y)
        for (int x = columns.begin; x < columns.end; ++x)
            set(x, y, ink, opacity * share(x, area.left, area.right) * share(y, area.top, area.bottom));
}

void drawing::line(std::span<const point> through, double width, rgb ink, double opacity)
{
    if (through.size() < 2) return;
    const double reach = width / 2 + 1;
    box around{through[0].x, through[0].y, through[0].x, through[0].y};
    for (const point& p : through)
        around = {std::min(around.left, p.x), std::min(around.top, p.y), std::max(around.right, p.x),
                  std::max(around.bottom, p.y)};
    const auto columns = pixels_between(around.left - reach, around.right + reach, width_),
               rows = pixels_between(around.top - reach, around.bottom + reach, height_);
    if (columns.begin >= columns.end || rows.begin >= rows.end) return;
    // A pixel is covered once, where segments meet, too: the nearest segment counts.
    const auto across = static_cast<std::size_t>(columns.end - columns.begin);
    std::vector<double> distances(across * static_cast<std::size_t>(rows.end - rows.begin),
                                  std::numeric_limits<double>::infinity());
    for (std::size_t i = 1; i < through.size(); ++i) {
        const point a = through[i - 1], b = through[i];
        const auto near_x = pixels_between(std::min(a.x, b.x) - reach, std::max(a.x, b.x) + reach, width_),
                   near_y = pixels_between(std::min(a.y, b.y) - reach, std::max(a.y, b.y) + reach, height_);
        for (int y = near_y.begin; y < near_y.end; ++y)
            for (int x = near_x.begin; x < near_x.end; ++x) {
                double& nearest = distances[static_cast<std::size_t>(y - rows.begin) * across +
                                            static_cast<std::size_t>(x - columns.begin)];
                nearest = std::min(nearest, distance_to_segment({x + 0.5, y + 0.5}, a, b));
            }
    }
    const double* distance = distances.data();
    for (int y = rows.begin; y < rows.end; ++y)
        for (int x = columns.begin; x < columns.end; ++x)
            set(x, y, ink, opacity * std::clamp(width / 2 + 0.5 - *distance++, 0.0, 1.0));
}

void drawing::frame(const box& area, double width, rgb ink)
{
    const double half = width / 2;
    const box outer{area.left - half, area.top - half, area.right + half, area.bottom + half};
    fill({outer.left, outer.top, outer.right, area.top + half}, ink);
    fill({outer.left, area.bottom - half, outer.right, outer.bottom}, ink);
    fill({outer.left, area.top + half, area.left + half, area.bottom - half}, ink);
    fill({area.right - half, area.top + half, outer.right, area.bottom - half}, ink);
}

void drawing::text(point at, double size, alignment aligned, std::string_view utf8, rgb ink)
{
    const double width = text_width(utf8, size);
    const double left = at.x - (aligned == alignment::left ? 0 : aligned == alignment::centre ? width / 2 : width);
    const double column = std::floor(left);
    const int base = static_cast<int>(std::lround(at.y));  // letters are sharper on whole rows
    rasterise(utf8, size, left - column, [&](int x, int y, std::uint8_t coverage) {
        set(static_cast<int>(column) + x, base + y, ink, coverage / 255.0);
    });
}

void drawing::rising_text(point at, double size, std::string_view utf8, rgb ink)
{
    const double bottom = at.y + text_width(utf8, size) / 2, row = std::ceil(bottom);
    const int base = static_cast<int>(std::lround(at.x));
    rasterise(utf8, size, row - bottom, [&](int x, int y, std::uint8_t coverage) {
        set(base + y, static_cast<int>(row) - 1 - x, ink, coverage / 255.0);
    });
}

void drawing::paste(const picture& from, int left, int top)
{
    const std::uint8_t* byte = from.bytes.data();
    for (int y = 0; y < from.height; ++y)
        for (int x = 0; x < from.width; ++x, byte += from.channels)
            set(left + x, top + y, from.channels == 1 ? rgb{*byte, *byte, *byte} : rgb{byte[0], byte[1], byte[2]}, 1);
}

void drawing::surround(double width, rgb ink, double opacity)
{
    const int reach = static_cast<int>(std::ceil(width));
    drawing below{width_, height_};
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) {
            double nearest = 0;
            for (int dy = -reach; dy <= reach; ++dy)
                for (int dx = -reach; dx <= reach; ++dx) {
                    if (x + dx < 0 || y + dy < 0 || x + dx >= width_ || y + dy >= height_) continue;
                    const auto there = static_cast<double>(at(x + dx, y + dy).opacity);
                    nearest = std::max(nearest, there * std::clamp(width + 0.5 - std::hypot(dx, dy), 0.0, 1.0));
                }
            below.set(x, y, ink, opacity * nearest);
        }
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) {
            const shade& drawn = at(x, y);
            below.set(x, y, {level(drawn.red), level(drawn.green), level(drawn.blue)},
                      static_cast<double>(drawn.opacity));
        }
    shades_.swap(below.shades_);
}

void drawing::paint_over(int y, std::uint8_t* row) const
{
    const shade* drawn = &shades_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_)];
    for (int x = 0; x < width_; ++x, ++drawn) {
        for (const float part : {drawn->red, drawn->green, drawn->blue}) {
            const auto below = static_cast<float>(*row);
            *row++ = static_cast<std::uint8_t>(std::lround(below + drawn->opacity * (part - below)));
        }
    }
}

picture picture_of(const drawing& drawn)
{
    picture all{drawn.width(), drawn.height(), 3, {}};
    const std::size_t row_bytes = static_cast<std::size_t>(all.width) * 3;
    all.bytes.assign(row_bytes * static_cast<std::size_t>(all.height), 255);
    for (int y = 0; y < all.height; ++y) drawn.paint_over(y, &all.bytes[row_bytes * static_cast<std::size_t>(y)]);
    return all;
}

}  // namespace zentrix::host
