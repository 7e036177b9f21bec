#pragma once

#include <complex>
#include <cstddef>
#include <vector>

#include "host/estimation/estimate.h"

namespace zentrix::host {

/// The spectrum of a wave, with what the wave shows of its noise and its edges.
struct wave_spectrum
{
    std::ptrdiff_t width = 0, height = 0;
    double pixel_nm = 0;
    std::vector<std::complex<float>> values;  ///< zero frequency at (width / 2, height / 2); divided by the number of
                                              ///< pixels and the mean modulus of the wave
    double noise = 0;  ///< rms of the complex noise of a pixel, if it were white up to the corners of the
                       ///< spectrum, in units of the mean modulus
    double signal_resolution =
        0;                       ///< where the signal sinks below the noise or the rest of it is 0.5 %, but not beyond
                                 ///< the circle that the wave was filtered by [1/nm]
    double edge_resolution = 0;  ///< the same with 0.1 %: sharp edges have little power at high frequencies
    bool has_signal = true;      ///< false if the signal sinks below the noise within the innermost 8 frequencies
    bool edges_meet = true;      ///< false for a part of a larger wave: opposite edges differ
    double scattered = 0;        ///< rms of the wave without its mean and noise, in units of the mean modulus

    double nyquist() const { return 0.5 / pixel_nm; }  ///< [1/nm]
};

/// region  in the wave
/// Throws  std::invalid_argument for a wave that is zero or not finite; std::bad_alloc
wave_spectrum spectrum_of(const image& wave, const pixel_region& region, double pixel_nm);

}  // namespace zentrix::host
