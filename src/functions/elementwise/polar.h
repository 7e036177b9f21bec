#pragma once

#include "image/processor.h"

#include <complex>
#include <cstddef>

/// Complex images from modulus and phase, float and double, as `count` elements in one flat sequence. Sources and
/// result must not overlap.
///
/// Exactness  each part is the rounded product of the modulus and the cosine or sine. These are in float of
///            numeric/sincos.h, in double of the C library on Linux (within 1 ulp) and of xsimd on Windows (1.5 ulp).
///            Variants agree to the bit.
namespace qorv::functions {

/// dst = rho cos(theta) + i rho sin(theta)
/// rho       any sign; a negative modulus adds pi to the phase
/// rho_step  1: a modulus for each element; 0: one for all
/// theta     [rad]
template <class T>
using polar_kernel = void(const T* rho, std::ptrdiff_t rho_step, const T* theta, std::complex<T>* dst,
                          std::ptrdiff_t count);

template <class T>
polar_kernel<T> polar_plain;

/// Defined in polar_simd.h, instantiated for each instruction set in a file of its own.
template <class Arch>
polar_kernel<float> polar_simd;

/// The table has rows for float only. The plain loop in float is vectorised by the compiler.
template <class T>
dm::variants<polar_kernel<T>> polar_variants();

/// With a modulus for each element.
template <class T>
void polar(const T* rho, const T* theta, std::complex<T>* dst, std::ptrdiff_t count)
{
    dm::choose(polar_variants<T>()).function(rho, 1, theta, dst, count);
}

/// With one modulus for all elements.
template <class T>
void polar(T rho, const T* theta, std::complex<T>* dst, std::ptrdiff_t count)
{
    dm::choose(polar_variants<T>()).function(&rho, 0, theta, dst, count);
}

}  // namespace qorv::functions
