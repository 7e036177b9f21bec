#include "host/correction/cut_overlay.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace zentrix::host {

namespace {

// Cuts are single pixels or lines one pixel wide: they show on light greys, and in pictures that are not too small.
constexpr int darkest = 140, largest_enlarged = 1024;

}  // namespace

picture paint_cuts(const image& phase, std::span<const std::uint8_t> cuts)
{
    using colour = std::array<std::uint8_t, 3>;
    constexpr colour at_cut{200, 0, 0}, left_out{40, 90, 200};
    constexpr auto half_turn = static_cast<float>(std::numbers::pi);
    picture greys;
    paint_picture({phase, display_mode::real, palette::grey, {-half_turn, half_turn}}, greys);

    const int zoom = std::max(1, largest_enlarged / std::max(greys.width, greys.height));
    picture overlay{greys.width * zoom, greys.height * zoom, 3, {}};
    overlay.bytes.reserve(3 * cuts.size() * static_cast<std::size_t>(zoom * zoom));
    const auto* const values = static_cast<const float*>(phase.data());
    for (int y = 0; y < overlay.height; ++y)
        for (int x = 0; x < overlay.width; ++x) {
            const int i = y / zoom * greys.width + x / zoom;
            const auto grey = static_cast<std::uint8_t>(darkest + greys.bytes[i] * (255 - darkest) / 255);
            const colour shown = cuts[i] != 0                ? at_cut
                                 : !std::isfinite(values[i]) ? left_out
                                                             : colour{grey, grey, grey};
            overlay.bytes.insert(overlay.bytes.end(), shown.begin(), shown.end());
        }
    return overlay;
}

}  // namespace zentrix::host
