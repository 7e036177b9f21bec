#pragma once

#include <xsimd/xsimd.hpp>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "image/lanes_simd.h"
#include "numeric/complex.h"

/// Running sums along x, several rows at a time. A sum depends on its left neighbour, so a vector contains the sums of
/// several rows. A strip is a buffer with these rows transposed: for each x one pixel of every row.
namespace qorv::functions::box {

using numeric::real_of;

/// The shape of a strip for pixels of type T.
template <class Arch, class T>
struct lanes
{
    using real = real_of<T>;
    using vec = xsimd::batch<real, Arch>;
    static constexpr int reals = static_cast<int>(vec::size);
    static constexpr int parts = sizeof(T) / sizeof(real);
    static constexpr int pixels = reals / parts;  ///< of one vector
    /// Vectors that hold one pixel of each row: enough independent sums to hide the latency of additions.
    static constexpr int groups = pixels == 1 ? 4 : 2;
    static constexpr int rows = groups * pixels;  ///< of a strip
    static constexpr int vectors = std::max(1, 64 / static_cast<int>(sizeof(vec)));
    static constexpr int tile = vectors * pixels;  ///< a cache line of each row: rows may be 4 KB apart

    static vec load(const T* from) { return vec::load_unaligned(reinterpret_cast<const real*>(from)); }

    /// One vector of pixels, of which `count` exist; zeros after the last.
    static vec load_some(const T* from, std::ptrdiff_t count)
    {
        return dm::simd::load_first<Arch>(reinterpret_cast<const real*>(from), count * parts);
    }

    static void store_some(T* to, vec value, std::ptrdiff_t count)
    {
        dm::simd::store_first(value, reinterpret_cast<real*>(to), count * parts);
    }
};

/// The rows of a strip. Zeros on both sides are the samples that a window does not have: adding or subtracting +0
/// changes no sum, because a sum that began with +0 never becomes -0.
template <class Arch, class T>
class strip
{
    using L = lanes<Arch, T>;
    using real = typename L::real;
    using vec = typename L::vec;
    static constexpr std::ptrdiff_t pitch = L::groups * L::reals;

  public:
    using row_pointers = T * [L::rows];

    strip(std::ptrdiff_t width, std::ptrdiff_t radius)
        : width_{width},
          radius_{std::min(radius, width)},
          data_(static_cast<std::size_t>((width + 2 * radius_ + 1 + L::tile) * pitch))
    {}

    /// Stores a square of pixels, one vector a row of the image, as group `g` of the places x, x + 1, ...
    void put(std::ptrdiff_t x, int g, vec (&square)[L::pixels])
    {
        dm::simd::transpose<L::parts>(square);
        for (int j = 0; j < L::pixels; ++j) square[j].store_unaligned(at(x + j, g));
    }

    /// Moves the sums along x: `step(sum, entering, leaving)` returns the new sum and `finish(x, g, sum)` the result,
    /// which is written to the rows `to`.
    template <class Step, class Finish>
    void run(Step step, Finish finish, const row_pointers& to)
    {
        vec sums[L::groups];
        for (vec& sum : sums) sum = vec(real(0));
        for (std::ptrdiff_t x = 0; x < radius_; ++x)
            for (int g = 0; g < L::groups; ++g) sums[g] = sums[g] + vec::load_unaligned(at(x, g));

        for (std::ptrdiff_t start = 0; start < width_; start += L::pixels) {
            vec results[L::groups][L::pixels];
            for (int j = 0; j < L::pixels; ++j)
                for (int g = 0; g < L::groups; ++g) {
                    const std::ptrdiff_t x = start + j;
                    sums[g] = step(sums[g], vec::load_unaligned(at(x + radius_, g)),
                                   vec::load_unaligned(at(x - radius_ - 1, g)));
                    results[g][j] = finish(x, g, sums[g]);
                }
            for (int g = 0; g < L::groups; ++g) {
                dm::simd::transpose<L::parts>(results[g]);
                for (int j = 0; j < L::pixels; ++j)
                    L::store_some(to[g * L::pixels + j] + start, results[g][j], width_ - start);
            }
        }
    }

    std::ptrdiff_t width() const { return width_; }
    std::ptrdiff_t radius() const { return radius_; }

  private:
    real* at(std::ptrdiff_t x, int g) { return data_.data() + (x + radius_ + 1) * pitch + g * L::reals; }

    std::ptrdiff_t width_, radius_;  ///< a radius beyond the width meets the same samples as the width
    std::vector<real> data_;
};

}  // namespace qorv::functions::box
