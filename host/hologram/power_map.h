#pragma once

#include <cstddef>
#include <vector>

#include "host/engine/engine.h"

namespace zentrix::host {

/// A pixel of a centred transform, from its centre: right and down.
struct pixel_position
{
    std::ptrdiff_t x = 0, y = 0;
};

/// A copy of a hologram prepared for the search of its fringes: outliers are replaced, the mean is subtracted, and a
/// Hann window is multiplied.
/// hologram  float32, two dimensions, contiguous
image_ref tapered_without_outliers(engine& engine, const image_ref& hologram);

/// The smoothed power of an image's transform. Smoothing joins the pixels over which a phase object spreads a sideband.
class power_map
{
  public:
    /// tapered  as tapered_without_outliers returns it
    /// Throws  script_error if the power is beyond single precision
    power_map(engine& engine, const image_ref& tapered);

    std::ptrdiff_t width() const noexcept { return width_; }
    std::ptrdiff_t height() const noexcept { return height_; }

    /// The power at a position, which may be beyond the transform: it is periodic.
    double operator[](pixel_position at) const noexcept;
    /// The frequency of a position in pixels along the longer side, where both sides have their own periods.
    double radius(pixel_position at) const noexcept;
    /// The distance of two positions, as a radius, across the edges of the transform if that is shorter.
    double distance(pixel_position one, pixel_position other) const noexcept;
    /// The radius within which no sideband is searched: fewer than about a dozen fringes separate nothing.
    double centre_band() const noexcept;

    /// The median power of each ring of one pixel, by radius.
    std::vector<double> ring_medians() const;
    /// Whether a position is the highest within 3 pixels.
    bool is_peak(pixel_position at) const noexcept;
    /// The highest position within `reach` pixels along each axis.
    pixel_position highest_near(pixel_position at, std::ptrdiff_t reach) const noexcept;
    /// The power along the ray from the centre through `at`: the mean of the inner or of the outer side, 6 to 16 pixels
    /// from it, whichever is greater.
    double mean_along_ray(pixel_position at) const noexcept;

  private:
    std::ptrdiff_t width_, height_;
    std::vector<float> power_;  // frequency 0 in the middle
};

}  // namespace zentrix::host
