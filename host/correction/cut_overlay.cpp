#include "host/correction/cut_overlay.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace zentrix::host {

picture paint_cuts(const image& phase, std::span<const std::uint8_t> cuts)
{
    using colour = std::array<std::uint8_t, 3>;
    constexpr colour at_cut{230, 30, 30}, left_out{40, 90, 200};
    constexpr auto half_turn = static_cast<float>(std::numbers::pi);
    picture greys;
    paint_picture({phase, display_mode::real, palette::grey, {-half_turn, half_turn}}, greys);

    picture overlay{greys.width, greys.height, 3, std::vector<std::uint8_t>(3 * cuts.size())};
    const auto* const values = static_cast<const float*>(phase.data());
    for (std::size_t i = 0; i < cuts.size(); ++i) {
        const std::uint8_t grey = greys.bytes[i];
        const colour shown = cuts[i] != 0 ? at_cut : !std::isfinite(values[i]) ? left_out : colour{grey, grey, grey};
        std::ranges::copy(shown, &overlay.bytes[3 * i]);
    }
    return overlay;
}

}  // namespace zentrix::host
