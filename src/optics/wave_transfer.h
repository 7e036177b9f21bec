#pragma once

#include "image/processor.h"

#include <complex>
#include <optional>

/// Wave transfer function of an aberrated lens, on a centred spectrum: zero frequency at (nx/2, ny/2), x to the right,
/// y downwards. All arithmetic is single precision, and its order is part of the definition because it fixes the
/// rounding. A complex product is numeric::product; a product of a complex and a real number multiplies both parts.
namespace qorv::optics {

using complex_float = std::complex<float>;

/// Aberration coefficients, scaled by the caller so that the aberration function is in radians. cNM belongs to the term
/// of order N in the angle with M-fold symmetry. Round coefficients (M = 0) are real.
struct aberrations
{
    float c20 = 0;
    complex_float c22{};
    float c40 = 0;
    float c60 = 0;
    complex_float c31{};
    complex_float c33{};
    complex_float c42{};
    complex_float c44{};
    complex_float c51{};
    complex_float c53{};
    complex_float c55{};
    complex_float c62{};
    complex_float c64{};
    complex_float c66{};
};

/// Size of the spectrum and the angles of its pixels: pixel (x, y) has the complex angle
/// ((x/nx - 1/2) + i (y/ny - 1/2)) * lambda / step + tilt. No value is checked: a zero step gives non-finite angles.
struct sampling
{
    int nx = 0;            ///< columns
    int ny = 0;            ///< rows
    float lambda = 0;      ///< wavelength
    float step = 0;        ///< pixel size of the wave, in the unit of lambda
    complex_float tilt{};  ///< beam tilt [rad]; real part along x
};

/// Widths of the partial-coherence envelopes. Each adds a term to the damping exponent; w is the pixel's angle,
/// s = |w|^2, and w0 and s0 are those of the centre pixel.
struct envelope
{
    float c2s = 0;   ///< focus spread: ((s - s0) c2s)^2 / 2
    float bdiv = 0;  ///< beam divergence: |gradient - gradient at w0|^2 bdiv^2 / 2, for the round part of chi
    float vib = 0;   ///< vibration: 2 a^2 (x - nx/2)^2 + 2 b^2 (y - ny/2)^2, a = pi vib / nx / step, b with ny; no tilt
};

/// Multiplies a spectrum by env * exp(i (chi(centre) - chi(pixel))), chi being the aberration function of
/// wave_transfer_terms.h and the centre pixel (nx/2, ny/2) in integer division.
/// src      nx x ny pixels, rows contiguous
/// dst      same shape; may equal src, must not overlap it otherwise. Unchanged when nx or ny is below 1
/// at       size and angles
/// lens     aberration coefficients
/// damping  env = exp(-sum of the three terms, at most 50); without a value, env = 1
/// Throws     std::bad_alloc; dst is unchanged then
/// Exactness  all variants give the same bits, with sine, cosine and exponential of numeric/. Only NaN payloads may
///            differ.
using wave_transfer_kernel = void(const complex_float* src, complex_float* dst, const sampling& at,
                                  const aberrations& lens, const std::optional<envelope>& damping);

/// Pixel by pixel.
wave_transfer_kernel apply_wave_transfer_plain;

/// Blocks of a row at a time, one loop per stage, which the compiler vectorises for the instruction set.
template <class Arch>
wave_transfer_kernel apply_wave_transfer_blocked;

dm::variants<wave_transfer_kernel> wave_transfer_variants();

/// The best variant that the script switch allows.
wave_transfer_kernel apply_wave_transfer;

}  // namespace qorv::optics
