#pragma once

#include "image/processor.h"

#include <cstddef>

/// Powers and logarithms of real images, float and double, as `count` elements in one flat sequence. Each function
/// works in place: the result may be one of its sources; other overlaps are not allowed. Special values are those of
/// C's pow and log.
///
/// Exactness  float: see numeric/pow.h and numeric/log.h; double: the C library's, within 1 ulp. Variants agree to the
///            bit.
namespace qorv::functions {

template <class T>
using two_sources = void(const T* a, const T* b, T* dst, std::ptrdiff_t count);

/// a^b, element by element. The table's other row, for float only, is a loop that the compiler vectorises.
template <class T>
two_sources<T> pow_plain;

template <class T>
dm::variants<two_sources<T>> pow_variants();

/// dst = a^b
template <class T>
void pow(const T* a, const T* b, T* dst, std::ptrdiff_t count)
{
    dm::choose(pow_variants<T>()).function(a, b, dst, count);
}

/// dst = pow(2, a). One loop for all processors: the compiler removes the logarithm of 2 and vectorises the rest.
template <class T>
void exp2(const T* a, T* dst, std::ptrdiff_t count);

/// dst = ln(a) * s with s = 1 / ln 2, computed in double precision and rounded to T. The result is rounded twice, so
/// the logarithm of a power of two may differ from an integer in the last bit. One loop for all processors.
template <class T>
void log2(const T* a, T* dst, std::ptrdiff_t count);

}  // namespace qorv::functions
