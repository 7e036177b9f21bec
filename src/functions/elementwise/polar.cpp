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
void polar_plain(const T* rho, std::ptrdiff_t rho_step, const T* theta, std::complex<T>* dst, std::ptrdiff_t count)
{
    if (rho_step == 0) {
        const T modulus = *rho;
#pragma GCC ivdep
        for (std::ptrdiff_t i = 0; i < count; ++i) store(dst, i, modulus, towards(theta[i]));
    } else {
#pragma GCC ivdep
        for (std::ptrdiff_t i = 0; i < count; ++i) store(dst, i, rho[i], towards(theta[i]));
    }
}

namespace {

template <class T>
constexpr dm::variant<polar_kernel<T>> rows[] = {{"plain", dm::cpu::none, polar_plain<T>}};
template <>
constexpr dm::variant<polar_kernel<float>> rows<float>[] = {{"avx2", dm::cpu::avx2, polar_simd<xsimd::avx2>},
                                                            {"plain", dm::cpu::none, polar_plain<float>}};

}  // namespace

template <class T>
dm::variants<polar_kernel<T>> polar_variants()
{
    return rows<T>;
}

template polar_kernel<float> polar_plain<float>;
template polar_kernel<double> polar_plain<double>;
template dm::variants<polar_kernel<float>> polar_variants<float>();
template dm::variants<polar_kernel<double>> polar_variants<double>();

}  // namespace qorv::functions
