#pragma once

#include <xsimd/xsimd.hpp>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "functions/smoothing/gaussian.h"
#include "image/interruption.h"
#include "image/lanes_simd.h"

/// Computes a group of pixels at once; each adds its taps in the plain variant's order. Samples are converted to double
/// once, and -0 replaces those outside the image: adding a weight times -0 changes no sum, not even one that is -0.
namespace qorv::functions {
namespace gauss {

/// Pixels of one step: four independent sums for each lane hide the latency of the additions.
template <class Arch>
inline constexpr std::ptrdiff_t group = 4 * static_cast<std::ptrdiff_t>(xsimd::batch<double, Arch>::size);

/// A row of a small window takes about a microsecond, in which a reading of the clock would show.
inline constexpr std::ptrdiff_t rows_per_question = 4;

/// The greatest i of each side for which tap i meets the line, for the first group of pixels.
struct reach
{
    std::ptrdiff_t before, after;
    /// 1 along x, where each pixel has one more left neighbour than the one before; 0 along y.
    std::ptrdiff_t step;
};

/// The weighted sums of a group of pixels.
template <class Arch>
struct sums_of_group
{
    using vec = xsimd::batch<double, Arch>;
    static constexpr std::ptrdiff_t lanes = vec::size;

    sums_of_group(vec weight, const double* pixels)
        : a{weight * vec::load_unaligned(pixels)},
          b{weight * vec::load_unaligned(pixels + lanes)},
          c{weight * vec::load_unaligned(pixels + 2 * lanes)},
          d{weight * vec::load_unaligned(pixels + 3 * lanes)}
    {}
    void add(vec weight, const double* pixels)
    {
        a = a + weight * vec::load_unaligned(pixels);
        b = b + weight * vec::load_unaligned(pixels + lanes);
        c = c + weight * vec::load_unaligned(pixels + 2 * lanes);
        d = d + weight * vec::load_unaligned(pixels + 3 * lanes);
    }
    /// Divides by `norms` and rounds to the element type.
    void store_means(const double* norms, double* to) const
    {
        (a / vec::load_unaligned(norms)).store_unaligned(to);
        (b / vec::load_unaligned(norms + lanes)).store_unaligned(to + lanes);
        (c / vec::load_unaligned(norms + 2 * lanes)).store_unaligned(to + 2 * lanes);
        (d / vec::load_unaligned(norms + 3 * lanes)).store_unaligned(to + 3 * lanes);
    }
    void store_means(const double* norms, float* to) const
    {
        dm::simd::narrowed(a / vec::load_unaligned(norms), b / vec::load_unaligned(norms + lanes)).store_unaligned(to);
        dm::simd::narrowed(c / vec::load_unaligned(norms + 2 * lanes), d / vec::load_unaligned(norms + 3 * lanes))
            .store_unaligned(to + 2 * lanes);
    }

