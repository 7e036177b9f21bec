#include "host/pictures/overlay.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

#include "host/pictures/font.h"
#include "host/pictures/legend.h"

namespace zentrix::host {

namespace {

constexpr double halo_opacity = 0.85;

double halo_of(double letters) { return std::max(1.0, letters / 10); }

/// A text on which a halo has been drawn.
drawing label(const std::string& text, double letters)
{
    const double halo = halo_of(letters), edge = std::ceil(halo) + 1;
    drawing drawn{static_cast<int>(std::ceil(text_width(text, letters) + 2 * edge)),
                  static_cast<int>(std::ceil(1.3 * letters + 2 * edge))};
    drawn.text({edge, edge + letters}, letters, alignment::left, text, white_paper);
    drawn.surround(halo, black_ink, halo_opacity);
    return drawn;
}

}  // namespace

void overlay::add(const drawing& drawn, int left, int top)
{
    drawn.for_each_ink([&](int x, int y, rgb ink, float opacity) {
        inked_.push_back({left + x, top + y, ink, opacity});
    });
}

void overlay::paint(const pixel_box& part, std::uint32_t* pixels) const
{
    for (const auto& [x, y, ink, opacity] : inked_) {
        if (!part.contains(x, y)) continue;
        std::uint32_t& pixel = pixels[static_cast<std::ptrdiff_t>(y - part.top) * part.width() + (x - part.left)];
        std::uint32_t mixed = 0;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const auto below = static_cast<float>(pixel >> (16 - 8 * channel) & 255U);
            const float over = below + opacity * (static_cast<float>(ink[channel]) - below);
            mixed = mixed << 8 | static_cast<std::uint32_t>(std::lround(over));
        }
        pixel = mixed;
    }
}

drawing drawing_of_bar(const bar_length& bar, double zoom, double letters, extent limit)
{
    const double length = bar.pixels * zoom, thickness = std::max(3.0, std::round(0.28 * letters));
    const double halo = halo_of(letters), edge = std::ceil(halo) + 1, gap = std::round(0.4 * letters);
    const double across = std::max(length, text_width(bar.label, letters));
    drawing drawn{
        std::min(static_cast<int>(std::ceil(across + 2 * edge)), limit.width),
        std::min(static_cast<int>(std::ceil(2 * edge + capital_height(letters) + gap + thickness)), limit.height)};
    const double middle = edge + across / 2, bottom = drawn.height() - edge;
    drawn.fill({middle - length / 2, bottom - thickness, middle + length / 2, bottom}, white_paper);
    drawn.text({middle, bottom - thickness - gap}, letters, alignment::centre, bar.label, white_paper);
    drawn.surround(halo, black_ink, halo_opacity);
    return drawn;
}

void add_scale_bar(overlay& to, const view_map& map, double pixel_nm, double letters)
{
    const pixel_box seen = map.visible();
    const auto bar = round_bar({pixel_nm, 0, "nm"}, 0.3 * seen.width() / map.zoom());
    if (bar.pixels == 0 || seen.width() < 6 * letters || seen.height() < 4 * letters) return;
    const auto drawn = drawing_of_bar(bar, map.zoom(), letters, {seen.width(), seen.height()});
    const int margin = static_cast<int>(letters / 2);
    to.add(drawn, seen.left + margin, seen.bottom - margin - drawn.height());
}

void add_phase_wheel(overlay& to, const view_map& map, double letters)
{
    const pixel_box seen = map.visible();
    shown_range range;
    range.shades = palette::cyclic;
    auto drawn = legend_of(range, static_cast<int>(std::ceil(7.2 * letters)), letters);
    if (seen.width() < 3 * drawn.width() || seen.height() < 2 * drawn.height()) return;
    drawn.surround(1.5 * halo_of(letters), white_paper, halo_opacity);  // for its dark letters
    const int margin = static_cast<int>(letters / 2);
    to.add(drawn, seen.right - margin - drawn.width(), seen.bottom - margin - drawn.height());
}

frequency_scale frequencies_of(extent spectrum, double pixel_nm)
{
    if (!(pixel_nm > 0)) return {};
    return {1 / (spectrum.width * pixel_nm),
            1 / (spectrum.height * pixel_nm),
            {spectrum.width / 2 + 0.5, spectrum.height / 2 + 0.5}};  // whole numbers: integer division
}

std::vector<double> ring_frequencies(double largest)
{
    std::vector<double> rings;
    if (!(largest > 0) || !std::isfinite(largest)) return rings;
    double step = round_number_below(largest / 5);
    if (step * 5 < 0.98 * largest) step = round_number_below(2.5 * step);  // the next one
    for (int i = 1; i * step <= largest * 1.001; ++i) rings.push_back(i * step);
    return rings;
}

void add_frequency_rings(overlay& to, const view_map& map, const frequency_scale& scale, double letters)
{
    const pixel_box seen = map.visible();
    if (seen.empty() || !(scale.right > 0) || !(scale.down > 0)) return;
    const point zero = map.on_screen(scale.zero), next = map.on_screen({scale.zero.x + 1, scale.zero.y + 1});
    const double across = (next.x - zero.x) / scale.right, down = (next.y - zero.y) / scale.down;  // pixels for 1/nm
    const double edge = std::min(std::max(zero.x - seen.left, seen.right - zero.x) / across,
                                 std::max(zero.y - seen.top, seen.bottom - zero.y) / down);
    drawing drawn{seen.width(), seen.height()};
    struct placed
    {
        drawing text;
        int left, top;
    };
    std::vector<placed> labels;
    for (const double ring : ring_frequencies(edge)) {
        std::vector<point> circle;
        for (int degrees = 0; degrees <= 360; degrees += 3) {
            const double angle = degrees * std::numbers::pi / 180;
            circle.push_back({zero.x - seen.left + ring * across * std::cos(angle),
                              zero.y - seen.top - ring * down * std::sin(angle)});
        }
        drawn.line(circle, 2.5, black_ink, 0.35);
        drawn.line(circle, 1.0, white_paper, 0.75);
        auto text = label(number_label(ring, digits_for(ring)) + " nm\u207b\u00b9", letters);
        const double diagonal = std::numbers::sqrt2 / 2;
        const int left = static_cast<int>(zero.x + ring * across * diagonal) - text.width() / 2;
        const int top = static_cast<int>(zero.y - ring * down * diagonal) - text.height() / 2;
        if (seen.contains(left, top) && seen.contains(left + text.width(), top + text.height()))
            labels.push_back({std::move(text), left, top});
    }
    to.add(drawn, seen.left, seen.top);
    for (const auto& [text, left, top] : labels) to.add(text, left, top);
}

}  // namespace zentrix::host
