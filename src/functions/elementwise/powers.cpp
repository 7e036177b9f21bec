#include "functions/elementwise/powers.h"

#include "numeric/log.h"
#include "numeric/pow.h"

#include <algorithm>
#include <cmath>

namespace qorv::functions {
namespace {

float power(float base, float exponent) { return numeric::pow(base, exponent); }
double power(double base, double exponent) { return std::pow(base, exponent); }
float natural_logarithm(float x) { return numeric::log(x); }
double natural_logarithm(double x) { return std::log(x); }

/// Logarithms of a block first, then their powers: the operations of one power in sequence are more than the processor
/// can reorder, so that one loop over both would be slower.
void pow_in_blocks(const float* a, const float* b, float* dst, std::ptrdiff_t count)
{
    constexpr std::ptrdiff_t block = 256;
    double logarithms[block];
    for (; count > 0; a += block, b += block, dst += block, count -= block) {
        const std::ptrdiff_t length = std::min(block, count);
        for (std::ptrdiff_t i = 0; i < length; ++i)
            logarithms[i] = b[i] * numeric::log2_of_base(numeric::magnitude(a[i]));
#pragma GCC ivdep
        for (std::ptrdiff_t i = 0; i < length; ++i) dst[i] = numeric::power_of_logarithm(logarithms[i], a[i], b[i]);
    }
}

constexpr double one_over_log_of_2 = 1 / 0.693147180559945309417;

}  // namespace

template <class T>
void exp2(const T* a, T* dst, std::ptrdiff_t count)
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) dst[i] = power(T{2}, a[i]);
}

template <class T>
void pow_plain(const T* a, const T* b, T* dst, std::ptrdiff_t count)
{
    for (std::ptrdiff_t i = 0; i < count; ++i) dst[i] = power(a[i], b[i]);
}

namespace {

template <class T>
constexpr dm::variant<two_sources<T>> rows[] = {{"plain", dm::cpu::none, pow_plain<T>}};
template <>
constexpr dm::variant<two_sources<float>> rows<float>[] = {{"sse2", dm::cpu::sse2, pow_in_blocks},
                                                           {"plain", dm::cpu::none, pow_plain<float>}};

}  // namespace

template <class T>
dm::variants<two_sources<T>> pow_variants()
{
    return rows<T>;
}

template <class T>
void log2(const T* a, T* dst, std::ptrdiff_t count)
{
    constexpr auto s = static_cast<T>(one_over_log_of_2);
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) dst[i] = natural_logarithm(a[i]) * s;
}

template void exp2(const float*, float*, std::ptrdiff_t);
template void exp2(const double*, double*, std::ptrdiff_t);
template void pow_plain(const float*, const float*, float*, std::ptrdiff_t);
template void pow_plain(const double*, const double*, double*, std::ptrdiff_t);
template dm::variants<two_sources<float>> pow_variants<float>();
template dm::variants<two_sources<double>> pow_variants<double>();
template void log2(const float*, float*, std::ptrdiff_t);
template void log2(const double*, double*, std::ptrdiff_t);

}  // namespace qorv::functions
