#include "functions/elementwise/powers.h"

#include "numeric/exp.h"
#include "numeric/log.h"
#include "numeric/pow.h"

#include <cmath>

namespace qorv::functions {
namespace {

float power(float base, float exponent) { return numeric::pow(base, exponent); }
double power(double base, double exponent) { return std::pow(base, exponent); }
float power_of_2(float exponent) { return numeric::exp2(exponent); }
double power_of_2(double exponent) { return std::pow(2.0, exponent); }
float natural_logarithm(float x) { return numeric::log(x); }
double natural_logarithm(double x) { return std::log(x); }

}  // namespace

template <class T>
void exp2_plain(const T* a, T* dst, std::ptrdiff_t count)
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) dst[i] = power_of_2(a[i]);
}

template <class T>
void log2_plain(const T* a, T* dst, std::ptrdiff_t count)
{
    constexpr auto s = static_cast<T>(one_over_log_of_2);
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) dst[i] = natural_logarithm(a[i]) * s;
}

template <class T>
void pow_plain(const T* a, const T* b, T* dst, std::ptrdiff_t count)
{
    for (std::ptrdiff_t i = 0; i < count; ++i) dst[i] = power(a[i], b[i]);
}

namespace {

template <class T>
constexpr dm::variant<one_source<T>> exp2_rows[] = {{"plain", dm::cpu::none, exp2_plain<T>}};
template <>
constexpr dm::variant<one_source<float>> exp2_rows<float>[] = {{"avx2", dm::cpu::avx2, exp2_simd<xsimd::avx2>},
                                                               {"plain", dm::cpu::none, exp2_plain<float>}};

template <class T>
constexpr dm::variant<one_source<T>> log2_rows[] = {{"plain", dm::cpu::none, log2_plain<T>}};
template <>
constexpr dm::variant<one_source<float>> log2_rows<float>[] = {{"avx2", dm::cpu::avx2, log2_simd<xsimd::avx2>},
                                                               {"plain", dm::cpu::none, log2_plain<float>}};

template <class T>
constexpr dm::variant<two_sources<T>> pow_rows[] = {{"plain", dm::cpu::none, pow_plain<T>}};
template <>
constexpr dm::variant<two_sources<float>> pow_rows<float>[] = {{"avx2", dm::cpu::avx2, pow_simd<xsimd::avx2>},
                                                               {"sse2", dm::cpu::sse2, pow_simd<xsimd::sse2>},
                                                               {"plain", dm::cpu::none, pow_plain<float>}};

}  // namespace

template <class T>
dm::variants<one_source<T>> exp2_variants()
{
    return exp2_rows<T>;
}

template <class T>
dm::variants<one_source<T>> log2_variants()
{
    return log2_rows<T>;
}

template <class T>
dm::variants<two_sources<T>> pow_variants()
{
    return pow_rows<T>;
}

template one_source<float> exp2_plain<float>;
template one_source<float> log2_plain<float>;
template two_sources<float> pow_plain<float>;
template dm::variants<one_source<float>> exp2_variants<float>();
template dm::variants<one_source<float>> log2_variants<float>();
template dm::variants<two_sources<float>> pow_variants<float>();
template one_source<double> exp2_plain<double>;
template one_source<double> log2_plain<double>;
template two_sources<double> pow_plain<double>;
template dm::variants<one_source<double>> exp2_variants<double>();
template dm::variants<one_source<double>> log2_variants<double>();
template dm::variants<two_sources<double>> pow_variants<double>();

}  // namespace qorv::functions
