#include "functions/elementwise/polar.h"

#include "numeric/sincos.h"

#ifdef _WIN32
#include <xsimd/xsimd.hpp>
#else
#include <cmath>
#endif

namespace qorv::functions {
namespace {

template <class T>
struct direction
{
    T cosine, sine;
};

direction<float> towards(float theta)
{
    const numeric::sine_cosine both = numeric::sincos(theta);
    return {both.cosine, both.sine};
}

direction<double> towards(double theta)
{
#ifdef _WIN32
    // The C library uses the x87 instructions, which lose digits near multiples of pi and all digits at 1e9. Both lanes
    // have the same angle because xsimd chooses the reduction for the larger one.
    const auto [sine, cosine] = xsimd::sincos(xsimd::batch<double, xsimd::sse2>(theta));
    return {cosine.get(0), sine.get(0)};
#else
    return {std::cos(theta), std::sin(theta)};
#endif
}

template <class T>
void store(std::complex<T>* dst, std::ptrdiff_t i, T rho, direction<T> along)
{
    T* const parts = reinterpret_cast<T*>(dst + i);
    parts[0] = rho * along.cosine;
    parts[1] = rho * along.sine;
}

}  // namespace

template <class T>
void polar(const T* rho, const T* theta, std::complex<T>* dst, std::ptrdiff_t count)
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) store(dst, i, rho[i], towards(theta[i]));
}

template <class T>
void polar(T rho, const T* theta, std::complex<T>* dst, std::ptrdiff_t count)
{
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) store(dst, i, rho, towards(theta[i]));
}

template void polar(const float*, const float*, std::complex<float>*, std::ptrdiff_t);
template void polar(const double*, const double*, std::complex<double>*, std::ptrdiff_t);
template void polar(float, const float*, std::complex<float>*, std::ptrdiff_t);
template void polar(double, const double*, std::complex<double>*, std::ptrdiff_t);

}  // namespace qorv::functions
