#pragma once

#include <xsimd/xsimd.hpp>

#include <cmath>
#include <complex>
#include <cstddef>

#include "functions/elementwise/modulus.h"
#include "functions/elementwise/scaled_modulus.h"
#include "image/lanes_simd.h"
#include "numeric/atan2.h"

namespace qorv::functions {

template <class Arch, class T>
void modulus_simd(const std::complex<T>* src, T* modulus, std::ptrdiff_t count)
{
    using vec = xsimd::batch<T, Arch>;
    constexpr std::ptrdiff_t lanes = vec::size;
    const T* const from = reinterpret_cast<const T*>(src);  // re, im, re, im ...
    std::ptrdiff_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const vec low = vec::load_unaligned(from + 2 * i), high = vec::load_unaligned(from + 2 * i + lanes);
        const vec re = dm::simd::every_second<0>(low, high), im = dm::simd::every_second<1>(low, high);
        xsimd::sqrt(im * im + re * re).store_unaligned(modulus + i);
    }
    for (; i < count; ++i) {
        const T re = from[2 * i], im = from[2 * i + 1];
        modulus[i] = std::sqrt(im * im + re * re);
    }
}

/// Loops that the compiler vectorises.
template <class Arch>
void modulus_and_phase_simd(const std::complex<float>* src, float* modulus, float* phase, std::ptrdiff_t count)
{
    const float* const from = reinterpret_cast<const float*>(src);
    for (std::ptrdiff_t i = 0; i < count; ++i) modulus[i] = safe_modulus(from[2 * i], from[2 * i + 1]);
    for (std::ptrdiff_t i = 0; i < count; ++i) phase[i] = numeric::atan2(from[2 * i + 1], from[2 * i]);
}

}  // namespace qorv::functions
