#pragma once

#include "image/processor.h"

#include <complex>
#include <cstddef>

/// Modulus and phase of complex images, float and double, as `count` elements in one flat sequence. Source and results
/// must not overlap.
namespace qorv::functions {

template <class T>
using modulus_kernel = void(const std::complex<T>* src, T* modulus, std::ptrdiff_t count);

/// |z| by the overflow-safe modulus of scaled_modulus.h, within 1.5 ulp.
template <class T>
modulus_kernel<T> modulus_plain;

/// sqrt(im^2 + re^2) without scaling: infinite where a square overflows (a part above 1.8e19 in float, 1.3e154 in
/// double), zero or inexact where squares underflow. Elsewhere within 1.5 ulp, not always the bits of modulus_plain.
/// Defined in modulus_simd.h, instantiated for each instruction set in a file of its own.
template <class Arch, class T>
modulus_kernel<T> modulus_simd;

template <class T>
dm::variants<modulus_kernel<T>> modulus_variants();

/// |z|, by the first row of the table that the present features allow.
template <class T>
void modulus(const std::complex<T>* src, T* result, std::ptrdiff_t count)
{
    dm::choose(modulus_variants<T>()).function(src, result, count);
}

/// |z| as by modulus_plain, and the phase atan2(im, re), [rad] from -pi to pi; at zero 0 or +-pi, by the signs of the
/// parts. The phase is within 0.51 ulp in float (numeric/atan2.h), within 1 ulp in double (the C library's). Variants
/// agree to the bit. The table has rows for float only, whose plain loops are vectorised by the compiler.
template <class T>
using modulus_and_phase_kernel = void(const std::complex<T>* src, T* modulus, T* phase, std::ptrdiff_t count);

template <class T>
modulus_and_phase_kernel<T> modulus_and_phase_plain;

/// Defined in modulus_simd.h.
template <class Arch>
modulus_and_phase_kernel<float> modulus_and_phase_simd;

template <class T>
dm::variants<modulus_and_phase_kernel<T>> modulus_and_phase_variants();

template <class T>
void modulus_and_phase(const std::complex<T>* src, T* modulus, T* phase, std::ptrdiff_t count)
{
    dm::choose(modulus_and_phase_variants<T>()).function(src, modulus, phase, count);
}

/// z / |z|, within 2 ulp of each part; dst may be src. Zeros are kept. The divisor is the scaled modulus, so that every
/// other finite z has modulus 1, however large or small. A part that is infinite or NaN becomes NaN; the other part is
/// then 0 or NaN.
template <class T>
void unit_phase(const std::complex<T>* src, std::complex<T>* dst, std::ptrdiff_t count);

}  // namespace qorv::functions
