#include "numeric/exp.h"
#include "numeric/sincos.h"
#include "optics/wave_transfer_terms.h"

#include <algorithm>
#include <cstddef>
#include <vector>

// Without intrinsics: a loop per stage over small buffers is all that the compiler needs to vectorise.

namespace qorv::optics {
namespace {

constexpr int block = 256;  // pixels; the buffers stay in the first-level cache

/// One number for each pixel of a block.
struct alignas(16) lane
{
    float values[block];
};

/// Parts of the angle and of the vibration term that depend on one coordinate only.
struct axis
{
    std::vector<float> angle;
    std::vector<float> vibration;

    axis(int size, const sampling& at, float tilt, float vib)
    {
        const auto count = static_cast<std::size_t>(std::max(size, 0));
        angle.reserve(count);
        vibration.reserve(count);
        for (int i = 0; i < size; ++i) {
            angle.push_back(angle_along(i, size, at, tilt));
            vibration.push_back(vibration_along(i, size, at, vib));
        }
    }
};

// The stages copy their parameters: stores to the buffers could alias a reference.

void find_phases(const float* angle_x, float angle_y, int count, const aberrations& coefficients, float chi0,
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
void find_sines_and_cosines(lane& phase, lane& sine, int count) noexcept
{
    for (int i = 0; i < count; ++i) {
        const numeric::sine_cosine turn = numeric::sincos(phase.values[i]);
        phase.values[i] = turn.cosine;
        sine.values[i] = turn.sine;
    }
}

struct row_damping
{
    envelope width;
    aberrations lens;
    centre_values centre;
    float angle_y, vibration_y;
};

void find_envelope(const float* angle_x, const float* vibration_x, int count, const row_damping& parameters,
                   lane& env) noexcept
{
    const row_damping row = parameters;
    const float yy = row.angle_y * row.angle_y;
    for (int i = 0; i < count; ++i) {
        const float s = angle_x[i] * angle_x[i] + yy;
        env.values[i] = -damping_exponent(row.width, row.lens, row.centre, {angle_x[i], row.angle_y}, s,
                                          vibration_x[i] + row.vibration_y);
    }
    for (int i = 0; i < count; ++i) env.values[i] = numeric::exp(env.values[i]);
}

void scale(lane& values, const lane& by, int count) noexcept
{
    for (int i = 0; i < count; ++i) values.values[i] *= by.values[i];
}

/// Real and imaginary parts are interleaved. src may equal dst.
void multiply(const float* src, float* dst, const lane& cosine, const lane& sine, int count) noexcept
{
#pragma GCC ivdep
    for (int i = 0; i < count; ++i) {
        const complex_float result =
            numeric::product(complex_float{src[2 * i], src[2 * i + 1]}, {cosine.values[i], sine.values[i]});
        dst[2 * i] = result.real();
        dst[2 * i + 1] = result.imag();
    }
}

}  // namespace

void apply_wave_transfer_blocked(const complex_float* src, complex_float* dst, const sampling& at,
                                 const aberrations& lens, const std::optional<envelope>& damping)
{
    const envelope width = damping.value_or(envelope{});
    const axis along_x{at.nx, at, at.tilt.real(), width.vib};
    const axis along_y{at.ny, at, at.tilt.imag(), width.vib};
    const centre_values centre = values_at_centre(at, lens);
    lane cosine, sine, env;
    for (int y = 0; y < at.ny; ++y) {
        const auto row = static_cast<std::size_t>(y);
        const row_damping damp{width, lens, centre, along_y.angle[row], along_y.vibration[row]};
        for (int x = 0; x < at.nx; x += block) {
            const int count = std::min(block, at.nx - x);
            const float* const angle_x = along_x.angle.data() + x;
            find_phases(angle_x, along_y.angle[row], count, lens, centre.chi, cosine);
            find_sines_and_cosines(cosine, sine, count);
            if (damping) {
                find_envelope(angle_x, along_x.vibration.data() + x, count, damp, env);
                scale(cosine, env, count);
                scale(sine, env, count);
            }
            const std::ptrdiff_t first = std::ptrdiff_t{y} * at.nx + x;
            multiply(reinterpret_cast<const float*>(src + first), reinterpret_cast<float*>(dst + first), cosine, sine,
                     count);
        }
    }
}

}  // namespace qorv::optics
