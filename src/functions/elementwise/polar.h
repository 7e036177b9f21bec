#pragma once

#include <complex>
#include <cstddef>

/// Complex images from modulus and phase, float and double, as `count` elements in one flat sequence. Sources and
/// result must not overlap. One loop for all processors, which the compiler vectorises.
///
/// Exactness  each part is the rounded product of the modulus and the cosine or sine. These are in float of
///            numeric/sincos.h, in double of the C library on Linux (within 1 ulp) and of xsimd on Windows (1.5 ulp).
namespace qorv::functions {

/// dst = rho cos(theta) + i rho sin(theta)
/// rho    any sign; a negative modulus adds pi to the phase
/// theta  [rad]
template <class T>
void polar(const T* rho, const T* theta, std::complex<T>* dst, std::ptrdiff_t count);

/// The same with one modulus for all elements.
template <class T>
void polar(T rho, const T* theta, std::complex<T>* dst, std::ptrdiff_t count);

}  // namespace qorv::functions
