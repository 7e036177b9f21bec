#pragma once

#include "numeric/complex.h"
#include "numeric/instruction_set.h"
#include "optics/wave_transfer_row.h"

#include <cstdint>

/// Terms of the wave transfer function at one pixel, shared by all variants. Inline, so that loops over them vectorise.
namespace qorv::optics {

inline namespace ZENTRIX_INSTRUCTION_SET {

/// One part of a pixel's complex angle.
inline float angle_along(int index, int size, const sampling& at, float tilt) noexcept
{
    const float u = static_cast<float>(index) / static_cast<float>(size) - 0.5f;
    return u * at.lambda / at.step + tilt;
}

/// One axis' part of the vibration term.
inline float vibration_along(int index, int size, const sampling& at, float vib) noexcept
{
    const float a = 3.1415927f * vib / static_cast<float>(size) / at.step;
    // Squared in 32 bits; wraps beyond 46340 pixels from the centre.
    const auto offset = static_cast<std::uint32_t>(index - size / 2);
    return static_cast<float>(static_cast<std::int32_t>(offset * offset)) * (2.0f * (a * a));
}

inline float squared_modulus(complex_float w) noexcept { return w.real() * w.real() + w.imag() * w.imag(); }

/// Aberration function [rad] at the complex angle w with s = |w|^2, nested to fix the rounding:
/// c20 s + c40 s^2 + c60 s^3 + re[(c31 s + c51 s^2) w + (c22 + c42 s + c62 s^2) w^2 + (c33 + c53 s) w^3
/// + (c44 + c64 s) w^4 + c55 w^5 + c66 w^6]
inline float chi(const aberrations& c, complex_float w, float s) noexcept
{
    using numeric::product;
    const float round = (c.c20 + (c.c40 + c.c60 * s) * s) * s;
    const complex_float five = product(c.c55 + product(c.c66, w), w);
    const complex_float four = product(c.c44 + product(c.c64, s) + five, w);
    const complex_float three = product(c.c33 + product(c.c53, s) + four, w);
    const complex_float two = product(c.c22 + product(c.c42 + product(c.c62, s), s) + three, w);
    const complex_float one = product(product(c.c31 + product(c.c51, s), s) + two, w);
    return round + one.real();
}

/// Gradient of the round part of chi. The other coefficients do not damp.
inline complex_float round_gradient(const aberrations& c, complex_float w, float s) noexcept
{
    return numeric::product(w, 2.0f * c.c20 + (4.0f * c.c40 + 6.0f * c.c60 * s) * s);
}

inline centre_values values_at_centre(const sampling& at, const aberrations& lens) noexcept
{
    const complex_float w{angle_along(at.nx / 2, at.nx, at, at.tilt.real()),
                          angle_along(at.ny / 2, at.ny, at, at.tilt.imag())};
    const float s = squared_modulus(w);
    return {s, chi(lens, w, s), round_gradient(lens, w, s)};
}

/// Exponent of the envelope: the sum of the three terms, at most 50. A sum that is NaN stays NaN.
inline float damping_exponent(const envelope& width, const aberrations& lens, const centre_values& centre,
                              complex_float w, float s, float vibration) noexcept
{
    const float gradient = squared_modulus(round_gradient(lens, w, s) - centre.gradient);
    const float divergence = gradient * (width.bdiv * width.bdiv) / 2.0f;
    const float defocus = s * width.c2s - centre.s * width.c2s;
    const float exponent = divergence + defocus * defocus / 2.0f + vibration;
    return 50.0f < exponent ? 50.0f : exponent;
}

}  // namespace ZENTRIX_INSTRUCTION_SET
}  // namespace qorv::optics
