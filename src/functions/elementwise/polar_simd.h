#pragma once

#include "functions/elementwise/polar.h"
#include "numeric/sincos.h"

/// Loops that the compiler vectorises. `Arch` names the instruction set for which the including source is compiled.
namespace qorv::functions {

template <class Arch>
void polar_simd(const float* rho, std::ptrdiff_t rho_step, const float* theta, std::complex<float>* dst,
                std::ptrdiff_t count)
{
    float* const to = reinterpret_cast<float*>(dst);
    const auto store = [to](std::ptrdiff_t i, float modulus, float angle) {
        const numeric::sine_cosine direction = numeric::sincos(angle);
        to[2 * i] = modulus * direction.cosine;
        to[2 * i + 1] = modulus * direction.sine;
    };
    if (rho_step == 0) {
        const float modulus = *rho;
#pragma GCC ivdep
        for (std::ptrdiff_t i = 0; i < count; ++i) store(i, modulus, theta[i]);
    } else {
#pragma GCC ivdep
        for (std::ptrdiff_t i = 0; i < count; ++i) store(i, rho[i], theta[i]);
    }
}

}  // namespace qorv::functions
