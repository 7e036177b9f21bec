#pragma once

#include <complex>

#include "lens/aberrations.h"

/// Converts the aberrations of a microscope to the arguments of the wave transfer function `ZXWTFMulDLL`, whose
/// coefficients are scaled to radians and whose zero frequency is at the image centre.
namespace zentrix::lens {

/// Partial coherence of the beam and vibration of the specimen, each as the rms width (standard deviation) of a
/// Gaussian. The rms width is the 1/e half-width divided by sqrt(2), or the full width at half maximum divided by
/// 2.3548.
struct coherence
{
    double focus_spread_nm = 0;
    double convergence_mrad = 0;  ///< of the illumination angle, along each axis
    double vibration_nm = 0;      ///< along each axis

    bool operator==(const coherence&) const = default;
};

/// The factor of the spectrum.
enum class direction
{
    apply,  ///< the aberrations' phase factor exp(-i chi): an ideal wave becomes an aberrated one
    remove  ///< its conjugate: an aberrated wave becomes an ideal one
};

/// Whether the damping envelope of `coherence` is applied. A multiplication that damps cannot undo damping, so
/// `automatic` omits the envelope when aberrations are removed. `on` damps then, too, which suppresses noise at high
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

/// The arguments that multiply a spectrum of width x height pixels, zero frequency at (width / 2, height / 2) in
/// integer division, by the transfer function of `setup`.
///
/// Each coefficient of the aberration function is divided by the divisor of its term and multiplied by 2 pi / lambda.
/// Removal negates the coefficients and nothing else: the phase, with its reference at the centre, changes sign
/// exactly. In an odd size the zero of the function's own angle is half a pixel away from the zero frequency of the
/// spectrum. The tilt compensates for that, so that odd sizes are as exact as even ones.
///
/// Throws  std::invalid_argument naming the quantity: a wavelength or pixel size that is not positive, a negative
///         width, and numbers for which the function would leave the range of a float ("C1 is too large.")
transfer_arguments arguments_for(const optics& setup, int width, int height, direction way,
                                 damping envelope = damping::automatic);

}  // namespace zentrix::lens
