#include <cstddef>
#include <cstdint>

#include "numeric/exp.h"
#include "numeric/sincos.h"
#include "optics/wave_transfer.h"

namespace qorv::optics {
namespace {

// Written out: the library's operator also recovers infinities from NaN products, which no pixel needs.
complex_float product(complex_float a, complex_float b) noexcept
{
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

float squared_modulus(complex_float w) noexcept { return w.real() * w.real() + w.imag() * w.imag(); }

/// Square of a pixel offset in 32 bits, wrapping like the machine's multiplication.
float squared_offset(int offset) noexcept
{
    const auto bits = static_cast<std::uint32_t>(offset);
    return static_cast<float>(static_cast<std::int32_t>(bits * bits));
}

}  // namespace

complex_float pixel_angle(int x, int y, int nx, int ny, float lambda, float step, complex_float tilt) noexcept
{
    const float u = static_cast<float>(x) / static_cast<float>(nx) - 0.5f;
    const float v = static_cast<float>(y) / static_cast<float>(ny) - 0.5f;
    return {u * lambda / step + tilt.real(), v * lambda / step + tilt.imag()};
}

float chi(const wave_parameters& c, complex_float w, float s) noexcept
{
    const float round = (c.c20 + (c.c40 + c.c60 * s) * s) * s;
    const complex_float a = product(c.c55 + product(c.c66, w), w);
    const complex_float b = product(c.c44 + c.c64 * s + a, w);
    const complex_float three = product(c.c33 + c.c53 * s + b, w);
    const complex_float two = product(c.c22 + (c.c42 + c.c62 * s) * s + three, w);
    const complex_float one = product((c.c31 + c.c51 * s) * s + two, w);
    return round + one.real();
}

complex_float round_gradient(const wave_parameters& c, complex_float w, float s) noexcept
{
    return (2.0f * c.c20 + (4.0f * c.c40 + 6.0f * c.c60 * s) * s) * w;
}

void multiply_plain(const complex_float* src, complex_float* dst, int nx, int ny, const wave_parameters& parameters,
                    float lambda, float step, float c2s, float bdiv, float vib, bool envelope, complex_float tilt)
{
    constexpr float pi = 3.1415927f;
    const int cx = nx / 2;
    const int cy = ny / 2;
    const complex_float w0 = pixel_angle(cx, cy, nx, ny, lambda, step, tilt);
    const float s0 = squared_modulus(w0);
    const float chi0 = chi(parameters, w0, s0);
    const complex_float gradient0 = round_gradient(parameters, w0, s0);
    const float a = pi * vib / static_cast<float>(nx) / step;
    const float b = pi * vib / static_cast<float>(ny) / step;

    for (int y = 0; y < ny; ++y)
        for (int x = 0; x < nx; ++x) {
            const complex_float w = pixel_angle(x, y, nx, ny, lambda, step, tilt);
            const float s = squared_modulus(w);
            const float phase = chi0 - chi(parameters, w, s);
            float env = 1.0f;
            if (envelope) {
                const float gradient = squared_modulus(round_gradient(parameters, w, s) - gradient0);
                const float divergence = gradient * (bdiv * bdiv) / 2.0f;
                const float defocus = s * c2s - s0 * c2s;
                const float focus_spread = defocus * defocus / 2.0f;
                const float vibration =
                    squared_offset(x - cx) * (2.0f * (a * a)) + squared_offset(y - cy) * (2.0f * (b * b));
                const float exponent = divergence + focus_spread + vibration;
                env = numeric::exp(-(50.0f < exponent ? 50.0f : exponent));
            }
            const numeric::sine_cosine turn = numeric::sincos(phase);
            const std::ptrdiff_t i = std::ptrdiff_t{y} * nx + x;
            dst[i] = product(src[i], {env * turn.cosine, env * turn.sine});
        }
}

}  // namespace qorv::optics
