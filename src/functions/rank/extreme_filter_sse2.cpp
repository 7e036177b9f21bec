#include "functions/rank/extreme_filter.h"
#include "functions/rank/extreme_order.h"
#include "functions/rank/extreme_stretch.h"
#include "functions/rank/special_values.h"

#include <cstring>
#include <utility>

// Columns first, then rows. Down the columns, the running extremes of blocks of 2 * radius + 1 rows, from each end:
// every window is the tail of one block and the head of the next (M. van Herk, Pattern Recognition Letters 13 (1992)
// 517-521; J. Gil, M. Werman, IEEE TPAMI 15 (1993) 504-507). Along the row, windows four times as wide in each step
// until up to four of them cover the wanted one. All loops are over contiguous elements, which the compiler turns into
// vector operations.
namespace qorv::functions {
namespace {

/// Blocks of rows up to this size are kept for a whole row's width; it leaves room in a second-level cache of 1 MB.
constexpr std::ptrdiff_t block_bytes = 512 * 1024;

template <class T, class Order>
void merge(const T* __restrict a, const T* __restrict b, T* __restrict into, std::ptrdiff_t count)
{
    for (std::ptrdiff_t i = 0; i < count; ++i) into[i] = Order::beats(a[i], b[i]) ? a[i] : b[i];
}

template <class T, class Order>
void merge(const T* __restrict a, T* __restrict into, std::ptrdiff_t count)
{
    for (std::ptrdiff_t i = 0; i < count; ++i) into[i] = Order::beats(a[i], into[i]) ? a[i] : into[i];
}

template <class T, class Order>
void merge(const T* __restrict a, const T* __restrict b, const T* __restrict c, T* __restrict into,
           std::ptrdiff_t count)
{
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const T ab = Order::beats(a[i], b[i]) ? a[i] : b[i];
        into[i] = Order::beats(c[i], ab) ? c[i] : ab;
    }
}

template <class T, class Order>
void merge(const T* __restrict a, const T* __restrict b, const T* __restrict c, const T* __restrict d,
           T* __restrict into, std::ptrdiff_t count)
{
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const T ab = Order::beats(a[i], b[i]) ? a[i] : b[i];
        const T cd = Order::beats(c[i], d[i]) ? c[i] : d[i];
        into[i] = Order::beats(cd, ab) ? cd : ab;
    }
}

/// The next row goes into the head of its block, and head and tail together make an output row.
template <class T, class Order>
void merge_into_head(const T* __restrict row, T* __restrict head, const T* __restrict tail, T* __restrict out,
                     std::ptrdiff_t count)
{
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const T best = Order::beats(row[i], head[i]) ? row[i] : head[i];
        head[i] = best;
        out[i] = Order::beats(tail[i], best) ? tail[i] : best;
    }
}

template <class T>
void copy(const T* from, T* to, std::ptrdiff_t count)
{
    std::memcpy(to, from, static_cast<std::size_t>(count) * sizeof(T));
}

/// The extremes of the columns [begin, end) over each output row's window rows.
template <class T, class Order>
class column_pass
{
  public:
    column_pass(const dm::image<const T>& source, std::ptrdiff_t begin, std::ptrdiff_t end, std::ptrdiff_t radius,
                special_rows<T>& special)
        : source_{source}, begin_{begin}, end_{end}, radius_{std::min(radius, source.height() - 1)}, special_{special}
    {}

    /// Has target(y) say where row y's extremes go, then calls done(y); y ascends.
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
        const std::ptrdiff_t height = source_.height();  // at least 2, or the radius would be 0
        special_.look(0, begin_, end_);
        for (std::ptrdiff_t y = 0; y < height; ++y) {
            if (y + 1 < height) special_.look(y + 1, begin_, end_);
            if (y == 0)
                merge<T, Order>(row(0), row(1), target(y), count());
            else if (y + 1 == height)
                merge<T, Order>(row(y - 1), row(y), target(y), count());
            else
                merge<T, Order>(row(y - 1), row(y), row(y + 1), target(y), count());
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
                const T* behind = block > 0 && i + 1 < window ? tail(i + 1) : nullptr;
                step(head.data(), block, block + i, behind, y < 0 ? nullptr : target(y));
                if (y >= 0) done(y);
            }
            if (block + window - radius_ >= height) break;
            const std::ptrdiff_t last = std::min(block + window, height) - 1;
            copy(row(last), tail(last - block), count());
            for (std::ptrdiff_t y = last - 1; y > block; --y)
                merge<T, Order>(row(y), tail(y + 1 - block), tail(y - block), count());
        }
    }

    /// Takes row y, if there is one, into its block's head, and writes what head and tail, as far as there, make of it.
    void step(T* head, std::ptrdiff_t block, std::ptrdiff_t y, const T* tail, T* out)
    {
        const bool has_head = block < source_.height();
        if (y < source_.height()) {
            special_.look(y, begin_, end_);
            if (y > block && tail && out) return merge_into_head<T, Order>(row(y), head, tail, out, count());
            if (y > block)
                merge<T, Order>(row(y), head, count());
            else
                copy(row(y), head, count());
        }
        if (out && has_head && tail)
            merge<T, Order>(head, tail, out, count());
        else if (out)
            copy<T>(has_head ? head : tail, out, count());
    }

    const dm::image<const T>& source_;
    std::ptrdiff_t begin_, end_, radius_;
    special_rows<T>& special_;
};

