#pragma once

#include <complex>

/// Wave transfer function of an aberrated lens, on a centred spectrum: zero frequency at (nx/2, ny/2), x to the right
/// and y downwards. All arithmetic is single precision and its order is part of the rule, since it fixes the rounding.
/// A complex product is re = a.re*b.re - a.im*b.im, im = a.re*b.im + a.im*b.re, each operation rounded; a product of a
/// complex and a real number multiplies both parts.
namespace qorv::optics {

using complex_float = std::complex<float>;

/// Aberration coefficients, scaled by the caller so that the aberration function comes out in radians. cNM belongs to
/// the term of order N in the angle with M-fold symmetry; M = 0 is real, the others are real and imaginary part.
struct wave_parameters
{
    float c20 = 0;
    complex_float c22;
    float c40 = 0;
    float c60 = 0;
    complex_float c31;
    complex_float c33;
    complex_float c42;
    complex_float c44;
    complex_float c51;
    complex_float c53;
    complex_float c55;
    complex_float c62;
    complex_float c64;
    complex_float c66;
};

/// Complex angle of pixel (x, y): (x/nx - 1/2) + i (y/ny - 1/2), times lambda, divided by step, plus the tilt.
complex_float pixel_angle(int x, int y, int nx, int ny, float lambda, float step, complex_float tilt) noexcept;

/// Aberration function [rad] at the complex angle w with s = |w|^2:
/// c20 s + c40 s^2 + c60 s^3 + re[(c31 s + c51 s^2) w + (c22 + c42 s + c62 s^2) w^2 + (c33 + c53 s) w^3
/// + (c44 + c64 s) w^4 + c55 w^5 + c66 w^6], nested.
float chi(const wave_parameters& c, complex_float w, float s) noexcept;

/// Gradient of the round part of chi (c20, c40, c60) at w, s = |w|^2. The other coefficients do not damp.
complex_float round_gradient(const wave_parameters& c, complex_float w, float s) noexcept;

/// dst = src * env * exp(i (chi(centre) - chi(pixel))), the centre being pixel (nx/2, ny/2) in integer division.
/// src, dst   nx x ny pixels, rows contiguous; dst may be src, other overlaps are not allowed
/// lambda, step  wavelength and pixel size; only their ratio enters the angle, step alone also the vibration
/// c2s        focus spread: half the square of (s - s(centre)) * c2s damps
/// bdiv       beam divergence: half of |gradient - gradient(centre)|^2 bdiv^2 damps
/// vib        vibration: (x - nx/2)^2 2 a^2 + (y - ny/2)^2 2 b^2 damps, a = pi vib / nx / step, b = pi vib / ny / step;
///            the squared offsets are 32-bit integers and wrap beyond 46340 pixels from the centre
/// envelope   false: env = 1; true: env = exp(-sum), the sum limited to 50; a sum that is not a number stays so
/// tilt       angle added to every pixel's angle; the vibration ignores it
/// No value is checked: a zero step gives non-finite pixels. Nothing happens for nx or ny below 1.
/// Sine, cosine and exponential are those of numeric/. Blocks of a row at a time, one loop for each stage; the result
/// has the bits of multiply_plain (where the result is NaN, which NaN is open).
void multiply(const complex_float* src, complex_float* dst, int nx, int ny, const wave_parameters& parameters,
              float lambda, float step, float c2s, float bdiv, float vib, bool envelope, complex_float tilt);

/// The same, pixel by pixel as the rule reads.
void multiply_plain(const complex_float* src, complex_float* dst, int nx, int ny, const wave_parameters& parameters,
                    float lambda, float step, float c2s, float bdiv, float vib, bool envelope, complex_float tilt);

}  // namespace qorv::optics
