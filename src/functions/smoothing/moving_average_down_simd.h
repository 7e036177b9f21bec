#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "functions/smoothing/moving_average.h"
#include "numeric/complex.h"

/// The pass along y or z: the sums of neighbouring columns are independent, so the compiler vectorises plain loops over
/// them for the instruction set that the including file is compiled for.
namespace qorv::functions::box {

using numeric::real_of;

/// Factors of a one-dimensional pass for each sample of a line: result = sum * inverse() * [i]. They are 1, which
/// multiplies exactly, in the interior and past the end of the line. The same quotients as in `box_pass_kernel`.
template <class Arch, class R>
class pass_scale
{
  public:
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
    R inverse_;
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

    std::ptrdiff_t n_, radius_, columns_;
    std::vector<R> zeros_, sums_, ring_;
    pass_scale<Arch, R> scale_;
};

/// The pass along y or z of images with contiguous rows, in place (the same pixels) or without shared memory; the same
/// bits as the plain pass.
template <class Arch, class T>
void pass_down(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius)
{
    using R = real_of<T>;
    constexpr std::ptrdiff_t parts = sizeof(T) / sizeof(R);
    const int a = static_cast<int>(along), other = a == 1 ? 2 : 1;
    const std::ptrdiff_t n = from.sizes()[a], outputs = std::min(n, to.sizes()[a]);
    const bool in_place = from.data() == to.data();
    std::ptrdiff_t columns = from.width() * parts, lines = std::min(from.sizes()[other], to.sizes()[other]);
    if (along == axis::z && from.strides()[1] == from.width() && to.strides()[1] == to.width()) {
        columns *= lines;  // planes without gaps are one long row each
        lines = 1;
    }

    // Rows of a column are often a power of two bytes apart, so a wide block, which reads a long stretch of each row,
    // uses the cache best. A ring limits the width: it should stay in the cache.
    const auto how = in_place || along == axis::z ? leaving::kept : leaving::read_again;
    const std::ptrdiff_t window = std::min(n, 2 * radius + 1) * static_cast<std::ptrdiff_t>(sizeof(R));
    const std::ptrdiff_t widest =
        how == leaving::kept ? std::clamp<std::ptrdiff_t>(256 * 1024 / window, 16, 2048) : 2048;
    const std::ptrdiff_t block = std::min(columns, widest);
    column_block<Arch, R> sums{block, n, radius, how};
    for (std::ptrdiff_t line = 0; line < lines; ++line)
        for (std::ptrdiff_t c = 0; c < columns; c += block) {
            const auto* source = reinterpret_cast<const R*>(from.data() + line * from.strides()[other]) + c;
            auto* result = reinterpret_cast<R*>(to.data() + line * to.strides()[other]) + c;
            sums.run({source, from.strides()[a] * parts}, {result, to.strides()[a] * parts},
                     std::min(block, columns - c), outputs);
        }
}

}  // namespace qorv::functions::box
