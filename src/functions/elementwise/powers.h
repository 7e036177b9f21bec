#pragma once

#include "image/processor.h"

#include <cstddef>

/// Powers and logarithms of real images, float and double, as `count` elements in one flat sequence. Each function
/// works in place: the result may be one of its sources; other overlaps are not allowed. Special values are those of
/// C's pow and log.
///
/// Exactness  float: see numeric/pow.h and numeric/log.h; double: the C library's, within 1 ulp. Variants agree to the
///            bit.
///
/// The tables have rows for float only. The plain loops of exp2 and log2 are vectorised by the compiler.
namespace qorv::functions {

template <class T>
using one_source = void(const T* a, T* dst, std::ptrdiff_t count);
template <class T>
using two_sources = void(const T* a, const T* b, T* dst, std::ptrdiff_t count);

template <class T>
one_source<T> exp2_plain;
template <class T>
one_source<T> log2_plain;
template <class T>
two_sources<T> pow_plain;

/// Defined in powers_simd.h, instantiated for each instruction set in a file of its own.
template <class Arch>
one_source<float> exp2_simd;
template <class Arch>
one_source<float> log2_simd;
template <class Arch>
two_sources<float> pow_simd;

template <class T>
dm::variants<one_source<T>> exp2_variants();
template <class T>
dm::variants<one_source<T>> log2_variants();
template <class T>
dm::variants<two_sources<T>> pow_variants();

/// dst = pow(2, a)
template <class T>
void exp2(const T* a, T* dst, std::ptrdiff_t count)
{
    dm::choose(exp2_variants<T>()).function(a, dst, count);
}

/// The factor from natural logarithms to those of base 2.
inline constexpr double one_over_log_of_2 = 1 / 0.693147180559945309417;

/// dst = ln(a) * s with s = 1 / ln 2, computed in double precision and rounded to T. The result is rounded twice, so
/// the logarithm of a power of two may differ from an integer in the last bit.
template <class T>
void log2(const T* a, T* dst, std::ptrdiff_t count)
{
    dm::choose(log2_variants<T>()).function(a, dst, count);
}

/// dst = a^b
template <class T>
void pow(const T* a, const T* b, T* dst, std::ptrdiff_t count)
{
    dm::choose(pow_variants<T>()).function(a, b, dst, count);
}

}  // namespace qorv::functions
