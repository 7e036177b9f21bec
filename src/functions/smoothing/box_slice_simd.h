#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "functions/smoothing/box_slice.h"
#include "functions/smoothing/box_strip_simd.h"

namespace qorv::functions {
namespace box {

/// What the two-dimensional filter averages: the pixels or their squares.
template <class Arch, class T>
struct pixel_values
{
    using vec = typename lanes<Arch, T>::vec;
    static vec apply(vec v) { return v; }
};
template <class Arch, class T>
struct squared_values
{
    using vec = typename lanes<Arch, T>::vec;
    static vec apply(vec v)
    {
        if constexpr (numeric::is_complex<T>) {  // (re re - im im, re im + im re)
            const vec signs = dm::simd::alternating(vec(real_of<T>(-0.0)), vec(real_of<T>(0)));
            return dm::simd::real_parts(v) * v +
                   ((dm::simd::imaginary_parts(v) * dm::simd::exchanged_parts(v)) ^ signs);
        } else
            return v * v;
    }
};

/// The number of pixels in the windows of a strip's rows, clipped at the border.
template <class Arch, class T>
class window_sizes
{
    using L = lanes<Arch, T>;
    using real = typename L::real;

  public:
    window_sizes(std::ptrdiff_t width, std::ptrdiff_t radius, const std::ptrdiff_t (&heights)[L::rows])
        : width_{width}, radius_{radius}, heights_{heights}
    {
        for (int g = 0; g < L::groups; ++g) inside_[g] = sizes(2 * radius + 1, g);
    }

    /// As divisors of the lanes of group `g` at `x`.
    auto at(std::ptrdiff_t x, int g) const
    {
        if (x >= radius_ && x < width_ - radius_) return inside_[g];
        return sizes(std::min(width_, x + radius_ + 1) - std::max<std::ptrdiff_t>(0, x - radius_), g);
    }

  private:
    typename L::vec sizes(std::ptrdiff_t columns, int g) const
    {
        real room[L::reals];
        for (int k = 0; k < L::reals; ++k)
            room[k] = static_cast<real>(columns * heights_[g * L::pixels + k / L::parts]);
        return L::vec::load_unaligned(room);
    }

    std::ptrdiff_t width_, radius_;
    const std::ptrdiff_t (&heights_)[L::rows];
    typename L::vec inside_[L::groups];
};

/// The two-dimensional filter, a strip of rows at a time.
template <class Arch, class T, template <class, class> class Rule>
class plane_filter
{
    using L = lanes<Arch, T>;
    using vec = typename L::vec;
    using real = typename L::real;

  public:
    plane_filter(std::ptrdiff_t width, std::ptrdiff_t height, std::ptrdiff_t radius)
        : radius_{std::min(radius, height)},
          pixels_{width, radius},
          columns_(static_cast<std::size_t>((width + L::tile) * L::parts)),
          zeros_(static_cast<std::size_t>(width))
    {}

    /// Begins a plane.
    void start(const dm::image<const T>& from, const dm::image<T>& to)
    {
        from_ = from;
        to_ = to;
        std::fill(columns_.begin(), columns_.end(), real(0));
        for (std::ptrdiff_t y = 0; y < radius_; ++y)
            for (std::ptrdiff_t x = 0; x < from.width(); x += L::pixels) {
                const vec row = Rule<Arch, T>::apply(L::load_some(from.row(y) + x, from.width() - x));
                (vec::load_unaligned(column(x)) + row).store_unaligned(column(x));
            }
    }

