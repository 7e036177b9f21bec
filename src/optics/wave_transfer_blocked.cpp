#include "optics/wave_transfer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "numeric/exp.h"
#include "numeric/sincos.h"

namespace qorv::optics {
namespace {

constexpr int block = 256;  // pixels: the stages' buffers stay in the first cache

/// One number for each pixel of a block.
struct alignas(16) lane
{
    float values[block];
};

/// What depends on x only or on y only, computed as multiply_plain computes it at each pixel.
struct axis
{
    std::vector<float> angle;      ///< part of the pixel's angle along this axis
    std::vector<float> vibration;  ///< part of the vibration exponent
};

axis make_axis(int size, float lambda, float step, float tilt, float vib)
{
    const auto count = static_cast<std::size_t>(size);
    axis result{std::vector<float>(count), std::vector<float>(count)};
    const float a = 3.1415927f * vib / static_cast<float>(size) / step;
    const float scale = 2.0f * (a * a);
    for (int i = 0; i < size; ++i) {
        const float u = static_cast<float>(i) / static_cast<float>(size) - 0.5f;
        const auto offset = static_cast<std::uint32_t>(i - size / 2);
        result.angle[static_cast<std::size_t>(i)] = u * lambda / step + tilt;
        result.vibration[static_cast<std::size_t>(i)] =
            static_cast<float>(static_cast<std::int32_t>(offset * offset)) * scale;
    }
    return result;
}

/// Values at the centre pixel that every pixel refers to.
struct reference
{
    float s;
    float chi;
    complex_float gradient;
};

/// A complex number in two registers; the operators of std::complex guard against overflow and stop the vectoriser.
struct pair
{
    float re;
    float im;
};

pair of(complex_float c) noexcept { return {c.real(), c.imag()}; }
pair operator+(pair a, pair b) noexcept { return {a.re + b.re, a.im + b.im}; }
pair operator*(pair a, float s) noexcept { return {a.re * s, a.im * s}; }
pair operator*(pair a, pair b) noexcept { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }

/// Phases of `count` pixels of one row. The coefficients are copied first: through the reference each store of a phase
/// could change them for all that the compiler knows.
void phases(const float* angle_x, float angle_y, int count, const wave_parameters& c, float chi0, lane& phase) noexcept
{
    const float c20 = c.c20, c40 = c.c40, c60 = c.c60;
    const pair c22 = of(c.c22), c31 = of(c.c31), c33 = of(c.c33), c42 = of(c.c42), c44 = of(c.c44), c51 = of(c.c51),
               c53 = of(c.c53), c55 = of(c.c55), c62 = of(c.c62), c64 = of(c.c64), c66 = of(c.c66);
    const float yy = angle_y * angle_y;
    for (int i = 0; i < count; ++i) {
        const pair w{angle_x[i], angle_y};
        const float s = w.re * w.re + yy;
        const float round = (c20 + (c40 + c60 * s) * s) * s;
        const pair five = (c55 + c66 * w) * w;
        const pair four = (c44 + c64 * s + five) * w;
        const pair three = (c33 + c53 * s + four) * w;
        const pair two = (c22 + (c42 + c62 * s) * s + three) * w;
        const pair one = ((c31 + c51 * s) * s + two) * w;
        phase.values[i] = chi0 - (round + one.re);
    }
}

/// What damps the pixels of one row.
struct damping
{
    float twice_c20, four_c40, six_c60;
    float squared_divergence;
    float c2s;
    reference centre;
};

void envelopes(const float* angle_x, const float* vibration_x, float angle_y, float vibration_y, int count,
               const damping& with, lane& envelope) noexcept
{
    const damping d = with;
    const pair gradient0 = of(d.centre.gradient);
    const float defocus0 = d.centre.s * d.c2s;
    const float yy = angle_y * angle_y;
    for (int i = 0; i < count; ++i) {
        const pair w{angle_x[i], angle_y};
        const float s = w.re * w.re + yy;
        const pair gradient = w * (d.twice_c20 + (d.four_c40 + d.six_c60 * s) * s);
        const float gx = gradient.re - gradient0.re;
        const float gy = gradient.im - gradient0.im;
        const float divergence = (gx * gx + gy * gy) * d.squared_divergence / 2.0f;
        const float defocus = s * d.c2s - defocus0;
        const float exponent = divergence + defocus * defocus / 2.0f + (vibration_x[i] + vibration_y);
        envelope.values[i] = -(50.0f < exponent ? 50.0f : exponent);
    }
    for (int i = 0; i < count; ++i) envelope.values[i] = numeric::exp(envelope.values[i]);
}

/// Phases become the cosines, `sine` their sines.
void sines_and_cosines(lane& phase, lane& sine, int count) noexcept
{
    for (int i = 0; i < count; ++i) {
        const numeric::sine_cosine turn = numeric::sincos(phase.values[i]);
        phase.values[i] = turn.cosine;
        sine.values[i] = turn.sine;
    }
}

void scale(lane& values, const lane& by, int count) noexcept
{
    for (int i = 0; i < count; ++i) values.values[i] *= by.values[i];
}

/// Parts lie in turn, as std::complex guarantees; in place or apart.
void multiply_block(const float* src, float* dst, const lane& cosine, const lane& sine, int count) noexcept
{
#pragma GCC ivdep
    for (int i = 0; i < count; ++i) {
        const pair result = pair{src[2 * i], src[2 * i + 1]} * pair{cosine.values[i], sine.values[i]};
        dst[2 * i] = result.re;
        dst[2 * i + 1] = result.im;
    }
}

}  // namespace

void multiply(const complex_float* src, complex_float* dst, int nx, int ny, const wave_parameters& parameters,
              float lambda, float step, float c2s, float bdiv, float vib, bool envelope, complex_float tilt)
{
    if (nx < 1 || ny < 1) return;
    const axis along_x = make_axis(nx, lambda, step, tilt.real(), vib);
    const axis along_y = make_axis(ny, lambda, step, tilt.imag(), vib);
    const complex_float w0 = pixel_angle(nx / 2, ny / 2, nx, ny, lambda, step, tilt);
    const float s0 = w0.real() * w0.real() + w0.imag() * w0.imag();
    const reference centre{s0, chi(parameters, w0, s0), round_gradient(parameters, w0, s0)};
    const damping with{2.0f * parameters.c20, 4.0f * parameters.c40, 6.0f * parameters.c60, bdiv * bdiv, c2s, centre};

    lane cosine, sine, env;
    for (int y = 0; y < ny; ++y)
        for (int x = 0; x < nx; x += block) {
            const int count = std::min(block, nx - x);
            const float angle_y = along_y.angle[static_cast<std::size_t>(y)];
            phases(&along_x.angle[static_cast<std::size_t>(x)], angle_y, count, parameters, centre.chi, cosine);
            sines_and_cosines(cosine, sine, count);
            if (envelope) {
                envelopes(&along_x.angle[static_cast<std::size_t>(x)], &along_x.vibration[static_cast<std::size_t>(x)],
                          angle_y, along_y.vibration[static_cast<std::size_t>(y)], count, with, env);
                scale(cosine, env, count);
                scale(sine, env, count);
            }
            const std::ptrdiff_t first = std::ptrdiff_t{y} * nx + x;
            multiply_block(reinterpret_cast<const float*>(src + first), reinterpret_cast<float*>(dst + first), cosine,
                           sine, count);
        }
}

}  // namespace qorv::optics
