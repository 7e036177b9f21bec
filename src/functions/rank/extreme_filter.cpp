#include "functions/rank/extreme_filter.h"

#include "functions/rank/special_values.h"
#include "image/errors.h"
#include "image/interruption.h"
#include "image/overlap.h"
#include "image/visit.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

namespace qorv::functions {
namespace {

template <class T, extreme which>
constexpr T start_value = which == extreme::maximum ? std::numeric_limits<T>::lowest() : std::numeric_limits<T>::max();

/// The extreme of the rows [begin, end) of one column, scanned downwards as NaN requires.
template <class T, extreme which>
T column_extreme(const dm::image<const T>& source, std::ptrdiff_t x, std::ptrdiff_t begin, std::ptrdiff_t end)
{
    T best = source(x, begin);
    for (std::ptrdiff_t y = begin + 1; y < end; ++y) {
        const T value = source(x, y);
        if (!(which == extreme::maximum ? best >= value : best <= value)) best = value;
    }
    return best;
}

/// The plain form for the pixels [begin, end) of row y. The ring is first filled as if the row had been filtered
/// from x = 0.
template <class T, extreme which>
void filter_run(const dm::image<const T>& source, std::ptrdiff_t radius, const dm::image<T>& destination,
                std::ptrdiff_t y, std::ptrdiff_t begin, std::ptrdiff_t end)
{
    const std::ptrdiff_t width = source.width();
    // A larger radius changes nothing: the ring holds all columns at x = 0.
    const std::ptrdiff_t reach = std::min(radius, width);
    const std::ptrdiff_t slots = 2 * reach + 1;
    const std::ptrdiff_t top = y - std::min(radius, y);
    const std::ptrdiff_t bottom = y + std::min(radius, source.height() - 1 - y) + 1;
    const auto column = [&](std::ptrdiff_t x) { return column_extreme<T, which>(source, x, top, bottom); };

    std::vector<T> ring(static_cast<std::size_t>(slots), start_value<T, which>);
    for (std::ptrdiff_t x = std::max<std::ptrdiff_t>(begin - reach, 0); x < std::min(begin + reach, width); ++x)
        ring[static_cast<std::size_t>(x % slots)] = column(x);
    for (std::ptrdiff_t x = begin; x < end; ++x) {
        const std::ptrdiff_t next = x + reach;
        ring[static_cast<std::size_t>(next % slots)] = next < width ? column(next) : start_value<T, which>;
        T best = ring[0];
        for (const T slot : ring)
            if (which == extreme::maximum ? slot > best : slot < best) best = slot;
        destination(x, y) = best;
    }
}

template <class T>
void extreme_plain(const dm::image<const T>& source, extreme which, std::ptrdiff_t radius,
                   const dm::image<T>& destination)
{
    for (std::ptrdiff_t y = 0; y < source.height(); ++y) {
        dm::stop_if_interrupted();
        if (which == extreme::maximum)
            filter_run<T, extreme::maximum>(source, radius, destination, y, 0, source.width());
        else
            filter_run<T, extreme::minimum>(source, radius, destination, y, 0, source.width());
    }
}

template <class T>
void copy(const T* from, T* to, std::ptrdiff_t count)
{
    std::memcpy(to, from, static_cast<std::size_t>(count) * sizeof(T));
}

/// The extremes of the columns [begin, end) over the window rows of each output row. Rows are taken in blocks of
/// 2 * radius + 1, and extremes run through each block from both ends: every window is the tail of one block and the
/// head of the next (M. van Herk, Pattern Recognition Letters 13 (1992) 517-521; J. Gil, M. Werman, IEEE TPAMI 15
/// (1993) 504-507).
template <class Arch, class T, extreme which>
class column_pass
{
  public:
    using rows = extreme_rows<Arch, T, which>;

    column_pass(const dm::image<const T>& source, std::ptrdiff_t begin, std::ptrdiff_t end, std::ptrdiff_t radius,
                special_rows<T>& special)
        : source_{source}, begin_{begin}, end_{end}, radius_{std::min(radius, source.height() - 1)}, special_{special}
    {}

    /// Writes the extremes of each output row y, in ascending order, to target(y), then calls done(y).
    template <class Target, class Done>
    void run(Target&& target, Done&& done)
    {
        if (radius_ == 1)
            run_three_rows(target, done);
        else
            run_blocks(target, done);
    }

