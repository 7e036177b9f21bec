#pragma once

#include "functions/smoothing/moving_average_parts.h"

#include <emmintrin.h>
#include <algorithm>
#include <cstring>
#include <vector>

/// Sums that run along x depend on their left neighbour; several rows at a time as lanes of vectors run independent
/// sums side by side. Rows are turned into lanes and back by blocks, through a strip of a few rows.
namespace qorv::functions::box {

template <class R>
struct vector_of;
template <>
struct vector_of<float>
{
    using type = __m128;
    static type load(const float* p) { return _mm_loadu_ps(p); }
    static void store(float* p, type v) { _mm_storeu_ps(p, v); }
    static type all(float v) { return _mm_set1_ps(v); }
};
template <>
struct vector_of<double>
{
    using type = __m128d;
    static type load(const double* p) { return _mm_loadu_pd(p); }
    static void store(double* p, type v) { _mm_storeu_pd(p, v); }
    static type all(double v) { return _mm_set1_pd(v); }
};

/// A vector's pixels and, for a strip, the number of vectors with one pixel of each row: enough independent sums to
/// hide the additions' latency.
template <class T>
struct lanes : vector_of<real_of<T>>
{
    using real = real_of<T>;
    using vec = typename vector_of<real>::type;
    static constexpr int pixels = 16 / sizeof(T);
    static constexpr int groups = pixels == 1 ? 4 : 2;
    static constexpr int rows = groups * pixels;
    static constexpr int reals = 16 / sizeof(real);
    static constexpr int tile = 4 * pixels;  ///< one cache line of each row at a time: rows may lie 4 KB apart
};

inline void transpose(__m128 (&block)[4]) { _MM_TRANSPOSE4_PS(block[0], block[1], block[2], block[3]); }
inline void transpose(__m128d (&block)[2])
{
    const __m128d low = _mm_unpacklo_pd(block[0], block[1]);
    block[1] = _mm_unpackhi_pd(block[0], block[1]);
    block[0] = low;
}
inline void transpose(__m128 (&block)[2])  // two complex numbers each
{
    const __m128d a = _mm_castps_pd(block[0]), b = _mm_castps_pd(block[1]);
    block[0] = _mm_castpd_ps(_mm_unpacklo_pd(a, b));
    block[1] = _mm_castpd_ps(_mm_unpackhi_pd(a, b));
}
inline void transpose(__m128d (&)[1]) {}

/// Up to one vector of pixels; zeros behind the last of `count`.
template <class T>
auto load_some(const T* from, std::ptrdiff_t count)
{
    using L = lanes<T>;
    if (count >= L::pixels) return L::load(reinterpret_cast<const typename L::real*>(from));
    typename L::real room[L::reals] = {};
    std::memcpy(room, static_cast<const void*>(from),
                static_cast<std::size_t>(std::max<std::ptrdiff_t>(count, 0)) * sizeof(T));
    return L::load(room);
}

template <class T>
void store_some(T* to, typename lanes<T>::vec value, std::ptrdiff_t count)
{
    using L = lanes<T>;
    if (count >= L::pixels) return L::store(reinterpret_cast<typename L::real*>(to), value);
    typename L::real room[L::reals];
    L::store(room, value);
    std::memcpy(static_cast<void*>(to), room, static_cast<std::size_t>(count) * sizeof(T));
}

/// Some rows side by side: for each x one pixel of every row. Zeros on both sides stand for the samples that a window
/// does not have; adding or taking away +0 changes no sum, because a sum that began with +0 never becomes -0.
template <class T>
class strip
{
    using L = lanes<T>;
    using vec = typename L::vec;
    static constexpr std::ptrdiff_t pitch = L::groups * L::reals;

  public:
    using row_pointers = T * [L::rows];

    strip(std::ptrdiff_t width, std::ptrdiff_t radius)
        : width_{width},
          radius_{std::min(radius, width)},
          data_(static_cast<std::size_t>((width + 2 * radius_ + 1 + L::tile) * pitch))
    {}

    /// Lanes of group `g` at `x`.
    typename L::real* at(std::ptrdiff_t x, int g) { return data_.data() + (x + radius_ + 1) * pitch + g * L::reals; }

    /// Moves the sums along x; `step(sum, entering, leaving)` gives the new sum, `finish(x, g, sum)` the result, which
    /// goes to the rows `to`.
    template <class Step, class Finish>
    void run(Step step, Finish finish, const row_pointers& to)
    {
        vec sums[L::groups];
        for (vec& sum : sums) sum = L::all(0);
        for (std::ptrdiff_t x = 0; x < radius_; ++x)
            for (int g = 0; g < L::groups; ++g) sums[g] = sums[g] + L::load(at(x, g));

        for (std::ptrdiff_t start = 0; start < width_; start += L::pixels) {
            vec results[L::groups][L::pixels];
            for (int j = 0; j < L::pixels; ++j)
                for (int g = 0; g < L::groups; ++g) {
                    const std::ptrdiff_t x = start + j;
                    sums[g] = step(sums[g], L::load(at(x + radius_, g)), L::load(at(x - radius_ - 1, g)));
                    results[g][j] = finish(x, g, sums[g]);
                }
            for (int g = 0; g < L::groups; ++g) {
                transpose(results[g]);
                for (int j = 0; j < L::pixels; ++j)
                    store_some(to[g * L::pixels + j] + start, results[g][j], width_ - start);
            }
        }
    }

    std::ptrdiff_t width() const { return width_; }
    std::ptrdiff_t radius() const { return radius_; }

  private:
    std::ptrdiff_t width_, radius_;  ///< a radius beyond the width meets the same samples as the width
    std::vector<typename L::real> data_;
};

}  // namespace qorv::functions::box