/// The extremes along one row; outside it stands the start value.
template <class T, class Order>
class row_pass
{
  public:
    row_pass(std::ptrdiff_t width, std::ptrdiff_t radius)
        : width_{width}, reach_{std::min(radius, width)}, line_(padded(), Order::start), a_(padded()), b_(padded())
    {}

    /// Where the row to be filtered is put, `width` elements.
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
            merge<T, Order>(from, from + covered, from + 2 * covered, from + 3 * covered, to, count);
            from = to;
            std::swap(to, other);
        }
        const T* last = from + window - covered;
        if (window <= 2 * covered)
            merge<T, Order>(from, last, out, width_);
        else if (window <= 3 * covered)
            merge<T, Order>(from, from + covered, last, out, width_);
        else
            merge<T, Order>(from, from + covered, from + 2 * covered, last, out, width_);
    }

  private:
    std::size_t padded() const { return static_cast<std::size_t>(width_ + 2 * reach_); }

    std::ptrdiff_t width_, reach_;
    std::vector<T> line_, a_, b_;
};

template <class T, class Order>
void filter_plane(const dm::image<const T>& source, std::ptrdiff_t radius, const dm::image<T>& destination)
{
    const std::ptrdiff_t width = source.width();
    special_rows<T> special{source};
    row_pass<T, Order> along{width, radius};
    const auto filter_line = [&](std::ptrdiff_t y) { along.run(destination.row(y)); };

    const std::ptrdiff_t block_rows = std::min(std::min(radius, source.height() - 1) * 2 + 1, source.height());
    if (block_rows * width * std::ptrdiff_t(sizeof(T)) <= block_bytes) {
        column_pass<T, Order> down{source, 0, width, radius, special};
        down.run([&](std::ptrdiff_t) { return along.line(); }, filter_line);
    } else {
        const std::ptrdiff_t strip =
            std::max<std::ptrdiff_t>(block_bytes / (block_rows * std::ptrdiff_t(sizeof(T))), 32);
        for (std::ptrdiff_t x = 0; x < width; x += strip) {
            column_pass<T, Order> down{source, x, std::min(x + strip, width), radius, special};
            down.run([&](std::ptrdiff_t y) { return destination.row(y) + x; }, [](std::ptrdiff_t) {});
        }
        for (std::ptrdiff_t y = 0; y < source.height(); ++y) {
            copy<T>(destination.row(y), along.line(), width);
            filter_line(y);
        }
    }
    special.repair(radius, [&](std::ptrdiff_t y, std::ptrdiff_t begin, std::ptrdiff_t end) {
        extreme_stretch<T, Order>(source, radius, destination, y, begin, end);
    });
}

}  // namespace

template <class T>
void extreme_vector(const dm::image<const T>& source, extreme which, std::ptrdiff_t radius,
                    const dm::image<T>& destination)
{
    if (source.strides()[0] != 1 || destination.strides()[0] != 1)
        return extreme_plain<T>(source, which, radius, destination);
    if (radius == 0)
        for (std::ptrdiff_t y = 0; y < source.height(); ++y) copy(source.row(y), destination.row(y), source.width());
    else if (which == extreme::maximum)
        filter_plane<T, largest<T>>(source, radius, destination);
    else
        filter_plane<T, smallest<T>>(source, radius, destination);
}

template extreme_kernel<std::int8_t> extreme_vector<std::int8_t>;
template extreme_kernel<std::uint8_t> extreme_vector<std::uint8_t>;
template extreme_kernel<std::int16_t> extreme_vector<std::int16_t>;
template extreme_kernel<std::uint16_t> extreme_vector<std::uint16_t>;
template extreme_kernel<std::int32_t> extreme_vector<std::int32_t>;
template extreme_kernel<std::uint32_t> extreme_vector<std::uint32_t>;
template extreme_kernel<float> extreme_vector<float>;
template extreme_kernel<double> extreme_vector<double>;

}  // namespace qorv::functions
