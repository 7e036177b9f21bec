#pragma once

#include <complex>
#include <optional>
#include <string>

#include "host/engine/engine.h"

namespace zentrix::host {

/// A sideband in the centred transform of a hologram.
struct sideband
{
    /// Position from the centre of the transform [pixels of the transform, that is, periods per image]: real part to
    /// the right, imaginary part down, to a fraction of a pixel.
    std::complex<double> at;
    /// The peak's modulus over that of its surroundings.
    double height = 0;
    /// The peak's height over that of the next highest peak that does not belong to it; 1: they are alike; 0: the
    /// position was given, and other peaks were not searched.
    double distinction = 0;
    /// Whether it is the highest point within 3 pixels.
    bool is_peak = true;
};

/// Below these, a peak is not taken for a sideband.
inline constexpr double least_height = 5, least_distinction = 1.25;
/// Below this, the choice among the peaks is doubtful.
inline constexpr double doubtful_distinction = 2;

/// Why a sideband is doubtful, without a point at the end; empty if it is not: it is hardly higher than the next peak,
/// or the given position is not that of a peak as high as `least_height`.
std::string doubt_about(const sideband& found);

/// Finds the sideband of a hologram.
///
/// The hologram is freed of pixels that stand out from their neighbours, multiplied by a Hann window and transformed.
/// The power of the transform is smoothed and compared with its surroundings: the median of the ring of the same
/// frequency, and the means along the ray from the centre, on either side of the peak. The centre band falls off along
/// each ray, and streaks of edges run along one; a sideband is higher than both neighbours. Of the two sidebands, the
/// lower one is returned (of two at the same height, the right one), also if `expected` is given in the upper half.
///
/// hologram  float32, two dimensions, contiguous, at least 32 x 32, finite
/// Throws  script_error when the hologram is too small, when no peak is high enough or distinct enough, with what was
///         found, and with the library's message
sideband find_sideband(engine& engine, const image_ref& hologram);

/// The sideband next to `expected`, refined to a fraction of a pixel if a peak is within 2 pixels of it; otherwise
/// `expected` itself. Its height is measured as that of a sideband that is found, its distinction is 0.
/// Throws  script_error when `expected` is not in the transform, or is the centre of it
sideband sideband_at(engine& engine, const image_ref& hologram, std::complex<double> expected);

}  // namespace zentrix::host