  private:
    const T* row(std::ptrdiff_t y) const { return source_.row(y) + begin_; }
    std::ptrdiff_t count() const { return end_ - begin_; }

    template <class Target, class Done>
    void run_three_rows(Target&& target, Done&& done)
    {
        const std::ptrdiff_t height = source_.height();  // at least 2, since the radius was clipped
        special_.inspect(0, begin_, end_);
        for (std::ptrdiff_t y = 0; y < height; ++y) {
            if (y + 1 < height) special_.inspect(y + 1, begin_, end_);
            if (y == 0)
                rows::merge(row(0), row(1), target(y), count());
            else if (y + 1 == height)
                rows::merge(row(y - 1), row(y), target(y), count());
            else
                rows::merge(row(y - 1), row(y), row(y + 1), target(y), count());
            done(y);
        }
    }

    template <class Target, class Done>
    void run_blocks(Target&& target, Done&& done)
    {
        const std::ptrdiff_t height = source_.height();
        const std::ptrdiff_t window = 2 * radius_ + 1;
        std::vector<T> head(static_cast<std::size_t>(count()));
        std::vector<T> tails(static_cast<std::size_t>(count() * std::min(window, height)));
        const auto tail = [&](std::ptrdiff_t i) { return tails.data() + i * count(); };

        for (std::ptrdiff_t block = 0; block - radius_ < height; block += window) {
            for (std::ptrdiff_t i = 0; i < window && block - radius_ + i < height; ++i) {
                const std::ptrdiff_t y = block - radius_ + i;
                const T* previous_tail = block > 0 && i + 1 < window ? tail(i + 1) : nullptr;
                step(head.data(), block, block + i, previous_tail, y < 0 ? nullptr : target(y));
                if (y >= 0) done(y);
            }
            if (block + window - radius_ >= height) break;
            const std::ptrdiff_t last = std::min(block + window, height) - 1;
            copy(row(last), tail(last - block), count());
            for (std::ptrdiff_t y = last - 1; y > block; --y)
                rows::merge(row(y), tail(y + 1 - block), tail(y - block), count());
        }
    }

    /// Merges row y, if the image has it, into the head of its block. Writes the extremes of head and tail to `out`
    /// unless it is null. `tail` is null for windows that start with the block.
    void step(T* head, std::ptrdiff_t block, std::ptrdiff_t y, const T* tail, T* out)
    {
        const bool has_head = block < source_.height();
        if (y < source_.height()) {
            special_.inspect(y, begin_, end_);
            if (y > block && tail && out) return rows::merge_into_head(row(y), head, tail, out, count());
            if (y > block)
                rows::merge(row(y), head, head, count());
            else
                copy(row(y), head, count());
        }
        if (out && has_head && tail)
            rows::merge(head, tail, out, count());
        else if (out)
            copy<T>(has_head ? head : tail, out, count());
    }

    const dm::image<const T>& source_;
    std::ptrdiff_t begin_, end_, radius_;
    special_rows<T>& special_;
};

/// The extremes along one row, with the start value outside it. Each step covers windows four times as wide, until at
/// most four of them cover the window of the filter.
template <class Arch, class T, extreme which>
class row_pass
{
  public:
    using rows = extreme_rows<Arch, T, which>;

    row_pass(std::ptrdiff_t width, std::ptrdiff_t radius)
        : width_{width},
          reach_{std::min(radius, width)},
          line_(padded_width(), start_value<T, which>),
          a_(padded_width()),
          b_(padded_width())
    {}

    /// The row to be filtered, to be filled by the caller: `width` elements.
    T* line() { return line_.data() + reach_; }

    void run(T* out)
    {
        const std::ptrdiff_t window = 2 * reach_ + 1;
        const T* from = line_.data();
        T* to = a_.data();
        T* other = b_.data();
        std::ptrdiff_t covered = 1;
        for (std::ptrdiff_t count = width_ + 2 * reach_; 4 * covered <= window; covered *= 4) {
            count -= 3 * covered;
            rows::merge(from, from + covered, from + 2 * covered, from + 3 * covered, to, count);
            from = to;
            std::swap(to, other);
        }
        const T* last = from + window - covered;
        if (window <= 2 * covered)
            rows::merge(from, last, out, width_);
        else if (window <= 3 * covered)
            rows::merge(from, from + covered, last, out, width_);
        else
            rows::merge(from, from + covered, from + 2 * covered, last, out, width_);
    }

  private:
    std::size_t padded_width() const { return static_cast<std::size_t>(width_ + 2 * reach_); }

