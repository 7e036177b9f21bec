#pragma once

#include "image/processor.h"

#include <cstddef>

/// Powers and logarithms of real images, float and double, as `count` elements in one flat sequence. Each function works
/// in place: the result may be one of its sources; other overlaps are not allowed. Special values follow C's tables for
/// pow and log.
///
/// Exactness  float: numeric/pow.h, numeric/log.h; double: the C library's, within 1 ulp. Rows of a table agree to the bit.
namespace qorv::functions {

template <class T>
using two_sources = void(const T* a, const T* b, T* dst, std::ptrdiff_t count);

/// a^b
template <class T>
two_sources<T> pow_plain;
two_sources<float> pow_vector;  // logarithms of a block first, then their powers

template <class T>
inline constexpr dm::variant<two_sources<T>> pow_variants[] = {{"plain", dm::cpu::none, pow_plain<T>}};
template <>
inline constexpr dm::variant<two_sources<float>> pow_variants<float>[] = {
    {"sse2", dm::cpu::sse2, pow_vector},
    {"plain", dm::cpu::none, pow_plain<float>},
};

/// dst = a^b
template <class T>
void pow(const T* a, const T* b, T* dst, std::ptrdiff_t count)
{
    dm::choose(pow_variants<T>).function(a, b, dst, count);
}

/// dst = 2^a as pow(2, a). One loop for all processors: the compiler leaves the logarithm of 2 out and vectorises it.
template <class T>
void exp2(const T* a, T* dst, std::ptrdiff_t count);

/// dst = ln(a) * s, s = 1 / ln 2 computed in double precision and rounded to T: two roundings, so that the logarithm of
/// a power of two need not be an integer to the last bit. One loop for all processors.
template <class T>
void log2(const T* a, T* dst, std::ptrdiff_t count);

}  // namespace qorv::functions
