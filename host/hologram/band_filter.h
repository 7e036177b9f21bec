#pragma once

#include <complex>
#include <cstdint>
#include <optional>
#include <string_view>

#include "host/hologram/find_sideband.h"

namespace zentrix::host {

/// The factor by which the transform is multiplied, by the distance r from the sideband; R is the radius.
enum class filter_shape
{
    disk,     ///< 1, with a flank of half a cosine period that falls to 0 at R
    hann,     ///< (1 + cos(pi r / R)) / 2
    gaussian  ///< exp(-r^2 / (2 (R / 3)^2)), 0 from R
};
/// The words for them: disk, hann, gaussian. Another word than these means disk.
std::string_view name_of(filter_shape shape);
filter_shape shape_named(std::string_view name);

struct band_filter_options
{
    filter_shape shape = filter_shape::disk;
    std::optional<double> radius;  ///< [pixels of the transform along x]; by default half way to the nearest other band
    std::optional<double> flank;   ///< width of the disk's flank [the same]; 0: sharp; by default 12 % of the radius
    bool full_size = false;        ///< the wave has as many pixels as the hologram
};

/// The part of a hologram's transform from which its wave is computed.
struct band_filter
{
    std::ptrdiff_t hologram_width = 0, hologram_height = 0;
    std::ptrdiff_t width = 0, height = 0;  ///< of the wave; the same fraction of both sides
    std::complex<double> carrier;          ///< see sideband::at
    filter_shape shape = filter_shape::disk;
    double radius = 0, flank = 0;  ///< [pixels of the transform along x]

    /// The radius at which the factor is a half.
    double half_radius() const;
};

/// Chooses the filter around a sideband. The sizes are such that the disk just fits, rounded up by "ZXPadSize" to sizes
/// of fast transforms; if the sides of the hologram have few common factors, the wave is larger.
/// Throws  script_error for a radius that reaches the centre of the transform or the other sideband, or that is below 2
///         pixels, and for a flank that is wider than the radius
band_filter choose_filter(engine& engine, const image& hologram, std::complex<double> carrier,
                          const band_filter_options& options);

/// The wave in the sideband: the transform around it is cut out, weighted by "ZXWeight" and transformed back.
/// hologram  float32, two dimensions, contiguous, of the filter's size
/// Returns   complex of two floats; a hologram a (1 + v cos(2 pi carrier r + phi)) gives a v / 2 exp(i phi), times the
///           remaining fraction of a pixel of the carrier
image_ref wave_in_band(engine& engine, const image& hologram, const band_filter& filter);

/// The fraction of a pixel of the carrier that wave_in_band leaves [periods per image], right and down.
std::complex<double> remaining_carrier(const band_filter& filter);

}  // namespace zentrix::host
