#pragma once

#include <xsimd/xsimd.hpp>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "functions/smoothing/gaussian.h"

/// Many pixels side by side, each with its taps in the plain variant's order. Samples are converted to double once, and
/// -0 replaces those outside the image: adding a weight times -0 changes no sum, not even one that is -0.
namespace qorv::functions {
namespace gauss {

/// Pixels of one step: four independent sums for each lane hide the latency of the additions.
template <class Arch>
inline constexpr std::ptrdiff_t group = 4 * static_cast<std::ptrdiff_t>(xsimd::batch<double, Arch>::size);

/// The weights, each in all lanes of a vector.
template <class Arch>
struct wide_weights
{
    using vec = xsimd::batch<double, Arch>;

    explicit wide_weights(const std::vector<double>& weights)
        : size{static_cast<std::ptrdiff_t>(weights.size())}, values(weights.size() * vec::size)
    {
        for (std::size_t i = 0; i < values.size(); ++i) values[i] = weights[i / vec::size];
    }
    vec operator[](std::ptrdiff_t i) const
    {
        return vec::load_unaligned(values.data() + i * static_cast<std::ptrdiff_t>(vec::size));
    }

    std::ptrdiff_t size;
    std::vector<double> values;
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
    template <class T>
    void store_means(const double* norms, T* to) const
    {
        alignas(64) double means[group<Arch>];
        (a / vec::load_unaligned(norms)).store_aligned(means);
        (b / vec::load_unaligned(norms + lanes)).store_aligned(means + lanes);
        (c / vec::load_unaligned(norms + 2 * lanes)).store_aligned(means + 2 * lanes);
        (d / vec::load_unaligned(norms + 3 * lanes)).store_aligned(means + 3 * lanes);
        for (std::ptrdiff_t i = 0; i < group<Arch>; ++i) to[i] = static_cast<T>(means[i]);
    }

    vec a, b, c, d;
};

/// The means of the group of pixels at `at`. Taps that meet the line for no pixel of the group are left out.
/// samples   before(i) and after(i) are the samples of weight i, for the pixels of the line in order; most_before(at)
///           and most_after(at) the greatest i of each side that meets the line
template <class Arch, class T, class Samples>
void mean_of_group(const wide_weights<Arch>& weights, const Samples& samples, std::ptrdiff_t at, const double* norms,
                   T* to)
{
    const std::ptrdiff_t before = std::min(samples.most_before(at), weights.size - 1);
    const std::ptrdiff_t after = std::min(samples.most_after(at), weights.size - 1);
    sums_of_group<Arch> sums{weights[0], samples.before(0) + at};
    std::ptrdiff_t i = 1;
    for (; i <= std::min(before, after); ++i) {
        const auto weight = weights[i];
        sums.add(weight, samples.before(i) + at);
        sums.add(weight, samples.after(i) + at);
    }
    for (; i <= before; ++i) sums.add(weights[i], samples.before(i) + at);
    for (; i <= after; ++i) sums.add(weights[i], samples.after(i) + at);
    sums.store_means(norms + at, to);
}

/// `count` means; samples and norms exist for whole groups.
template <class Arch, class T, class Samples>
void weighted_means(const wide_weights<Arch>& weights, const Samples& samples, const double* norms, T* to,
                    std::ptrdiff_t count)
{
    std::ptrdiff_t at = 0;
    for (; at + group<Arch> <= count; at += group<Arch>) mean_of_group<Arch>(weights, samples, at, norms, to + at);
    if (at == count) return;
    T room[group<Arch>];
    mean_of_group<Arch>(weights, samples, at, norms, room);
    std::memcpy(to + at, room, static_cast<std::size_t>(count - at) * sizeof(T));
}

/// The samples of one row, with -0 on both sides as far as a group can reach.
template <class Arch>
struct row_samples
{
    const double* pixels;
    std::ptrdiff_t width;

