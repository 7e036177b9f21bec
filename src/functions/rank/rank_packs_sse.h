#pragma once

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>

/// A vector of elements with the operations that sorting networks and counting need. Comparisons give lanes of all or no
/// bits. Of values that compare equal, and with
/// a NaN, min and max return the second.
namespace qorv::functions {

struct pack_of_4
{
    __m128 v;
    static constexpr std::ptrdiff_t lanes = 4;
    static pack_of_4 load(const float* from) { return {_mm_loadu_ps(from)}; }
    void store(float* to) const { _mm_storeu_ps(to, v); }
    friend pack_of_4 min(pack_of_4 a, pack_of_4 b) { return {_mm_min_ps(a.v, b.v)}; }
    friend pack_of_4 max(pack_of_4 a, pack_of_4 b) { return {_mm_max_ps(a.v, b.v)}; }

    static pack_of_4 all(float value) { return {_mm_set1_ps(value)}; }
    friend pack_of_4 less(pack_of_4 a, pack_of_4 b) { return {_mm_cmplt_ps(a.v, b.v)}; }
    friend pack_of_4 less_equal(pack_of_4 a, pack_of_4 b) { return {_mm_cmple_ps(a.v, b.v)}; }
    friend pack_of_4 has_nan(pack_of_4 a) { return {_mm_cmpunord_ps(a.v, a.v)}; }
    friend pack_of_4 either(pack_of_4 a, pack_of_4 b) { return {_mm_or_ps(a.v, b.v)}; }
    friend pack_of_4 but_not(pack_of_4 a, pack_of_4 b) { return {_mm_andnot_ps(b.v, a.v)}; }
    unsigned mask() const { return static_cast<unsigned>(_mm_movemask_ps(v)); }
    /// Adds 1 to each 32-bit lane of the tally where the lane of this comparison holds.
    __m128i tally(__m128i so_far) const { return _mm_sub_epi32(so_far, _mm_castps_si128(v)); }
    static std::int64_t total(__m128i tally)
    {
        std::int32_t lane[4];
        _mm_storeu_si128(reinterpret_cast<__m128i*>(lane), tally);
        return std::int64_t(lane[0]) + lane[1] + lane[2] + lane[3];
    }
};

struct pack_of_2
{
    __m128d v;
    static constexpr std::ptrdiff_t lanes = 2;
    static pack_of_2 load(const double* from) { return {_mm_loadu_pd(from)}; }
    void store(double* to) const { _mm_storeu_pd(to, v); }
    friend pack_of_2 min(pack_of_2 a, pack_of_2 b) { return {_mm_min_pd(a.v, b.v)}; }
    friend pack_of_2 max(pack_of_2 a, pack_of_2 b) { return {_mm_max_pd(a.v, b.v)}; }

    static pack_of_2 all(double value) { return {_mm_set1_pd(value)}; }
    friend pack_of_2 less(pack_of_2 a, pack_of_2 b) { return {_mm_cmplt_pd(a.v, b.v)}; }
    friend pack_of_2 less_equal(pack_of_2 a, pack_of_2 b) { return {_mm_cmple_pd(a.v, b.v)}; }
    friend pack_of_2 has_nan(pack_of_2 a) { return {_mm_cmpunord_pd(a.v, a.v)}; }
    friend pack_of_2 either(pack_of_2 a, pack_of_2 b) { return {_mm_or_pd(a.v, b.v)}; }
    friend pack_of_2 but_not(pack_of_2 a, pack_of_2 b) { return {_mm_andnot_pd(b.v, a.v)}; }
    unsigned mask() const { return static_cast<unsigned>(_mm_movemask_pd(v)); }
    /// Adds 1 to each 64-bit lane of the tally where the lane of this comparison holds.
    __m128i tally(__m128i so_far) const { return _mm_sub_epi64(so_far, _mm_castpd_si128(v)); }
    static std::int64_t total(__m128i tally)
    {
        std::int64_t lane[2];
        _mm_storeu_si128(reinterpret_cast<__m128i*>(lane), tally);
        return lane[0] + lane[1];
    }
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

}  // namespace qorv::functions
