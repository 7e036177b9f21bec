#include "host/correction/picture_values.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace zentrix::host {

void show_values(const picture_request& wanted, const std::atomic<bool>& given_up, rendered_picture& shown)
{
    const auto sample = sampled_values(*shown.values, wanted.mode);
    shown.automatic = limits_of(sample, wanted.mode);
    shown.limits = wanted.limits.value_or(shown.automatic);
    shown.histogram = histogram_of(sample, shown.automatic, wanted.mode);
    if (!given_up) paint_picture({*shown.values, wanted.mode, wanted.shades, shown.limits}, shown.shades, &given_up);
}

value_histogram histogram_of(std::span<const float> values, grey_limits automatic, display_mode mode)
{
    value_histogram histogram;
    constexpr auto pi = std::numbers::pi_v<float>;
    constexpr auto largest = std::numeric_limits<float>::max();
    const float half = automatic.white / 2 - automatic.black / 2;  // in parts, which cannot overflow
    const float margin = half > 0 ? half : std::max(1e-3F, std::abs(automatic.black) / 2);
    histogram.range = {std::max(automatic.black - margin, -largest), std::min(automatic.white + margin, largest)};
    if (mode == display_mode::phase)
        histogram.range = {std::max(histogram.range.black, -pi), std::min(histogram.range.white, pi)};
    const auto [black, white] = histogram.range;
    const double bins = static_cast<double>(histogram.counts.size());
    const double per_value = bins / (static_cast<double>(white) - static_cast<double>(black));
    for (const float value : values) {
        if (std::isnan(value)) continue;
        const double bin = (static_cast<double>(value) - static_cast<double>(black)) * per_value;
        ++histogram.counts[static_cast<std::size_t>(std::clamp(bin, 0.0, bins - 1))];
    }
    return histogram;
}

}  // namespace zentrix::host