    const double* before(std::ptrdiff_t i) const { return pixels - i; }
    const double* after(std::ptrdiff_t i) const { return pixels + i; }
    std::ptrdiff_t most_before(std::ptrdiff_t at) const { return at + group<Arch> - 1; }
    std::ptrdiff_t most_after(std::ptrdiff_t at) const { return width - 1 - at; }
};

template <class Arch, class T>
void blur_rows(const dm::image<const T>& from, const dm::image<T>& to, const std::vector<double>& weights)
{
    const std::ptrdiff_t width = from.width(), step = from.strides()[0];
    const wide_weights<Arch> wide{weights};
    auto norms = gaussian_norms(weights, width);
    norms.resize(static_cast<std::size_t>(width + group<Arch>), 1.0);
    std::vector<double> line(static_cast<std::size_t>(width + 2 * group<Arch>), -0.0);
    double* const pixels = line.data() + group<Arch>;
    for (std::ptrdiff_t y = 0; y < from.height(); ++y) {
        const T* row = from.row(y);
        if (step == 1)
            for (std::ptrdiff_t x = 0; x < width; ++x) pixels[x] = row[x];
        else
            for (std::ptrdiff_t x = 0; x < width; ++x) pixels[x] = row[x * step];
        weighted_means(wide, row_samples<Arch>{pixels, width}, norms.data(), to.row(y), width);
    }
}

/// The samples around row `y` of neighbouring columns.
template <class Arch>
struct column_samples
{
    const double* const* rows;  ///< of the whole image; those in the window are valid
    std::ptrdiff_t y, height;

    const double* before(std::ptrdiff_t i) const { return rows[y - i]; }
    const double* after(std::ptrdiff_t i) const { return rows[y + i]; }
    std::ptrdiff_t most_before(std::ptrdiff_t) const { return y; }
    std::ptrdiff_t most_after(std::ptrdiff_t) const { return height - 1 - y; }
};

/// Columns are blurred in blocks. The rows of a block that the window reaches are kept in double precision in a ring,
/// in which a row replaces the one that left the window.
template <class Arch, class T>
void blur_columns(const dm::image<T>& image, const std::vector<double>& weights)
{
    const std::ptrdiff_t width = image.width(), height = image.height();
    const auto n = static_cast<std::ptrdiff_t>(weights.size());
    const wide_weights<Arch> wide{weights};
    const auto norms = gaussian_norms(weights, height);
    const std::ptrdiff_t ring_rows = std::min(2 * n - 1, height);
    // Every sample of the ring is read once for each row in the window, so a usual window should fit the first cache.
    constexpr std::ptrdiff_t ring_bytes = 28 * 1024;
    const std::ptrdiff_t block = std::clamp<std::ptrdiff_t>(
        ring_bytes / static_cast<std::ptrdiff_t>(sizeof(double)) / ring_rows / 16 * 16, 32, 512);
    std::vector<double> ring(static_cast<std::size_t>(ring_rows * block)), norm(static_cast<std::size_t>(block));
    std::vector<double*> rows;
    for (std::ptrdiff_t y = 0; y < height; ++y) rows.push_back(ring.data() + y % ring_rows * block);
    for (std::ptrdiff_t x = 0; x < width; x += block) {
        const std::ptrdiff_t columns = std::min(block, width - x);
        const auto read = [&](std::ptrdiff_t y) {
            const T* row = image.row(y) + x;
            for (std::ptrdiff_t c = 0; c < columns; ++c) rows[y][c] = row[c];
        };
        for (std::ptrdiff_t y = 0; y < std::min(n - 1, height); ++y) read(y);
        for (std::ptrdiff_t y = 0; y < height; ++y) {
            if (y + n - 1 < height) read(y + n - 1);
            if (norm[0] != norms[y]) std::fill(norm.begin(), norm.end(), norms[y]);
            weighted_means(wide, column_samples<Arch>{rows.data(), y, height}, norm.data(), image.row(y) + x, columns);
        }
    }
}

}  // namespace gauss

template <class Arch, class T>
void gaussian_simd(const dm::image<const T>& from, const dm::image<T>& to, const std::vector<double>& weights)
{
    if (to.strides()[0] != 1) return gaussian_plain<T>(from, to, weights);
    gauss::blur_rows<Arch>(from, to, weights);
    gauss::blur_columns<Arch>(to, weights);
}

}  // namespace qorv::functions
