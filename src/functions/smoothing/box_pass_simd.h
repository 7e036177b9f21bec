#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "functions/smoothing/box_pass.h"
#include "functions/smoothing/box_strip_simd.h"
#include "numeric/complex.h"

/// The pass along x has the rows of a strip in its lanes. Along y or z the sums of neighbouring columns are
/// independent, so the compiler vectorises plain loops over them for the instruction set that the including file is
/// compiled for.
namespace qorv::functions {
namespace box {

using numeric::real_of;

/// Factors of a one-dimensional pass for each sample of a line: result = sum * inverse() * [i]. They are 1, which
/// multiplies exactly, in the interior and past the end of the line. The same quotients as in `box_pass_kernel`.
template <class Arch, class R>
class pass_scale
{
  public:
    pass_scale() = default;
    /// n       samples of the line
    /// beyond  further factors, for vectors that extend past the end
    pass_scale(std::ptrdiff_t n, std::ptrdiff_t radius, std::ptrdiff_t beyond = 0)
        : factors_(static_cast<std::size_t>(n + beyond), R(1))
    {
        const auto window = static_cast<R>(2 * radius + 1);
        inverse_ = R(1) / window;
        for (std::ptrdiff_t i = 0; i < std::min(n - radius, radius + 1); ++i)
            factors_[i] = window / static_cast<R>(i + radius + 1);
        for (std::ptrdiff_t i = std::max<std::ptrdiff_t>(n - radius, 0); i < n; ++i)
            factors_[i] = window / static_cast<R>(n - i + radius);
    }
    R inverse() const { return inverse_; }
    R operator[](std::ptrdiff_t i) const { return factors_[static_cast<std::size_t>(i)]; }

  private:
    R inverse_ = 0;
    std::vector<R> factors_;
};

/// Rows of real numbers, `pitch` apart.
template <class Arch, class R>
struct rows
{
    R* data;
    std::ptrdiff_t pitch;
    R* operator[](std::ptrdiff_t i) const { return data + i * pitch; }
};

/// How the samples that leave the window are found: read a second time, or kept in a ring of as many rows as the window
/// has. With a ring the results may overwrite the source, and rows that evict each other from the cache are read once.
enum class leaving
{
    read_again,
    kept
};

/// Moves the sums of neighbouring columns down the rows. Where the window has no sample, a row of zeros replaces it:
/// adding or subtracting +0 changes no sum, because a sum that began with +0 never becomes -0.
template <class Arch, class R>
class column_block
{
  public:
    column_block() = default;
    column_block(std::ptrdiff_t columns, std::ptrdiff_t n, std::ptrdiff_t radius, leaving how)
        : n_{n},
          radius_{radius},
          columns_{columns},
          zeros_(static_cast<std::size_t>(columns)),
          sums_(zeros_),
          scale_{n, radius}
    {
        if (how == leaving::kept) ring_.resize(static_cast<std::size_t>(std::min(n, 2 * radius + 1) * columns));
    }

    void run(rows<Arch, const R> from, rows<Arch, R> to, std::ptrdiff_t columns, std::ptrdiff_t outputs)
    {
        std::fill_n(sums_.begin(), columns, R(0));
        std::fill(ring_.begin(), ring_.end(), R(0));
        for (std::ptrdiff_t i = 0; i < std::min(radius_, n_); ++i)
            for (std::ptrdiff_t c = 0; c < columns; ++c) {
                sums_[c] += from[i][c];
                if (!ring_.empty()) ring_row(i)[c] = from[i][c];
            }
        for (std::ptrdiff_t i = 0; i < outputs; ++i) {
            const R* entering = i + radius_ < n_ ? from[i + radius_] : zeros_.data();
            if (ring_.empty())
                step(entering, i > radius_ ? from[i - radius_ - 1] : zeros_.data(), to[i], columns, scale_[i]);
            else  // the sample that enters replaces the one that leaves
                step_keeping(entering, ring_row((i + radius_) % (2 * radius_ + 1)), to[i], columns, scale_[i]);
        }
    }

  private:
    /// Rows that a line shorter than the window never reaches are zeros, and only zeros are written to them.
    R* ring_row(std::ptrdiff_t slot) { return slot < n_ ? ring_.data() + slot * columns_ : zeros_.data(); }

    void step(const R* entering, const R* leaving, R* to, std::ptrdiff_t columns, R scale)
    {
        R* sums = sums_.data();
        const R inverse = scale_.inverse();
#pragma GCC ivdep
        for (std::ptrdiff_t c = 0; c < columns; ++c) {
            sums[c] += entering[c] - leaving[c];
            to[c] = sums[c] * inverse * scale;
        }
    }

    void step_keeping(const R* entering, R* ring, R* to, std::ptrdiff_t columns, R scale)
    {
        R* sums = sums_.data();
        const R inverse = scale_.inverse();
#pragma GCC ivdep
        for (std::ptrdiff_t c = 0; c < columns; ++c) {
            const R sample = entering[c];
            sums[c] += sample - ring[c];
            ring[c] = sample;
            to[c] = sums[c] * inverse * scale;
        }
    }

