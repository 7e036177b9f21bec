#pragma once

#include <xsimd/xsimd.hpp>

#include <cmath>
#include <complex>
#include <cstddef>

#include "functions/elementwise/modulus.h"
#include "image/lanes_simd.h"

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

}  // namespace qorv::functions