    vec a, b, c, d;
};

/// The means of the group of pixels at `at`, from the first `before` and `after` taps of each side.
template <class Arch, class T>
[[gnu::always_inline]] inline void mean_of_group(const tap* taps, std::ptrdiff_t at, std::ptrdiff_t before,
                                                 std::ptrdiff_t after, const double* norms, T* to)
{
    using vec = xsimd::batch<double, Arch>;
    sums_of_group<Arch> sums{vec::load_unaligned(taps->weight), taps->before + at};
    const tap* const both = taps + std::min(before, after);
    const tap* t = taps + 1;
    for (; t <= both; ++t) {
        const vec weight = vec::load_unaligned(t->weight);
        sums.add(weight, t->before + at);
        sums.add(weight, t->after + at);
    }
    for (; t <= taps + before; ++t) sums.add(vec::load_unaligned(t->weight), t->before + at);
    for (; t <= taps + after; ++t) sums.add(vec::load_unaligned(t->weight), t->after + at);
    sums.store_means(norms + at, to);
}

/// `count` means; samples and norms exist for whole groups. Taps that meet the line for no pixel of a group are left
/// out.
template <class Arch, class T>
void weighted_means(const workspace& room, const reach& meets, const double* norms, T* to, std::ptrdiff_t count)
{
    const std::ptrdiff_t last = room.count - 1;
    for (std::ptrdiff_t at = 0; at < count; at += group<Arch>) {
        const std::ptrdiff_t before = std::min(meets.before + meets.step * at, last);
        const std::ptrdiff_t after = std::min(meets.after - meets.step * at, last);
        if (at + group<Arch> <= count) {
            if (before == last && after == last)  // a loop of its own for the usual case: 15 % faster
                mean_of_group<Arch>(room.taps, at, last, last, norms, to + at);
            else
                mean_of_group<Arch>(room.taps, at, before, after, norms, to + at);
        } else {
            T means[group<Arch>];
            mean_of_group<Arch>(room.taps, at, before, after, norms, means);
            std::memcpy(to + at, means, static_cast<std::size_t>(count - at) * sizeof(T));
        }
    }
}

template <class Arch, class T>
void blur_rows(const dm::image<const T>& from, const dm::image<T>& to, const workspace& room)
{
    static_assert(group<Arch> <= slack && sizeof(tap::weight) >= sizeof(xsimd::batch<double, Arch>));
    const std::ptrdiff_t width = from.width(), step = from.strides()[0];
    double* const pixels = room.line;
    for (std::ptrdiff_t i = 0; i < room.count; ++i) room.taps[i].before = pixels - i, room.taps[i].after = pixels + i;
    for (std::ptrdiff_t y = 0; y < from.height(); ++y) {
        if (y % rows_per_question == 0) dm::stop_if_interrupted();
        const T* row = from.row(y);
        if (step == 1)
            for (std::ptrdiff_t x = 0; x < width; ++x) pixels[x] = row[x];
        else
            for (std::ptrdiff_t x = 0; x < width; ++x) pixels[x] = row[x * step];
        weighted_means<Arch>(room, {group<Arch> - 1, width - 1, 1}, room.norms_of_row, to.row(y), width);
    }
}

/// Columns are blurred in blocks. The rows of a block that the window reaches are kept in double precision in a ring,
/// in which a row replaces the one that left the window.
template <class Arch, class T>
void blur_columns(const dm::image<T>& image, const workspace& room)
{
    const std::ptrdiff_t width = image.width(), height = image.height(), n = room.count;
    for (std::ptrdiff_t x = 0; x < width; x += room.block) {
        const std::ptrdiff_t columns = std::min(room.block, width - x);
        const auto read = [&](std::ptrdiff_t y) {
            const T* row = image.row(y) + x;
            for (std::ptrdiff_t c = 0; c < columns; ++c) room.rows[y][c] = row[c];
        };
        for (std::ptrdiff_t y = 0; y < std::min(n - 1, height); ++y) read(y);
        for (std::ptrdiff_t y = 0; y < height; ++y) {
            if (y % rows_per_question == 0) dm::stop_if_interrupted();
            if (y + n - 1 < height) read(y + n - 1);
            if (room.norm[0] != room.norms_of_column[y])
                for (std::ptrdiff_t c = 0; c < room.block; ++c) room.norm[c] = room.norms_of_column[y];
            const reach meets{y, height - 1 - y, 0};
            for (std::ptrdiff_t i = 0; i <= std::min(meets.before, n - 1); ++i) room.taps[i].before = room.rows[y - i];
            for (std::ptrdiff_t i = 0; i <= std::min(meets.after, n - 1); ++i) room.taps[i].after = room.rows[y + i];
            weighted_means<Arch>(room, meets, room.norm, image.row(y) + x, columns);
        }
    }
}

}  // namespace gauss

template <class Arch, class T>
void gaussian_simd(const dm::image<const T>& from, const dm::image<T>& to, const gauss::workspace& room)
{
    gauss::blur_rows<Arch>(from, to, room);
    gauss::blur_columns<Arch>(to, room);
}

}  // namespace qorv::functions
