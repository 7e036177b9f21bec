#include "host/pictures/histogram_strip.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "host/pictures/drawing.h"
#include "host/pictures/font.h"
#include "host/pictures/pointer_text.h"
#include "host/pictures/scale_bar.h"
#include "host/pictures/shades.h"

namespace zentrix::host {

namespace {

constexpr rgb bar_ink{120, 140, 170}, handle_ink{0, 90, 160};

/// With three digits that matter between values of that distance.
std::string value_label(double value, double distance)
{
    const double step = distance > 0 ? round_number_below(distance / 100) : 0.001;
    return step >= 1e-5 && std::abs(value) < 1e6 ? number_label(value, digits_for(step))
                                                 : short_number(static_cast<float>(value));
}

}  // namespace

histogram_strip::histogram_strip(int width, int height, double letters, grey_limits range, grey_limits limits)
    : width_{width},
      height_{height},
      letters_{letters},
      margin_{std::ceil(0.6 * letters)},
      range_{range},
      low_{std::min(range.black, limits.black)},
      high_{std::max(range.white, limits.white)}
{
    if (!(high_ > low_)) high_ = low_ + std::max(1e-6, 1e-3 * std::abs(low_));
}

double histogram_strip::place_of(float value) const
{
    return margin_ + (width_ - 2 * margin_) * (static_cast<double>(value) - low_) / (high_ - low_);
}

float histogram_strip::value_at(double x) const
{
    return static_cast<float>(low_ + (high_ - low_) * (x - margin_) / std::max(1.0, width_ - 2 * margin_));
}

limit_handle histogram_strip::handle_at(double x, grey_limits limits) const
{
    const double black = place_of(limits.black), white = place_of(limits.white), reach = 0.5 * letters_;
    const double to_black = std::abs(x - black), to_white = std::abs(x - white);
    if (std::min(to_black, to_white) <= reach) {
        if (to_black == to_white) return x < black ? limit_handle::black : limit_handle::white;
        return to_black < to_white ? limit_handle::black : limit_handle::white;
    }
    return x > black && x < white ? limit_handle::both : limit_handle::none;
}

grey_limits histogram_strip::dragged(limit_handle handle, grey_limits limits, float from, float to) const
{
    const float least = value_at(1) - value_at(0), moved = to - from;
    switch (handle) {
        case limit_handle::black: return {std::min(limits.black + moved, limits.white - least), limits.white};
        case limit_handle::white: return {limits.black, std::max(limits.white + moved, limits.black + least)};
        case limit_handle::both: return {limits.black + moved, limits.white + moved};
        case limit_handle::none: break;
    }
    return limits;
}

picture histogram_strip::paint(std::span<const std::uint32_t> counts, grey_limits limits) const
{
    drawing on{width_, height_};
    on.fill({0, 0, width_ + 0.0, height_ + 0.0}, white_paper);
    const double ramp = std::round(0.6 * letters_);
    const box bars{0, std::ceil(1.5 * letters_), width_ + 0.0, height_ - ramp - 2};
    draw_bars(on, bars, counts);
    const grey_scale greys{limits};
    for (int x = static_cast<int>(margin_); x < width_ - margin_; ++x) {
        const float value = value_at(x + 0.5);
        std::uint8_t grey = 0;
        greys.shade({&value, 1}, &grey);
        on.fill({x + 0.0, bars.bottom + 1, x + 1.0, height_ - 1.0}, {grey, grey, grey});
    }
    on.frame({margin_ - 0.5, bars.bottom + 0.5, width_ - margin_ + 0.5, height_ - 0.5}, 1, grey_ink);
    draw_handles(on, bars, limits);
    return picture_of(on);
}

void histogram_strip::draw_bars(drawing& on, const box& area, std::span<const std::uint32_t> counts) const
{
    const auto height_of = [](std::uint32_t count) { return std::sqrt(static_cast<double>(count)); };
    double largest = 1;
    for (const auto count : counts) largest = std::max(largest, height_of(count));
    const double left = place_of(range_.black);
    const double each = (place_of(range_.white) - left) / static_cast<double>(counts.size());
    for (std::size_t i = 0; i < counts.size(); ++i) {
        const double from = left + each * static_cast<double>(i);
        const double height = (area.bottom - area.top) * height_of(counts[i]) / largest;
        on.fill({from, area.bottom - height, from + each, area.bottom}, bar_ink);
    }
}

void histogram_strip::draw_handles(drawing& on, const box& bars, grey_limits limits) const
{
    const double black = static_cast<double>(limits.black), white = static_cast<double>(limits.white);
    const std::string texts[] = {value_label(black, white - black), value_label(white, white - black)};
    const double places[] = {place_of(limits.black), place_of(limits.white)};
    const double half = std::max(1.0, std::round(letters_ / 9)) / 2, tip = std::round(0.4 * letters_);
    const double top = bars.top - 0.2 * letters_;
    for (const double place : places) {
        const double x = std::round(place);
        on.fill({x - half, top, x + half, height_ - 1.0}, handle_ink);
        for (double down = 0; down < tip; ++down)
            on.fill({x - tip + down, top + down, x + tip - down, top + down + 1}, handle_ink);
    }
    // Next to each other when the handles are close, too.
    const double widths[] = {text_width(texts[0], letters_), text_width(texts[1], letters_)}, gap = letters_;
    double starts[] = {places[0] - widths[0] / 2, places[1] - widths[1] / 2};
    if (const double overlap = starts[0] + widths[0] + gap - starts[1]; overlap > 0)
        starts[0] -= overlap / 2, starts[1] += overlap / 2;
    starts[1] = std::min(starts[1], width_ - widths[1] - 2);
    starts[0] = std::max(2.0, std::min(starts[0], starts[1] - gap - widths[0]));
    starts[1] = std::max(starts[1], starts[0] + widths[0] + gap);
    const double line = std::round(0.3 * letters_ + capital_height(letters_));
    for (const std::size_t i : {0U, 1U}) on.text({starts[i], line}, letters_, alignment::left, texts[i], black_ink);
}

}  // namespace zentrix::host
