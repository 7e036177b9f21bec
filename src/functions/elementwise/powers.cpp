#include "functions/elementwise/powers.h"

#include "numeric/arrays.h"
#include "numeric/log.h"
#include "numeric/pow.h"

#include <cmath>

namespace qorv::functions {
namespace {

float power(float base, float exponent) { return numeric::pow(base, exponent); }
double power(double base, double exponent) { return std::pow(base, exponent); }
float natural_logarithm(float x) { return numeric::log(x); }
double natural_logarithm(double x) { return std::log(x); }

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

void pow_vector(const float* a, const float* b, float* dst, std::ptrdiff_t count) { numeric::pow(a, b, dst, count); }

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
template void log2(const float*, float*, std::ptrdiff_t);
template void log2(const double*, double*, std::ptrdiff_t);

}  // namespace qorv::functions
