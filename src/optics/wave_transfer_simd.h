#pragma once

#include "numeric/exp.h"
#include "numeric/sincos.h"
#include "optics/wave_transfer_row.h"
#include "optics/wave_transfer_terms.h"

#include <cstddef>

// A loop per stage over small buffers is all that the compiler needs to vectorise. `Arch` in the name of a function is
// the instruction set for which the including source is compiled.

namespace qorv::optics {
inline namespace ZENTRIX_INSTRUCTION_SET {

constexpr int block = 256;  // pixels; the buffers stay in the first-level cache

/// One number for each pixel of a block.
struct alignas(16) lane
{
    float values[block];
};

// The stages copy their parameters: stores to the buffers could alias a reference.

inline void find_phases(const float* angle_x, float angle_y, int count, const aberrations& coefficients, float chi0,
                        lane& phase) noexcept
{
    const aberrations lens = coefficients;
    const float yy = angle_y * angle_y;
    for (int i = 0; i < count; ++i) {
        const float s = angle_x[i] * angle_x[i] + yy;
        phase.values[i] = chi0 - chi(lens, {angle_x[i], angle_y}, s);
    }
}

/// Replaces phases by their cosines and writes the sines.
inline void find_sines_and_cosines(lane& phase, lane& sine, int count) noexcept
{
    for (int i = 0; i < count; ++i) {
        const numeric::sine_cosine turn = numeric::sincos(phase.values[i]);
        phase.values[i] = turn.cosine;
        sine.values[i] = turn.sine;
    }
}

inline void find_envelope(const float* angle_x, const float* vibration_x, int count, const transfer_row& parameters,
                          const envelope& widths, lane& env) noexcept
{
    const transfer_row row = parameters;
    const envelope width = widths;
    const float yy = row.angle_y * row.angle_y;
    for (int i = 0; i < count; ++i) {
        const float s = angle_x[i] * angle_x[i] + yy;
        env.values[i] = -damping_exponent(width, row.lens, row.centre, {angle_x[i], row.angle_y}, s,
                                          vibration_x[i] + row.vibration_y);
    }
    for (int i = 0; i < count; ++i) env.values[i] = numeric::exp(env.values[i]);
}

inline void scale(lane& values, const lane& by, int count) noexcept
{
    for (int i = 0; i < count; ++i) values.values[i] *= by.values[i];
}

/// Real and imaginary parts are interleaved. src may equal dst.
inline void multiply(const float* src, float* dst, const lane& cosine, const lane& sine, int count) noexcept
{
#pragma GCC ivdep
    for (int i = 0; i < count; ++i) {
        const complex_float result =
            numeric::product(complex_float{src[2 * i], src[2 * i + 1]}, {cosine.values[i], sine.values[i]});
        dst[2 * i] = result.real();
        dst[2 * i + 1] = result.imag();
    }
}

}  // namespace ZENTRIX_INSTRUCTION_SET

template <class Arch>
void transfer_row_simd(const complex_float* src, complex_float* dst, int count, const transfer_row& row)
{
    lane cosine, sine, env;
    for (int x = 0; x < count; x += block) {
        const int length = count - x < block ? count - x : block;
        find_phases(row.angle_x + x, row.angle_y, length, row.lens, row.centre.chi, cosine);
        find_sines_and_cosines(cosine, sine, length);
        if (row.damping) {
            find_envelope(row.angle_x + x, row.vibration_x + x, length, row, *row.damping, env);
            scale(cosine, env, length);
            scale(sine, env, length);
        }
        multiply(reinterpret_cast<const float*>(src + x), reinterpret_cast<float*>(dst + x), cosine, sine, length);
    }
}

}  // namespace qorv::optics
