#pragma once

#include <emmintrin.h>

#include <cstddef>

/// A vector of elements with the two operations that sorting networks are made of. Of values that compare equal, and with
/// a NaN, min and max return the second.
namespace qorv::library {

struct pack_of_4
{
    __m128 v;
    static constexpr std::ptrdiff_t lanes = 4;
    static pack_of_4 load(const float* from) { return {_mm_loadu_ps(from)}; }
    void store(float* to) const { _mm_storeu_ps(to, v); }
    friend pack_of_4 min(pack_of_4 a, pack_of_4 b) { return {_mm_min_ps(a.v, b.v)}; }
    friend pack_of_4 max(pack_of_4 a, pack_of_4 b) { return {_mm_max_ps(a.v, b.v)}; }
};

struct pack_of_2
{
    __m128d v;
    static constexpr std::ptrdiff_t lanes = 2;
    static pack_of_2 load(const double* from) { return {_mm_loadu_pd(from)}; }
    void store(double* to) const { _mm_storeu_pd(to, v); }
    friend pack_of_2 min(pack_of_2 a, pack_of_2 b) { return {_mm_min_pd(a.v, b.v)}; }
    friend pack_of_2 max(pack_of_2 a, pack_of_2 b) { return {_mm_max_pd(a.v, b.v)}; }
};

template <class T>
struct pack_for;
template <>
struct pack_for<float>
{
    using type = pack_of_4;
};
template <>
struct pack_for<double>
{
    using type = pack_of_2;
};
template <class T>
using pack = typename pack_for<T>::type;

/// The smaller values in `a`, the larger ones in `b`.
template <class Pack>
void exchange(Pack& a, Pack& b)
{
    const Pack smaller = min(a, b);
    b = max(a, b);
    a = smaller;
}

}  // namespace qorv::library
