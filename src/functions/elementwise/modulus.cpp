#include "functions/elementwise/modulus.h"

#include "functions/elementwise/scaled_modulus.h"
#include "numeric/atan2.h"

#include <cmath>

namespace qorv::functions {
namespace {

float angle(float im, float re) { return numeric::atan2(im, re); }
double angle(double im, double re) { return std::atan2(im, re); }

/// Real and imaginary parts in turn: a loop over these is vectorised where one over std::complex may not be.
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

template <class T>
void modulus_vector(const std::complex<T>* src, T* modulus, std::ptrdiff_t count)
{
    const T* const from = parts(src);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const T re = from[2 * i], im = from[2 * i + 1];
        modulus[i] = std::sqrt(im * im + re * re);
    }
}

template <class T>
void modulus_and_phase(const std::complex<T>* src, T* modulus, T* phase, std::ptrdiff_t count)
{
    const T* const from = parts(src);
    modulus_plain(src, modulus, count);
    for (std::ptrdiff_t i = 0; i < count; ++i) phase[i] = angle(from[2 * i + 1], from[2 * i]);
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

template void modulus_plain(const std::complex<float>*, float*, std::ptrdiff_t);
template void modulus_plain(const std::complex<double>*, double*, std::ptrdiff_t);
template void modulus_vector(const std::complex<float>*, float*, std::ptrdiff_t);
template void modulus_vector(const std::complex<double>*, double*, std::ptrdiff_t);
template void modulus_and_phase(const std::complex<float>*, float*, float*, std::ptrdiff_t);
template void modulus_and_phase(const std::complex<double>*, double*, double*, std::ptrdiff_t);
template void unit_phase(const std::complex<float>*, std::complex<float>*, std::ptrdiff_t);
template void unit_phase(const std::complex<double>*, std::complex<double>*, std::ptrdiff_t);

}  // namespace qorv::functions
