#include "host/pictures/shades.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zentrix::host {

grey_scale::grey_scale(grey_limits limits)
    : limits_{limits},
      // the difference of two floats may overflow in float
      steps_{limits.white > limits.black ? 255 / (static_cast<double>(limits.white) - limits.black) : 0}
{}

void grey_scale::shade(std::span<const float> values, std::uint8_t* greys) const
{
    if (steps_ == 0) {
        std::transform(values.begin(), values.end(), greys,
                       [](float value) { return static_cast<std::uint8_t>(std::isnan(value) ? 0 : 128); });
        return;
    }
    const float black = limits_.black, white = limits_.white;
    const double steps = steps_;
    std::transform(values.begin(), values.end(), greys, [=](float value) {
        const float lifted = value > black ? value : black;  // black also for not-a-number
        const float clamped = lifted < white ? lifted : white;
        const double above = static_cast<double>(clamped) - static_cast<double>(black);
        return static_cast<std::uint8_t>(static_cast<int>(above * steps + 0.5));
    });
}

colour_wheel::colour_wheel()
{
    for (std::size_t i = 0; i <= steps; ++i)
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const double turned = static_cast<double>(i) / steps - static_cast<double>(channel) / 3;
            colours_[i][channel] =
                static_cast<std::uint8_t>(std::lround(127.5 + 127.5 * std::cos(2 * std::numbers::pi * turned)));
        }
}

void colour_wheel::shade(std::span<const float> phases, std::uint8_t* channels) const
{
    for (const float phase : phases) {
        colour shown{};
        if (std::isfinite(phase)) {
            const double turns = phase / (2 * std::numbers::pi);
            const bool is_wrapped = std::abs(turns) < 1;  // std::floor is a call
            const double whole = is_wrapped ? (turns < 0 ? -1 : 0) : std::floor(turns);
            shown = colours_[static_cast<std::size_t>(static_cast<int>((turns - whole) * steps + 0.5))];
        }
        channels = std::ranges::copy(shown, channels).out;
    }
}

}  // namespace zentrix::host
