#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "host/pictures/grey_limits.h"

/// Shades of 8 bits per channel for numbers.
namespace zentrix::host {

enum class palette
{
    grey,
    cyclic,  ///< for phases: phase_colours
    wave     ///< for waves: the phase as colour, the modulus as brightness: wave_colours
};

/// Red, green and blue of the sRGB colour space.
using rgb = std::array<std::uint8_t, 3>;

/// Pixels that are not a number, in grey pictures: vermilion, which people with any colour vision tell from grey (M.
/// Okabe, K. Ito, Color Universal Design, 2008).
constexpr rgb missing_in_grey{213, 94, 0};
/// The same in pictures in colours, which have no other white.
constexpr rgb missing_in_colours{255, 255, 255};

/// Greys from 0 at black to 255 at white; 128 when the limits are equal, 0 for not-a-number.
class grey_scale
{
  public:
    explicit grey_scale(grey_limits limits);
    /// greys  receives a byte for each value
    void shade(std::span<const float> values, std::uint8_t* greys) const;
    /// The same as red, green and blue, with missing_in_grey for not-a-number.
    void shade_marking_missing(std::span<const float> values, std::uint8_t* channels) const;

  private:
    grey_limits limits_;
    double steps_;
};

/// Colours of phases: a circle in the colour space OKLab, so that equal differences of phase are equal differences of
/// colour to the eye: blue at 0, light green at 90, orange at 180, dark magenta at -90 degrees. The circle is inclined
/// by 45 degrees: sines of phases can be read from the lightness, also without colour vision and in black and white.
/// Neighbours at equal distance differ by the same amount in OKLab; in the measure CIEDE2000, the largest difference is
/// less than 1.6 times the smallest. Resolution 0.1 degrees, less than a step of any channel.
/// Source  B. Ottosson, A perceptual color space for image processing (2020)
class phase_colours
{
  public:
    phase_colours();
    /// phases    [rad], any; missing_in_colours where they are not finite
    /// channels  receives red, green and blue for each phase
    void shade(std::span<const float> phases, std::uint8_t* channels) const;

  private:
    std::vector<rgb> colours_;
};

/// Colours of waves. The phase is a colour of constant lightness, on a horizontal circle of OKLab with the hues of
/// phase_colours. The modulus is the brightness, as in a grey picture: from black at 0 to full colours at `brightest`
/// and above. In the measure CIEDE2000, the largest difference of neighbouring phases is less than 1.7 times the
/// smallest.
class wave_colours
{
  public:
    explicit wave_colours(float brightest);
    /// phases    [rad]
    /// moduli    as many; black for all if `brightest` is not positive
    /// channels  receives red, green and blue for each; missing_in_colours where one of both is not a number
    void shade(std::span<const float> phases, std::span<const float> moduli, std::uint8_t* channels) const;

  private:
    double steps_;                               ///< of brightness for a modulus of 1
    std::vector<std::array<float, 3>> colours_;  ///< linear in intensity
    std::vector<float> intensities_;             ///< of the steps of brightness; the full colour has the last
    std::vector<std::uint8_t> levels_;           ///< of a channel, for each intensity
};

}  // namespace zentrix::host
