#include "functions/smoothing/moving_average_down.h"

#include "functions/smoothing/moving_average_parts.h"
#include "image/overlap.h"

#include <algorithm>
#include <vector>

namespace qorv::functions {

using namespace box;

namespace {

/// `n` rows of real numbers, `pitch` apart.
template <class R>
struct rows
{
    R* data;
    std::ptrdiff_t pitch;
    R* operator[](std::ptrdiff_t i) const { return data + i * pitch; }
};

enum class leaving
{
    read_again,
    kept
};

/// Runs the sums of some neighbouring columns down the rows. Where the window has no sample a row of zeros stands in:
/// adding or taking away +0 changes no sum, because a sum that began with +0 never becomes -0.
/// The samples that leave the window are read again, or kept since they entered, in a ring of as many rows as the
/// window: then the results may overwrite them, and rows that evict each other from the cache are read only once.
template <class R>
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

    void run(rows<const R> from, rows<R> to, std::ptrdiff_t columns, std::ptrdiff_t outputs)
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
            else  // the sample that enters takes the place of the one that leaves
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
    pass_scale<R> scale_;
};

}  // namespace

template <class T>
void box_pass_down(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius)
{
    using R = real_of<T>;
    constexpr std::ptrdiff_t parts = sizeof(T) / sizeof(R);
    const int a = static_cast<int>(along), other = a == 1 ? 2 : 1;
    const std::ptrdiff_t n = from.sizes()[a], outputs = std::min(n, to.sizes()[a]);
    const bool in_place = dm::same_pixels(from, to);
    std::ptrdiff_t columns = from.width() * parts, lines = std::min(from.sizes()[other], to.sizes()[other]);
    if (along == axis::z && from.strides()[1] == from.width() && to.strides()[1] == to.width()) {
        columns *= lines;  // gapless planes are one long row each
        lines = 1;
    }

    // Planes often lie a power of two apart. Wide blocks read long stretches of each row; the ring of a wide window
    // should stay in the cache all the same.
    const auto how = in_place || along == axis::z ? leaving::kept : leaving::read_again;
    const std::ptrdiff_t window = std::min(n, 2 * radius + 1) * static_cast<std::ptrdiff_t>(sizeof(R));
    const std::ptrdiff_t widest =
        how == leaving::kept ? std::clamp<std::ptrdiff_t>(256 * 1024 / window, 16, 2048) : 2048;
    const std::ptrdiff_t block = std::min(columns, widest);
    column_block<R> sums{block, n, radius, how};
    for (std::ptrdiff_t line = 0; line < lines; ++line)
        for (std::ptrdiff_t c = 0; c < columns; c += block) {
            const auto* source = reinterpret_cast<const R*>(from.data() + line * from.strides()[other]) + c;
            auto* result = reinterpret_cast<R*>(to.data() + line * to.strides()[other]) + c;
            sums.run({source, from.strides()[a] * parts}, {result, to.strides()[a] * parts},
                     std::min(block, columns - c), outputs);
        }
}

template box_pass_kernel<float> box_pass_down<float>;
template box_pass_kernel<double> box_pass_down<double>;
template box_pass_kernel<std::complex<float>> box_pass_down<std::complex<float>>;
template box_pass_kernel<std::complex<double>> box_pass_down<std::complex<double>>;

}  // namespace qorv::functions
