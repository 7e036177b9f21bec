#pragma once

#include <string>

#include "host/objects/image.h"
#include "host/pictures/picture.h"
#include "lens/contrast_profile.h"

namespace zentrix::program {

/// What the figure of a transfer function shows.
struct transfer_function
{
    lens::transfer_arguments arguments;
    double limit = 0;                ///< largest frequency along an axis, 1 / (2 pixels) [1/nm]
    int size = 0;                    ///< of the image, along both axes [pixels]
    host::image_ref square;          ///< float32, size x size, zero frequency at (size / 2, size / 2)
    lens::contrast_profile profile;  ///< up to `limit`
    std::string title;

    double distance() const { return 2 * limit / size; }
    /// Of a pixel [1/nm], real part right, imaginary part up.
    std::complex<double> frequency(int x, int y) const
    {
        return {(x - size / 2) * distance(), (size / 2 - y) * distance()};
    }
};

/// The square in greys from -1 to 1, light blue where it is undersampled, and the profile with the envelope, zeros and
/// information limit. It has 512 pixels along the square's side, or `size` up to 2048.
host::picture paint(const transfer_function& shown);

/// A frequency with its spacing: "4.21 nm⁻¹ (0.237 nm)".
std::string with_spacing(double frequency);

}  // namespace zentrix::program