    std::ptrdiff_t n_ = 0, radius_ = 0, columns_ = 0;
    std::vector<R> zeros_, sums_, ring_;
    pass_scale<Arch, R> scale_;
};

/// The pass along y or z of images with contiguous rows, in place (the same pixels) or without shared memory; the same
/// bits as the plain pass.
template <class Arch, class T>
class pass_down
{
    using R = real_of<T>;
    static constexpr std::ptrdiff_t parts = sizeof(T) / sizeof(R);

  public:
    pass_down(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius)
        : from_{from},
          to_{to},
          along_{static_cast<int>(along)},
          other_{along_ == 1 ? 2 : 1},
          lines_{std::min(from.sizes()[other_], to.sizes()[other_])},
          columns_{from.width() * parts}
    {
        if (along == axis::z && from.strides()[1] == from.width() && to.strides()[1] == to.width())
            columns_ *= std::exchange(lines_, 1);  // planes without gaps are one long row each

        // Rows of a column are often a power of two bytes apart, so a wide block, which reads a long stretch of each
        // row, uses the cache best. A ring limits the width: it should stay in the cache.
        const auto how = from.data() == to.data() || along == axis::z ? leaving::kept : leaving::read_again;
        const std::ptrdiff_t n = from.sizes()[along_];
        const std::ptrdiff_t window = std::min(n, 2 * radius + 1) * static_cast<std::ptrdiff_t>(sizeof(R));
        const std::ptrdiff_t widest =
            how == leaving::kept ? std::clamp<std::ptrdiff_t>(256 * 1024 / window, 16, 2048) : 2048;
        block_ = std::min(columns_, widest);
        sums_ = {block_, n, radius, how};
    }

    void operator()()
    {
        const std::ptrdiff_t outputs = std::min(from_.sizes()[along_], to_.sizes()[along_]);
        for (std::ptrdiff_t line = 0; line < lines_; ++line)
            for (std::ptrdiff_t c = 0; c < columns_; c += block_) {
                const auto* source = reinterpret_cast<const R*>(from_.data() + line * from_.strides()[other_]) + c;
                auto* result = reinterpret_cast<R*>(to_.data() + line * to_.strides()[other_]) + c;
                sums_.run({source, from_.strides()[along_] * parts}, {result, to_.strides()[along_] * parts},
                          std::min(block_, columns_ - c), outputs);
            }
    }

  private:
    dm::image<const T> from_;
    dm::image<T> to_;
    int along_, other_;
    std::ptrdiff_t lines_, columns_, block_ = 0;
    column_block<Arch, R> sums_;
};
/// The pass along x: all rows of all planes, in place or not. If the last strip is not full, its last row is repeated.
template <class Arch, class T>
class pass_along_x
{
    using L = lanes<Arch, T>;
    using vec = typename L::vec;
    using scale_of_x = pass_scale<Arch, typename L::real>;

  public:
    pass_along_x(const dm::image<const T>& from, const dm::image<T>& to, std::ptrdiff_t radius)
        : from_{from}, to_{to}, pixels_{from.width(), radius}, scale_{from.width(), radius, L::pixels}
    {}

    void operator()()
    {
        const std::ptrdiff_t width = from_.width(), height = from_.height();
        const std::ptrdiff_t count = height * std::min(from_.depth(), to_.depth());
        // Local variables stay in registers, members do not, since the pixels that are stored could be part of them.
        strip<Arch, T> pixels = std::move(pixels_);
        const scale_of_x scale = std::move(scale_);
        const vec inverse(scale.inverse());
        for (std::ptrdiff_t first = 0; first < count; first += L::rows) {
            const T* source[L::rows];
            T* result[L::rows];
            for (int k = 0; k < L::rows; ++k) {
                const std::ptrdiff_t row = std::min(first + k, count - 1);
                source[k] = from_.row(row % height, row / height);
                result[k] = to_.row(row % height, row / height);
            }
            for (std::ptrdiff_t x = 0; x < width; x += L::pixels)
                for (int g = 0; g < L::groups; ++g) {
                    vec square[L::pixels];
                    for (int j = 0; j < L::pixels; ++j)
                        square[j] = L::load_some(source[g * L::pixels + j] + x, width - x);
                    pixels.put(x, g, square);
                }
            pixels.run([](vec sum, vec entering, vec leaving) { return sum + (entering - leaving); },
                       [&](std::ptrdiff_t x, int, vec sum) { return sum * inverse * vec(scale[x]); }, result);
        }
    }

  private:
    dm::image<const T> from_;
    dm::image<T> to_;
    strip<Arch, T> pixels_;
    scale_of_x scale_;
};

}  // namespace box

template <class Arch, class T>
prepared_filter box_pass_simd(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius)
{
    if (!box_pass_has_lanes<T>(from, to)) return box_pass_plain<T>(from, to, along, radius);
    if (along == axis::x) return box::pass_along_x<Arch, T>{from, to, radius};
    return box::pass_down<Arch, T>{from, to, along, radius};
}

}  // namespace qorv::functions
