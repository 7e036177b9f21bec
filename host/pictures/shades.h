#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "host/pictures/grey_limits.h"

/// Shades of 8 bits per channel for numbers.
namespace zentrix::host {

/// `cyclic` is for phases: red at 0, green at 120 and blue at 240 degrees, without a visible step from pi to -pi.
enum class palette
{
    grey,
    cyclic
};

/// Greys from 0 at black to 255 at white; 128 when the limits are equal, 0 for not-a-number.
class grey_scale
{
  public:
    explicit grey_scale(grey_limits limits);
    /// greys  receives a byte for each value
    void shade(std::span<const float> values, std::uint8_t* greys) const;

  private:
    grey_limits limits_;
    double steps_;
};

/// Colours of phases: three cosines a third of a turn apart. Their sum, and so nearly the brightness, is the same for
/// every phase. Resolution 0.1 degrees, less than a step of any channel.
class colour_wheel
{
  public:
    colour_wheel();
    /// phases    [rad], any; black where they are not finite
    /// channels  receives red, green and blue for each phase
    void shade(std::span<const float> phases, std::uint8_t* channels) const;

  private:
    using colour = std::array<std::uint8_t, 3>;
    static constexpr std::size_t steps = 3600;
    std::array<colour, steps + 1> colours_{};  ///< the last is the first
};

}  // namespace zentrix::host
