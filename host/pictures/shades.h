#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

/// Shades of 8 bits per channel for numbers.
namespace zentrix::host {

/// `cyclic` is for phases: red at 0, green at 120 and blue at 240 degrees, without a visible step from pi to -pi.
enum class palette
{
    grey,
    cyclic
};

/// The values shown as black and as white.
struct grey_limits
{
    float black = 0;
    float white = 0;
};

/// Passes all values to its argument, in one part or several. May be called more than once.
using value_source = std::function<void(const std::function<void(std::span<const float>)>& use)>;

/// The 0.1 % and 99.9 % quantiles of the finite values, so that a few outliers do not take all the contrast. Equal when
/// they differ by less than 1e-5 of their magnitude, which is rounding noise; both 0 when no value is finite.
/// Reads the values twice; needs about 1.5 MB, however many values there are.
grey_limits robust_limits(const value_source& values);

/// Greys from 0 at black to 255 at white; 128 when the limits are equal, 0 for not-a-number.
class grey_scale
{
  public:
    explicit grey_scale(grey_limits limits);
    std::uint8_t operator()(float value) const;

  private:
    grey_limits limits_;
    double steps_;
};

/// Colours of phases: three cosines a third of a turn apart. Their sum, and so nearly the brightness, is the same for
/// every phase. Resolution 0.1 degrees, less than a step of any channel.
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
