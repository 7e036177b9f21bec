#pragma once

#include <complex>

#include "lens/aberrations.h"

/// From a microscope's aberrations to the arguments of the wave transfer function `ZXWTFMulDLL`, which takes its
/// coefficients scaled to radians and its zero frequency at the image centre.
namespace zentrix::lens {

/// The beam's finite coherence and the specimen's unrest, each as the rms width (standard deviation) of a Gaussian.
/// A 1/e half-width divided by sqrt(2), or a full width at half maximum divided by 2.3548, gives the rms width.
struct coherence
{
    double focus_spread_nm = 0;
    double convergence_mrad = 0;  ///< of the illumination's angle, along each axis
    double vibration_nm = 0;      ///< along each axis
};

/// What the spectrum is multiplied with.
enum class direction
{
    apply,  ///< the aberrations' phase factor exp(-i chi): an ideal wave becomes an aberrated one
    remove  ///< its conjugate: an aberrated wave becomes an ideal one
};

/// Whether the damping envelope of `coherence` takes part. Damping cannot be undone by a multiplication that damps, so
/// `automatic` leaves it out when aberrations are removed; `on` damps then too, which quietens noise at high
/// frequencies.
enum class damping
{
    automatic,
    on,
    off
};

struct optics
{
    double wavelength_nm = 0;
    double pixel_nm = 0;  ///< in real space
    aberrations lens;
    coherence spread;
    std::complex<double> tilt_mrad;  ///< of the beam; real part right, imaginary part up on the displayed image
};

/// The arguments of the wave transfer function, in its own units and axes (imaginary part down).
struct transfer_arguments
{
    double lambda = 0, step = 0;
    double c20 = 0;
    std::complex<double> c22;
    double c40 = 0, c60 = 0;
    std::complex<double> c31, c33, c42, c44, c51, c53, c55, c62, c64, c66;
    double c2s = 0, bdiv = 0, vib = 0;
    bool envelope = false;
    std::complex<double> tilt;
};

/// The arguments with which a spectrum of width x height pixels, zero frequency at (width / 2, height / 2) in integer
/// division, is multiplied by the transfer function of `setup`.
///
/// Each coefficient of the aberration function is divided by the divisor of its term and multiplied by 2 pi / lambda.
/// Removing negates the coefficients and nothing else: the phase, its reference at the centre included, changes sign
/// exactly. In an odd size the function's own zero of the angle lies half a pixel beside the spectrum's zero frequency;
/// the tilt makes up for that, so that odd sizes are as right as even ones.
///
/// Throws  std::invalid_argument when wavelength or pixel is not positive and finite or a width of `spread` is negative,
///         and "C1 is too large." for a coefficient beyond 1e30 rad
transfer_arguments arguments_for(const optics& setup, int width, int height, direction way,
                                 damping envelope = damping::automatic);

}  // namespace zentrix::lens
