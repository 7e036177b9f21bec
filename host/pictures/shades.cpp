#include "host/pictures/shades.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zentrix::host {

namespace {

using intensities = std::array<double, 3>;  // of red, green and blue, 0 to 1, linear

struct oklab
{
    double lightness, a, b;
};

intensities linear_srgb(oklab c)
{
    const auto cube = [](double root) { return root * root * root; };
    const double l = cube(c.lightness + 0.3963377774 * c.a + 0.2158037573 * c.b),
                 m = cube(c.lightness - 0.1055613458 * c.a - 0.0638541728 * c.b),
                 s = cube(c.lightness - 0.0894841775 * c.a - 1.2914855480 * c.b);
    return {4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s,
            -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s,
            -0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s};
}

/// The transfer function of sRGB (IEC 61966-2-1).
std::uint8_t channel_of(double intensity)
{
    const double clamped = std::clamp(intensity, 0.0, 1.0);
    const double level = clamped <= 0.0031308 ? 12.92 * clamped : 1.055 * std::pow(clamped, 1 / 2.4) - 0.055;
    return static_cast<std::uint8_t>(std::lround(255 * level));
}

/// Its inverse.
double intensity_of(double level) { return level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4); }

constexpr std::size_t phase_steps = 3600;
constexpr int brightness_steps = 1023, largest_intensity = 65535;

/// Colours on a circle of OKLab around the grey of that lightness. Phase 0 is blue, at a hue of 240 degrees; with the
/// inclination, lightness grows to 90 degrees. Its entry phase_steps is its first again.
std::vector<intensities> circle(double lightness, double radius, double inclination_degrees)
{
    constexpr double degree = std::numbers::pi / 180, hue = 240 * degree;
    std::vector<intensities> colours;
    for (std::size_t i = 0; i <= phase_steps; ++i) {
        const double phase = 2 * std::numbers::pi * static_cast<double>(i % phase_steps) / phase_steps;
        const double u = radius * std::cos(phase), v = radius * std::sin(phase);
        const double level = v * std::cos(inclination_degrees * degree);  // towards green, at 150 degrees
        colours.push_back(
            linear_srgb({lightness + v * std::sin(inclination_degrees * degree),
                         u * std::cos(hue) + level * std::sin(hue), u * std::sin(hue) - level * std::cos(hue)}));
    }
    return colours;
}

/// The entry of a finite phase in a table of phase_steps + 1.
std::size_t step_of(float phase)
{
    const double turns = phase / (2 * std::numbers::pi);
    const bool is_wrapped = std::abs(turns) < 1;  // std::floor is a call
    const double whole = is_wrapped ? (turns < 0 ? -1 : 0) : std::floor(turns);
    return static_cast<std::size_t>(static_cast<int>((turns - whole) * phase_steps + 0.5));
}

}  // namespace

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

void grey_scale::shade_marking_missing(std::span<const float> values, std::uint8_t* channels) const
{
    shade(values, channels);
    for (std::size_t i = values.size(); i-- > 0;) {  // from the end, where the greys are not overwritten yet
        const std::uint8_t grey = channels[i];
        std::ranges::copy(std::isnan(values[i]) ? missing_in_grey : rgb{grey, grey, grey}, channels + 3 * i);
    }
}

// The radii are the largest at which all colours are in the gamut of sRGB, to two digits.
phase_colours::phase_colours()
{
    for (const auto& [red, green, blue] : circle(0.725, 0.148, 45))
        colours_.push_back({channel_of(red), channel_of(green), channel_of(blue)});
}

void phase_colours::shade(std::span<const float> phases, std::uint8_t* channels) const
{
    for (const float phase : phases)
        channels =
            std::ranges::copy(std::isfinite(phase) ? colours_[step_of(phase)] : missing_in_colours, channels).out;
}

wave_colours::wave_colours(float brightest)
    : steps_{brightest > 0 ? static_cast<double>(brightness_steps) / static_cast<double>(brightest) : 0}
{
    for (const auto& [red, green, blue] : circle(0.75, 0.127, 0))
        colours_.push_back({static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue)});
    for (int i = 0; i <= brightness_steps; ++i)
        intensities_.push_back(static_cast<float>(largest_intensity * intensity_of(1.0 * i / brightness_steps)));
    for (int i = 0; i <= largest_intensity; ++i) levels_.push_back(channel_of(1.0 * i / largest_intensity));
}

void wave_colours::shade(std::span<const float> phases, std::span<const float> moduli, std::uint8_t* channels) const
{
    for (std::size_t i = 0; i < phases.size(); ++i) {
        if (!std::isfinite(phases[i]) || std::isnan(moduli[i])) {
            channels = std::ranges::copy(missing_in_colours, channels).out;
            continue;
        }
        const double step =
            steps_ == 0 ? 0 : std::min<double>(static_cast<double>(moduli[i]) * steps_, brightness_steps);
        const float intensity = intensities_[static_cast<std::size_t>(static_cast<int>(step + 0.5))];
        for (const float part : colours_[step_of(phases[i])]) {
            const float clamped = std::clamp(part * intensity, 0.0F, static_cast<float>(largest_intensity));
            *channels++ = levels_[static_cast<std::size_t>(static_cast<int>(clamped + 0.5F))];
        }
    }
}

}  // namespace zentrix::host
