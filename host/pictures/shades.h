#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// How numbers become shades of 8 bits a channel.
namespace zentrix::host {

/// How values become shades. `cyclic` is for phases: colours that come round after a full turn, from red at 0 over
/// green at 120 degrees to blue at 240, so that the step from pi to -pi does not show.
enum class palette
{
    grey,
    cyclic
};

/// Black and white of a picture: the 0.1 % and 99.9 % quantiles of the finite values, so that a few wild pixels do not
/// take all the contrast. Equal where they lie closer together than 1e-5 of their size, which is the noise of rounding
/// and no picture; both 0 when no value is finite.
struct grey_limits
{
    float black = 0;
    float white = 0;
};
grey_limits robust_limits(const std::vector<float>& values);

/// Greys from 0 at black to 255 at white; 128 where the two are equal, 0 for what is not a number.
class grey_scale
{
  public:
    explicit grey_scale(grey_limits limits);
    std::uint8_t operator()(float value) const;

  private:
    grey_limits limits_;
    double steps_;
};

/// Three cosines a third of a turn apart: their sum, and so nearly the brightness, is the same for every phase. In tenths
/// of a degree, which is less than a step of any channel.
class colour_wheel
{
  public:
    using colour = std::array<std::uint8_t, 3>;

    colour_wheel();
    /// phase  [rad], any; black where it is not finite
    colour operator()(float phase) const;

  private:
    static constexpr std::size_t steps = 3600;
    std::array<colour, steps> colours_{};
};

}  // namespace zentrix::host
