#pragma once

#include "functions/elementwise/powers.h"
#include "numeric/exp.h"
#include "numeric/log.h"
#include "numeric/pow.h"

/// Loops that the compiler vectorises. `Arch` names the instruction set for which the including source is compiled.
namespace qorv::functions {

template <class Arch>
void exp2_simd(const float* a, float* dst, std::ptrdiff_t count)
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) dst[i] = numeric::exp2(a[i]);
}

template <class Arch>
void log2_simd(const float* a, float* dst, std::ptrdiff_t count)
{
    constexpr auto s = static_cast<float>(one_over_log_of_2);
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) dst[i] = numeric::log(a[i]) * s;
}

/// Logarithms of a block first, then their powers: the operations of one power in sequence are more than the processor
/// can reorder, so that one loop over both would be slower.
template <class Arch>
void pow_simd(const float* a, const float* b, float* dst, std::ptrdiff_t count)
{
    constexpr std::ptrdiff_t block = 256;
    double logarithms[block];
    for (; count > 0; a += block, b += block, dst += block, count -= block) {
        const std::ptrdiff_t length = count < block ? count : block;
        for (std::ptrdiff_t i = 0; i < length; ++i)
            logarithms[i] = b[i] * numeric::log2_of_base(numeric::magnitude(a[i]));
#pragma GCC ivdep
        for (std::ptrdiff_t i = 0; i < length; ++i) dst[i] = numeric::power_of_logarithm(logarithms[i], a[i], b[i]);
    }
}

}  // namespace qorv::functions
