#pragma once

#include <optional>

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
    sideband band;  ///< of the reference if there is one; doubt_about judges it
    band_filter filter;
    double spacing_pixels = 0;  ///< of the fringes, in pixels of the hologram
    double angle_degrees = 0;   ///< of the carrier, counter-clockwise on the displayed image
    /// Of the fringes of the first plane, 0 to 1: the median. None if they are stronger than the mean, as they
    /// are when a background was subtracted.
    std::optional<double> contrast;
    std::optional<double> reference_contrast;  ///< the same of the reference
    double resolution_pixels = 0;              ///< the finest period that the filter passes by half or more
    std::size_t weak = 0;                      ///< pixels of the wave where the reference is too weak to divide by
    std::size_t replaced = 0;                  ///< outliers in hologram and reference
};

struct reconstruction
{
    image_ref wave;  ///< complex of two floats, two dimensions or three for a stack, with the hologram's scale
    hologram_report report;
};

/// What the hologram of the vacuum gives for all holograms that were recorded with it.
struct vacuum_wave
{
    image_ref wave;  ///< complex of two floats, with the remaining fraction of a pixel of the carrier
    sideband band;
    band_filter filter;
    std::optional<double> contrast;  ///< as in the report
    float median_modulus = 0;
    int exponent = 0;          ///< the wave is that of the recording divided by 2^exponent
    std::size_t replaced = 0;  ///< outliers
};

/// Finds the sideband of the reference, chooses the filter and computes the wave.
/// reference  integers or reals, two dimensions
/// Throws  script_error as reconstruct
vacuum_wave reconstruct_vacuum(engine& engine, const image_ref& reference, const hologram_options& options);

/// Computes the wave of an off-axis hologram.
///
/// hologram   integers or reals, two dimensions; three: a stack of holograms, which share sideband and filter
/// vacuum     from a reference of the same size and with the same options; null: none. The wave is divided by it;
///            where it is weaker than a tenth of its median, the quotient is reduced in proportion to its power, so
///            that it goes to 0 where nothing was measured. Without a reference the carrier is removed to a fraction of
///            a pixel, such that the phase of the larger part of the first plane is flat (phase_ramp), and the wave of
///            each plane is divided by the median of its modulus.
/// Throws  script_error for images of another kind or size, pixels that are not finite or differ too much, no sideband,
///         or a filter that does not fit
reconstruction reconstruct(engine& engine, const image_ref& hologram, const vacuum_wave* vacuum,
                           const hologram_options& options);

}  // namespace zentrix::host
