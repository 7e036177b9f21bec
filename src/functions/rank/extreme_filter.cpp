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

// All memory is allocated before anything is written, so that a lack of it leaves the destination as it was.

/// Memory for the ring of column extremes of `filter_run`.
template <class T>
std::vector<T> ring_for(const dm::image<const T>& source, std::ptrdiff_t radius)
{
    return std::vector<T>(static_cast<std::size_t>(2 * std::min(radius, source.width()) + 1));
}

/// The plain form for the pixels [begin, end) of row y. The ring is first filled as if the row had been filtered
/// from x = 0.
template <class T, extreme which>
void filter_run(const dm::image<const T>& source, std::ptrdiff_t radius, const dm::image<T>& destination,
                std::ptrdiff_t y, std::ptrdiff_t begin, std::ptrdiff_t end, std::vector<T>& ring)
{
    const std::ptrdiff_t width = source.width();
    // A larger radius changes nothing: the ring holds all columns at x = 0.
    const std::ptrdiff_t reach = std::min(radius, width);
    const std::ptrdiff_t slots = 2 * reach + 1;
    const std::ptrdiff_t top = y - std::min(radius, y);
    const std::ptrdiff_t bottom = y + std::min(radius, source.height() - 1 - y) + 1;
    const auto column = [&](std::ptrdiff_t x) { return column_extreme<T, which>(source, x, top, bottom); };

    std::fill(ring.begin(), ring.end(), start_value<T, which>);
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

/// The planes that both images have.
template <class T>
std::ptrdiff_t planes_of(const dm::image<const T>& source, const dm::image<T>& destination)
{
    return std::min(source.depth(), destination.depth());
}

template <class T>
void extreme_plain(const dm::image<const T>& source, extreme which, std::ptrdiff_t radius,
                   const dm::image<T>& destination)
{
    auto ring = ring_for(source, radius);
    const auto filter_row =
        which == extreme::maximum ? filter_run<T, extreme::maximum> : filter_run<T, extreme::minimum>;
    for (std::ptrdiff_t z = 0; z < planes_of(source, destination); ++z) {
        const auto from = source.plane(z);
        const auto to = destination.plane(z);
        for (std::ptrdiff_t y = 0; y < source.height(); ++y) {
            dm::stop_if_interrupted();
            filter_row(from, radius, to, y, 0, source.width(), ring);
        }
    }
}

template <class T>
void copy(const T* from, T* to, std::ptrdiff_t count)
{
    std::memcpy(to, from, static_cast<std::size_t>(count) * sizeof(T));
}

/// Planes of contiguous rows.
template <class T>
void copy_planes(const dm::image<const T>& source, const dm::image<T>& destination)
{
    for (std::ptrdiff_t z = 0; z < planes_of(source, destination); ++z)
        for (std::ptrdiff_t y = 0; y < source.height(); ++y)
            copy(source.row(y, z), destination.row(y, z), source.width());
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

    /// Elements of memory for `columns` columns.
    static std::size_t room(std::ptrdiff_t columns, std::ptrdiff_t radius, std::ptrdiff_t height)
    {
        return static_cast<std::size_t>(columns * (1 + std::min(2 * std::min(radius, height - 1) + 1, height)));
    }

    /// memory  of room(end - begin, radius, height) elements
    column_pass(const dm::image<const T>& source, std::ptrdiff_t begin, std::ptrdiff_t end, std::ptrdiff_t radius,
                special_rows<T>& special, T* memory)
        : source_{source},
          begin_{begin},
          end_{end},
          radius_{std::min(radius, source.height() - 1)},
          special_{special},
          memory_{memory}
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
        T* const head = memory_;
        const auto tail = [&](std::ptrdiff_t i) { return memory_ + (1 + i) * count(); };

        for (std::ptrdiff_t block = 0; block - radius_ < height; block += window) {
            for (std::ptrdiff_t i = 0; i < window && block - radius_ + i < height; ++i) {
                const std::ptrdiff_t y = block - radius_ + i;
                const T* previous_tail = block > 0 && i + 1 < window ? tail(i + 1) : nullptr;
                step(head, block, block + i, previous_tail, y < 0 ? nullptr : target(y));
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
    T* memory_;
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

/// Filters planes of one size.
template <class Arch, class T, extreme which>
class plane_filter
{
  public:
    using columns = column_pass<Arch, T, which>;

    plane_filter(const dm::image<const T>& source, std::ptrdiff_t radius)
        : width_{source.width()},
          radius_{radius},
          strip_{strip_of(source, radius)},
          special_{source},
          along_{width_, radius},
          ring_{ring_for(source, radius)},
          memory_(columns::room(strip_, radius, source.height()))
    {}

    void run(const dm::image<const T>& source, const dm::image<T>& destination)
    {
        special_.start(source);
        const auto filter_line = [&](std::ptrdiff_t y) { along_.run(destination.row(y)); };
        if (strip_ == width_) {
            columns down{source, 0, width_, radius_, special_, memory_.data()};
            down.run([&](std::ptrdiff_t) { return along_.line(); }, filter_line);
        } else {
            for (std::ptrdiff_t x = 0; x < width_; x += strip_) {
                columns down{source, x, std::min(x + strip_, width_), radius_, special_, memory_.data()};
                down.run([&](std::ptrdiff_t y) { return destination.row(y) + x; }, [](std::ptrdiff_t) {});
            }
            for (std::ptrdiff_t y = 0; y < source.height(); ++y) {
                copy<T>(destination.row(y), along_.line(), width_);
                filter_line(y);
            }
        }
        special_.repair(radius_, [&](std::ptrdiff_t y, std::ptrdiff_t begin, std::ptrdiff_t end) {
            dm::stop_if_interrupted();
            filter_run<T, which>(source, radius_, destination, y, begin, end, ring_);
        });
    }

  private:
    /// The columns that are filtered together: all, or as many as keep a block of rows in the cache.
    static std::ptrdiff_t strip_of(const dm::image<const T>& source, std::ptrdiff_t radius)
    {
        const std::ptrdiff_t rows = std::min(std::min(radius, source.height() - 1) * 2 + 1, source.height());
        const std::ptrdiff_t row_bytes = rows * std::ptrdiff_t(sizeof(T));
        if (row_bytes * source.width() <= block_bytes) return source.width();
        return std::min(std::max<std::ptrdiff_t>(block_bytes / row_bytes, 32), source.width());
    }

    std::ptrdiff_t width_, radius_, strip_;
    special_rows<T> special_;
    row_pass<Arch, T, which> along_;
    std::vector<T> ring_, memory_;
};

template <class Arch, class T, extreme which>
void filter_planes(const dm::image<const T>& source, std::ptrdiff_t radius, const dm::image<T>& destination)
{
    plane_filter<Arch, T, which> filter{source, radius};
    for (std::ptrdiff_t z = 0; z < planes_of(source, destination); ++z) {
        dm::stop_if_interrupted();
        filter.run(source.plane(z), destination.plane(z));
    }
}

/// Rows that are not contiguous and windows with a NaN or -0 take the plain form.
template <class T, class Arch>
void extreme_fast(const dm::image<const T>& source, extreme which, std::ptrdiff_t radius,
                  const dm::image<T>& destination)
{
    if (source.strides()[0] != 1 || destination.strides()[0] != 1)
        return extreme_plain<T>(source, which, radius, destination);
    if (radius == 0)
        copy_planes(source, destination);
    else if (which == extreme::maximum)
        filter_planes<Arch, T, extreme::maximum>(source, radius, destination);
    else
        filter_planes<Arch, T, extreme::minimum>(source, radius, destination);
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

    dm::choose(extreme_variants<T>()).function(source, which, radius, destination);
}

template <class T>
using extreme_table = dm::variants<extreme_kernel<T>>;

#define INSTANTIATE(T)                               \
    template extreme_table<T> extreme_variants<T>(); \
    template void extreme_filter(const dm::image<const T>&, extreme, std::int32_t, const dm::image<T>&)
ZENTRIX_FOR_EIGHT_REALS(INSTANTIATE);
#undef INSTANTIATE

}  // namespace qorv::functions
