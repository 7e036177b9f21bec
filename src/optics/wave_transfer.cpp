#include "optics/wave_transfer.h"

#include "numeric/exp.h"
#include "numeric/sincos.h"
#include "optics/wave_transfer_terms.h"

#include <cstddef>

namespace qorv::optics {

void apply_wave_transfer_plain(const complex_float* src, complex_float* dst, const sampling& at,
                               const aberrations& lens, const std::optional<envelope>& damping)
{
    const centre_values centre = values_at_centre(at, lens);
    for (int y = 0; y < at.ny; ++y)
        for (int x = 0; x < at.nx; ++x) {
            const complex_float w{angle_along(x, at.nx, at, at.tilt.real()), angle_along(y, at.ny, at, at.tilt.imag())};
            const float s = squared_modulus(w);
            const float phase = centre.chi - chi(lens, w, s);
            float env = 1.0f;
            if (damping) {
                const float vibration =
                    vibration_along(x, at.nx, at, damping->vib) + vibration_along(y, at.ny, at, damping->vib);
                env = numeric::exp(-damping_exponent(*damping, lens, centre, w, s, vibration));
            }
            const numeric::sine_cosine turn = numeric::sincos(phase);
            const std::ptrdiff_t i = std::ptrdiff_t{y} * at.nx + x;
            dst[i] = numeric::product(src[i], {env * turn.cosine, env * turn.sine});
        }
}

dm::variants<wave_transfer_kernel> wave_transfer_variants()
{
    static constexpr dm::variant<wave_transfer_kernel> table[] = {
        {"avx2", dm::cpu::avx2, apply_wave_transfer_blocked<xsimd::avx2>},
        {"sse2", dm::cpu::sse2, apply_wave_transfer_blocked<xsimd::sse2>},
        {"plain", dm::cpu::none, apply_wave_transfer_plain}};
    return table;
}

void apply_wave_transfer(const complex_float* src, complex_float* dst, const sampling& at, const aberrations& lens,
                         const std::optional<envelope>& damping)
{
    dm::choose(wave_transfer_variants()).function(src, dst, at, lens, damping);
}

}  // namespace qorv::optics