    std::ptrdiff_t width_, reach_;
    std::vector<T> line_, a_, b_;
};

/// Blocks of whole rows up to this size stay in a second-level cache of 1 MB; larger ones are cut into strips.
constexpr std::ptrdiff_t block_bytes = 512 * 1024;

template <class Arch, class T, extreme which>
void filter_plane(const dm::image<const T>& source, std::ptrdiff_t radius, const dm::image<T>& destination)
{
    const std::ptrdiff_t width = source.width();
    special_rows<T> special{source};
    row_pass<Arch, T, which> along{width, radius};
    const auto filter_line = [&](std::ptrdiff_t y) { along.run(destination.row(y)); };

    const std::ptrdiff_t block_rows = std::min(std::min(radius, source.height() - 1) * 2 + 1, source.height());
    if (block_rows * width * std::ptrdiff_t(sizeof(T)) <= block_bytes) {
        column_pass<Arch, T, which> down{source, 0, width, radius, special};
        down.run([&](std::ptrdiff_t) { return along.line(); }, filter_line);
    } else {
        const std::ptrdiff_t strip =
            std::max<std::ptrdiff_t>(block_bytes / (block_rows * std::ptrdiff_t(sizeof(T))), 32);
        for (std::ptrdiff_t x = 0; x < width; x += strip) {
            column_pass<Arch, T, which> down{source, x, std::min(x + strip, width), radius, special};
            down.run([&](std::ptrdiff_t y) { return destination.row(y) + x; }, [](std::ptrdiff_t) {});
        }
        for (std::ptrdiff_t y = 0; y < source.height(); ++y) {
            copy<T>(destination.row(y), along.line(), width);
            filter_line(y);
        }
    }
    special.repair(radius, [&](std::ptrdiff_t y, std::ptrdiff_t begin, std::ptrdiff_t end) {
        dm::stop_if_interrupted();
        filter_run<T, which>(source, radius, destination, y, begin, end);
    });
}

/// Rows that are not contiguous and windows with a NaN or -0 take the plain form.
template <class T, class Arch>
void extreme_fast(const dm::image<const T>& source, extreme which, std::ptrdiff_t radius,
                  const dm::image<T>& destination)
{
    if (source.strides()[0] != 1 || destination.strides()[0] != 1)
        return extreme_plain<T>(source, which, radius, destination);
    if (radius == 0)
        for (std::ptrdiff_t y = 0; y < source.height(); ++y) copy(source.row(y), destination.row(y), source.width());
    else if (which == extreme::maximum)
        filter_plane<Arch, T, extreme::maximum>(source, radius, destination);
    else
        filter_plane<Arch, T, extreme::minimum>(source, radius, destination);
}

}  // namespace

template <class T>
dm::variants<extreme_kernel<T>> extreme_variants()
{
    static constexpr dm::variant<extreme_kernel<T>> table[] = {{"avx2", dm::cpu::avx2, extreme_fast<T, xsimd::avx2>},
                                                               {"sse2", dm::cpu::sse2, extreme_fast<T, xsimd::sse2>},
                                                               {"plain", dm::cpu::none, extreme_plain<T>}};
    return table;
}

template <class T>
void extreme_filter(const dm::image<const T>& source, extreme which, std::int32_t radius,
                    const dm::image<T>& destination)
{
    dm::require(source.data() != nullptr && destination.data() != nullptr && radius >= 0,
                dm::errors::parameters_invalid);
    dm::require(source.width() == destination.width() && source.height() == destination.height(),
                dm::errors::different_size);
    dm::require(!dm::overlap(source, destination), dm::errors::out_of_place);

    const auto& filter = dm::choose(extreme_variants<T>());
    const std::ptrdiff_t planes = std::min(source.depth(), destination.depth());
    for (std::ptrdiff_t z = 0; z < planes; ++z) {
        dm::stop_if_interrupted();
        filter.function(source.plane(z), which, radius, destination.plane(z));
    }
}

template <class T>
using extreme_table = dm::variants<extreme_kernel<T>>;

#define INSTANTIATE(T)                               \
    template extreme_table<T> extreme_variants<T>(); \
    template void extreme_filter(const dm::image<const T>&, extreme, std::int32_t, const dm::image<T>&)
ZENTRIX_FOR_EIGHT_REALS(INSTANTIATE);
#undef INSTANTIATE

}  // namespace qorv::functions
