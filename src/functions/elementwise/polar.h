#pragma once

#include <complex>
#include <cstddef>

/// Complex images from modulus and phase, float and double, as `count` elements in one flat sequence. Sources and
/// result must not overlap. One loop for all processors: the compiler vectorises it.
///
/// Exactness  each part is the product of the modulus and the sine or cosine, rounded; float: numeric/sincos.h; double:
///            the C library's, within 1 ulp on Linux, xsimd's on Windows, within 1.5 ulp
namespace qorv::functions {

/// dst = rho cos(theta) + i rho sin(theta)
/// rho    any sign; a negative modulus turns the phase by pi
/// theta  [rad]
template <class T>
void polar(const T* rho, const T* theta, std::complex<T>* dst, std::ptrdiff_t count);

/// The same with one modulus for all elements.
template <class T>
void polar(T rho, const T* theta, std::complex<T>* dst, std::ptrdiff_t count);

}  // namespace qorv::functions
