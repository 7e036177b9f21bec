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

/// sqrt(im^2 + re^2) as it stands: infinite where a square is (a part above 1.8e19 in float, 1.3e154 in double), zero or
/// inexact where squares vanish. Elsewhere within 1.5 ulp; the two rows of the table differ by their rule.
template <class T>
modulus_kernel<T> modulus_vector;

template <class T>
inline constexpr dm::variant<modulus_kernel<T>> modulus_variants[] = {
    {"sse", dm::cpu::sse, modulus_vector<T>},
    {"plain", dm::cpu::none, modulus_plain<T>},
};

/// |z|, by the first row of the table that the present features allow.
template <class T>
void modulus(const std::complex<T>* src, T* result, std::ptrdiff_t count)
{
    dm::choose(modulus_variants<T>).function(src, result, count);
}

/// |z| as modulus_plain has it, and the phase atan2(im, re), [rad] from -pi to pi; 0 or +-pi at zero, by the signs of its
/// parts. The phase is within 0.51 ulp (float: numeric/atan2.h; double: the C library's, within 1 ulp).
template <class T>
void modulus_and_phase(const std::complex<T>* src, T* modulus, T* phase, std::ptrdiff_t count);

/// z / |z|, within 2 ulp of each part; dst may be src. Zeros stay what they are: a pixel without phase gets no
/// modulus. The scaled modulus divides, so that every other finite z has its unit phase, however large or small. A part
/// that is infinite or NaN gives NaN (the other part is then 0 or NaN).
template <class T>
void unit_phase(const std::complex<T>* src, std::complex<T>* dst, std::ptrdiff_t count);

}  // namespace qorv::functions