    /// Rows first, first + 1, ... Called for one strip after the other. If the last strip is not full, its last row is
    /// repeated.
    void average_strip(std::ptrdiff_t first)
    {
        const std::ptrdiff_t height = from_.height(), width = from_.width();
        const T *leaving[L::rows], *entering[L::rows];
        T* result[L::rows];
        std::ptrdiff_t heights[L::rows];
        for (int k = 0; k < L::rows; ++k) {
            const std::ptrdiff_t y = std::min(first + k, height - 1);
            const bool moves = first + k < height;
            leaving[k] = moves && y > radius_ ? from_.row(y - radius_ - 1) : zeros_.data();
            entering[k] = moves && y + radius_ < height ? from_.row(y + radius_) : zeros_.data();
            result[k] = to_.row(y);
            heights[k] = std::min(height, y + radius_ + 1) - std::max<std::ptrdiff_t>(0, y - radius_);
        }
        std::ptrdiff_t x = 0;
        const auto load_whole = [](const T* p, std::ptrdiff_t) { return L::load(p); };
        const auto load_some = [](const T* p, std::ptrdiff_t count) { return L::load_some(p, count); };
        for (; x + L::tile <= width; x += L::tile) sum_tile(leaving, entering, x, load_whole);
        if (x < width) sum_tile(leaving, entering, x, load_some);

        const window_sizes<Arch, T> sizes{width, pixels_.radius(), heights};
        pixels_.run([](vec sum, vec incoming, vec outgoing) { return sum - outgoing + incoming; },
                    [&](std::ptrdiff_t at, int g, vec sum) { return sum / sizes.at(at, g); }, result);
    }

  private:
    real* column(std::ptrdiff_t x) { return columns_.data() + x * L::parts; }

    /// Moves the column sums of one tile down the strip's rows and stores them in the strip.
    template <class Load>
    void sum_tile(const T* const (&leaving)[L::rows], const T* const (&entering)[L::rows], std::ptrdiff_t start,
                  Load load)
    {
        const auto value = [&](const T* row, int v) {
            const std::ptrdiff_t x = start + v * L::pixels;
            return Rule<Arch, T>::apply(load(row + x, from_.width() - x));
        };
        vec sum[L::vectors], sums[L::rows][L::vectors];
        for (int v = 0; v < L::vectors; ++v) sum[v] = vec::load_unaligned(column(start + v * L::pixels));
        for (int k = 0; k < L::rows; ++k)
            for (int v = 0; v < L::vectors; ++v) {
                sum[v] = sum[v] - value(leaving[k], v) + value(entering[k], v);
                sums[k][v] = sum[v];
            }
        for (int v = 0; v < L::vectors; ++v) sum[v].store_unaligned(column(start + v * L::pixels));
        for (int v = 0; v < L::vectors; ++v)
            for (int g = 0; g < L::groups; ++g) {
                vec square[L::pixels];
                for (int j = 0; j < L::pixels; ++j) square[j] = sums[g * L::pixels + j][v];
                pixels_.put(start + v * L::pixels, g, square);
            }
    }

    dm::image<const T> from_;  ///< the plane
    dm::image<T> to_;
    std::ptrdiff_t radius_;  ///< a radius beyond the height meets the same rows as the height
    strip<Arch, T> pixels_;
    std::vector<real> columns_;
    std::vector<T> zeros_;  ///< the row above the first and below the last
};

}  // namespace box

template <class Arch, class T>
prepared_filter box_slice_simd(const dm::image<const T>& from, const dm::image<T>& mean, std::ptrdiff_t radius)
{
    if (from.strides()[0] != 1 || mean.strides()[0] != 1) return box_slice_plain<T>(from, mean, radius);
    using filter = box::plane_filter<Arch, T, box::pixel_values>;
    return [=, planes = filter{from.width(), from.height(), radius}]() mutable {
        for (std::ptrdiff_t z = 0; z < std::min(from.depth(), mean.depth()); ++z) {
            planes.start(from.plane(z), mean.plane(z));
            for (std::ptrdiff_t y = 0; y < from.height(); y += box::lanes<Arch, T>::rows) planes.average_strip(y);
        }
    };
}

template <class Arch, class T>
void box_slice2_simd(const dm::image<const T>& from, const dm::image<T>& mean, const dm::image<T>& squares,
                     std::ptrdiff_t radius)
{
    if (from.strides()[0] != 1 || mean.strides()[0] != 1 || squares.strides()[0] != 1)
        return box_slice2_plain<T>(from, mean, squares, radius);
    box::plane_filter<Arch, T, box::pixel_values> means{from.width(), from.height(), radius};
    box::plane_filter<Arch, T, box::squared_values> mean_squares{from.width(), from.height(), radius};
    means.start(from, mean);
    mean_squares.start(from, squares);
    for (std::ptrdiff_t y = 0; y < from.height(); y += box::lanes<Arch, T>::rows) {
        means.average_strip(y);
        mean_squares.average_strip(y);
    }
}

}  // namespace qorv::functions
