#include "host/pictures/legend.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "host/pictures/font.h"
#include "host/pictures/ticks.h"

namespace zentrix::host {

namespace {

void add_missing(drawing& drawn, double left, double bottom, double letters, rgb ink)
{
    const box area{left, bottom - letters, left + letters, bottom};
    drawn.fill(area, ink);
    drawn.frame(area, 1, black_ink);
    drawn.text({left + 1.4 * letters, bottom - (letters - capital_height(letters)) / 2}, letters, alignment::left,
               "NaN", black_ink);
}

drawing bar_of_greys(const shown_range& range, int height, double letters)
{
    const bool has_missing = range.not_a_number > 0;
    const double left = std::round(0.8 * letters), width = std::round(letters), right = left + width;
    const double mark = std::round(0.3 * letters), line = std::max(1.0, std::round(letters / 20));
    const double half = line / 2, bottom = height - half - (has_missing ? std::round(1.8 * letters) : 0);
    const double black = static_cast<double>(range.limits.black), white = static_cast<double>(range.limits.white);
    const auto axis = ticks_between(black, white, static_cast<int>(bottom / (2.2 * letters)));
    const double beyond_texts = right + 2 * mark + widest_label(axis, letters);
    drawing drawn{static_cast<int>(beyond_texts + 1.9 * letters), height};

    const grey_scale greys{range.limits};
    for (int y = 0; y < static_cast<int>(bottom); ++y) {
        const auto value = static_cast<float>(white + (black - white) * (y + 0.5) / bottom);
        std::uint8_t grey = 0;
        greys.shade({&value, 1}, &grey);
        drawn.fill({left, y + 0.0, right, y + 1.0}, {grey, grey, grey});
    }
    drawn.frame({left + half, half, right - half, bottom - half}, line, black_ink);
    for (const auto& [value, label] : axis.ticks) {
        const double part = white > black ? (white - value) / (white - black) : 0.5;
        const double y = half + part * (bottom - 2 * half);
        drawn.fill({right, y - half, right + mark, y + half}, black_ink);
        const double base = std::clamp(y + capital_height(letters) / 2, capital_height(letters) + 1, height - 1.0);
        drawn.text({right + 1.7 * mark, base}, letters, alignment::left, label, black_ink);
    }
    drawn.rising_text({beyond_texts + 1.2 * letters, bottom / 2}, letters, range.quantity + axis.factor, black_ink);
    if (has_missing) add_missing(drawn, left, height - 1.0, letters, missing_in_grey);
    return drawn;
}

/// A ring, or a disc whose brightness grows outwards.
void add_wheel(drawing& drawn, point centre, double radius, bool is_disc)
{
    const phase_colours colours;
    const wave_colours brightness{1};
    const double hole = is_disc ? -1 : 0.5 * radius;
    for (int y = 0; y < drawn.height(); ++y)
        for (int x = 0; x < drawn.width(); ++x) {
            const double dx = x + 0.5 - centre.x, dy = centre.y - y - 0.5, distance = std::hypot(dx, dy);
            const double covered =
                std::clamp(radius + 0.5 - distance, 0.0, 1.0) * std::clamp(distance - hole + 0.5, 0.0, 1.0);
            if (covered == 0) continue;
            const auto phase = static_cast<float>(std::atan2(dy, dx)), modulus = static_cast<float>(distance / radius);
            rgb ink{};
            if (is_disc)
                brightness.shade({&phase, 1}, {&modulus, 1}, ink.data());
            else
                colours.shade({&phase, 1}, ink.data());
            drawn.set(x, y, ink, covered);
        }
}

drawing wheel_of_colours(const shown_range& range, int height, double letters)
{
    const bool is_disc = range.shades == palette::wave;
    const double radius = std::round(2.1 * letters), gap = 0.3 * letters, capital = capital_height(letters);
    const double left = 0.6 * letters + text_width("π", letters) + gap;
    char limit[40];
    std::snprintf(limit, sizeof limit, "0 to %.3g", static_cast<double>(range.limits.white));
    const double note = 0.85 * letters, note_width = is_disc ? text_width(limit, note) : 0;
    const double right = std::max(left + 2 * radius + gap + text_width("0", letters), note_width) + 0.3 * letters;
    drawing drawn{static_cast<int>(std::ceil(right)), height};
    const point centre{left + radius, std::ceil(capital + gap) + radius + 1};
    add_wheel(drawn, centre, radius, is_disc);
    const double middle = centre.y + capital / 2;
    drawn.text({centre.x + radius + gap, middle}, letters, alignment::left, "0", black_ink);
    drawn.text({centre.x - radius - gap, middle}, letters, alignment::right, "π", black_ink);
    drawn.text({centre.x, centre.y - radius - gap}, letters, alignment::centre, "π/2", black_ink);
    const double below = centre.y + radius + gap + capital;
    drawn.text({centre.x, below}, letters, alignment::centre, "\u2212π/2", black_ink);
    if (is_disc) {
        drawn.text({centre.x, below + 1.6 * letters}, note, alignment::centre, "modulus", black_ink);
        drawn.text({centre.x, below + 2.7 * letters}, note, alignment::centre, limit, black_ink);
    }
    if (range.not_a_number > 0) add_missing(drawn, 0.8 * letters, height - 1.0, letters, missing_in_colours);
    return drawn;
}

}  // namespace

drawing legend_of(const shown_range& range, int height, double letters)
{
    return range.shades == palette::grey ? bar_of_greys(range, height, letters)
                                         : wheel_of_colours(range, height, letters);
}

}  // namespace zentrix::host
