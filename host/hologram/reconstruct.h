#pragma once

#include <optional>
#include <vector>

#include "host/hologram/band_filter.h"
#include "host/hologram/find_sideband.h"

/// Waves from off-axis holograms. docs/holograms.md explains the method and its limits.
namespace zentrix::host {

enum class sideband_choice
{
    lower,  ///< the one in the lower half of the centred transform, or to the right if both are at the same height
    upper   ///< the other one, whose wave is the complex conjugate
};

struct hologram_options
{
    sideband_choice which = sideband_choice::lower;
    std::optional<std::complex<double>> at;  ///< near this position instead; see sideband::at
    band_filter_options filter;
    bool despike = false;  ///< replace outliers of hologram and reference
};

struct hologram_report
{
    sideband band;  ///< of the reference if there is one
    band_filter filter;
    double spacing_pixels = 0;                 ///< of the fringes, in pixels of the hologram
    double angle_degrees = 0;                  ///< of the carrier, counter-clockwise on the displayed image
    double contrast = 0;                       ///< of the first plane's fringes, 0 to 1: the median over the image
    std::optional<double> reference_contrast;  ///< the same of the reference
    double resolution_pixels = 0;              ///< the finest period that the filter passes by half or more
    std::size_t weak = 0;                      ///< pixels of the wave where the reference is too weak to divide by
    std::size_t replaced = 0;                  ///< outliers in hologram and reference
    bool is_doubtful() const { return band.distinction > 0 && band.distinction < doubtful_distinction; }
};

struct reconstruction
{
    image_ref wave;  ///< complex of two floats, two dimensions or three for a stack, with the hologram's scale
    hologram_report report;
};

/// Computes the wave of an off-axis hologram.
///
/// hologram   integers or reals, two dimensions; three: a stack of holograms, which share sideband and filter
/// reference  the hologram of the vacuum, for the whole stack, of the same size; null: none. The wave is divided by the
///            reference's wave; where that is weaker than a tenth of its median, the quotient is reduced in proportion
///            to its power, so that it goes to 0 where nothing was measured. Without a reference the carrier is removed
///            to a fraction of a pixel, such that the phase of the larger part of the first plane is flat
///            (phase_ramp), and the wave of each plane is divided by the median of its modulus.
/// Throws  script_error for images of another kind or size, pixels that are not finite, no sideband, or a filter that
///         does not fit
reconstruction reconstruct(engine& engine, const image_ref& hologram, const image_ref& reference,
                           const hologram_options& options);

}  // namespace zentrix::host
