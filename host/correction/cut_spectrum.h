#pragma once

#include "host/objects/image.h"

/// Waves at the resolution of the screen: the middle of their spectrum, transformed back, is the wave without the
/// frequencies that the screen cannot show. Spectra are complex of two floats per pixel, contiguous, with the zero
/// frequency at (width / 2, height / 2) in integer division.
namespace zentrix::host {

struct spectrum_size
{
    int width = 0, height = 0;  ///< pixels
    friend bool operator==(const spectrum_size&, const spectrum_size&) = default;
};

/// How a spectrum is cut.
struct spectrum_cut
{
    /// The part that is multiplied by the transfer function. Its sides have the ratio of the whole, because the
    /// function has one pixel size for both axes.
    spectrum_size multiplied;
    /// The part that is transformed, not larger: products of small primes if possible.
    spectrum_size transformed;
    friend bool operator==(const spectrum_cut&, const spectrum_cut&) = default;
};

/// The cut for a picture with `zoom` screen pixels for each pixel of the image; at least one picture pixel for each of
/// the screen. Both parts are the whole if little would be saved.
spectrum_cut cut_for(spectrum_size whole, double zoom);

/// The middle of a spectrum, scaled so that the transform back has the values of the low-passed wave. Its pixel (i, j)
/// is not at the corner of its part of the wave but in the middle: the wave at ((i + 0.5) * whole.width /
/// cut.transformed.width - 0.5), and likewise for j.
/// Returns  an image of size cut.multiplied
/// Throws   script_error if there is not enough memory
image_ref middle_of(const image& spectrum, const spectrum_cut& cut);

/// The middle, as it is.
/// to  any size that is not larger; overwritten
void copy_middle(const image& spectrum, image& to);

}  // namespace zentrix::host
