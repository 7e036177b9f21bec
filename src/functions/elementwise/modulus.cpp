#include "functions/elementwise/modulus.h"

#include "functions/elementwise/scaled_modulus.h"
#include "numeric/atan2.h"

#include <cmath>

namespace qorv::functions {
namespace {

float angle(float im, float re) { return numeric::atan2(im, re); }
double angle(double im, double re) { return std::atan2(im, re); }

/// The interleaved real and imaginary parts. The compiler vectorises loops over these, not always over std::complex.
template <class T>
const T* parts(const std::complex<T>* values)
{
    return reinterpret_cast<const T*>(values);
}

template <class T>
T* parts(std::complex<T>* values)
{
    return reinterpret_cast<T*>(values);
}

}  // namespace

template <class T>
void modulus_plain(const std::complex<T>* src, T* modulus, std::ptrdiff_t count)
{
    const T* const from = parts(src);
    for (std::ptrdiff_t i = 0; i < count; ++i) modulus[i] = safe_modulus(from[2 * i], from[2 * i + 1]);
}

namespace {

template <class T>
constexpr dm::variant<modulus_kernel<T>> rows[] = {{"avx2", dm::cpu::avx2, modulus_simd<xsimd::avx2, T>},
                                                   {"sse", dm::cpu::sse, modulus_simd<xsimd::sse2, T>},
                                                   {"plain", dm::cpu::none, modulus_plain<T>}};

}  // namespace

template <class T>
dm::variants<modulus_kernel<T>> modulus_variants()
{
    return rows<T>;
}

template <class T>
void modulus_and_phase_plain(const std::complex<T>* src, T* modulus, T* phase, std::ptrdiff_t count)
{
    const T* const from = parts(src);
    modulus_plain(src, modulus, count);
    for (std::ptrdiff_t i = 0; i < count; ++i) phase[i] = angle(from[2 * i + 1], from[2 * i]);
}

namespace {

template <class T>
constexpr dm::variant<modulus_and_phase_kernel<T>> phase_rows[] = {
    {"plain", dm::cpu::none, modulus_and_phase_plain<T>}};
template <>
constexpr dm::variant<modulus_and_phase_kernel<float>> phase_rows<float>[] = {
    {"avx2", dm::cpu::avx2, modulus_and_phase_simd<xsimd::avx2>},
    {"plain", dm::cpu::none, modulus_and_phase_plain<float>}};

}  // namespace

template <class T>
dm::variants<modulus_and_phase_kernel<T>> modulus_and_phase_variants()
{
    return phase_rows<T>;
}

template <class T>
void unit_phase(const std::complex<T>* src, std::complex<T>* dst, std::ptrdiff_t count)
{
    const T* const from = parts(src);
    T* const to = parts(dst);
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const scaled_complex<T> z = scaled(from[2 * i], from[2 * i + 1]);
        const T length = z.modulus();
        const T divisor = length == 0 ? T{1} : length;
        to[2 * i] = z.re / divisor;
        to[2 * i + 1] = z.im / divisor;
    }
}

template modulus_kernel<float> modulus_plain<float>;
template modulus_kernel<double> modulus_plain<double>;
template dm::variants<modulus_kernel<float>> modulus_variants<float>();
template dm::variants<modulus_kernel<double>> modulus_variants<double>();
template modulus_and_phase_kernel<float> modulus_and_phase_plain<float>;
template modulus_and_phase_kernel<double> modulus_and_phase_plain<double>;
template dm::variants<modulus_and_phase_kernel<float>> modulus_and_phase_variants<float>();
template dm::variants<modulus_and_phase_kernel<double>> modulus_and_phase_variants<double>();
template void unit_phase(const std::complex<float>*, std::complex<float>*, std::ptrdiff_t);
template void unit_phase(const std::complex<double>*, std::complex<double>*, std::ptrdiff_t);

}  // namespace qorv::functions
