#include "numeric/arrays.h"

#include <algorithm>

#include "numeric/atan2.h"
#include "numeric/exp.h"
#include "numeric/log.h"
#include "numeric/pow.h"
#include "numeric/sincos.h"

namespace qorv::numeric {

// `GCC ivdep` says that an element written is read by no later step, which holds in place too.

void sincos(const float* x, float* sine, float* cosine, std::ptrdiff_t count) noexcept
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const sine_cosine both = sincos(x[i]);
        sine[i] = both.sine;
        cosine[i] = both.cosine;
    }
}

void exp(const float* x, float* result, std::ptrdiff_t count) noexcept
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) result[i] = exp(x[i]);
}

void exp2(const float* x, float* result, std::ptrdiff_t count) noexcept
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) result[i] = exp2(x[i]);
}

void log(const float* x, float* result, std::ptrdiff_t count) noexcept
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) result[i] = log(x[i]);
}

void log2(const float* x, float* result, std::ptrdiff_t count) noexcept
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) result[i] = log2(x[i]);
}

void pow(const float* base, const float* exponent, float* result, std::ptrdiff_t count) noexcept
{
    // In one loop the chain from logarithm to power is longer than what a processor looks ahead; two loops are faster.
    constexpr std::ptrdiff_t block = 256;
    double logarithms[block];
    for (std::ptrdiff_t first = 0; first < count; first += block) {
        const std::ptrdiff_t length = std::min(block, count - first);
        const float* const b = base + first;
        const float* const e = exponent + first;
        float* const r = result + first;
        for (std::ptrdiff_t i = 0; i < length; ++i) logarithms[i] = e[i] * log2_of_base(magnitude(b[i]));
#pragma GCC ivdep
        for (std::ptrdiff_t i = 0; i < length; ++i) r[i] = power_of_logarithm(logarithms[i], b[i], e[i]);
    }
}

void atan2(const float* y, const float* x, float* result, std::ptrdiff_t count) noexcept
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) result[i] = atan2(y[i], x[i]);
}

}  // namespace qorv::numeric
