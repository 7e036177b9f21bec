#include "functions/rank/median_filter_ranks.h"
#include "functions/rank/rank_key.h"
#include "functions/rank/window_range.h"
#include "image/interruption.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>
#include <vector>

namespace qorv::functions {
namespace {

/// Width and height of a tile of outputs, at least; large windows get tiles of twice the radius. Larger tiles rank
/// fewer margin pixels twice; smaller ones keep the window's set of ranks in the first-level cache.
constexpr std::ptrdiff_t tile_side = 64;

template <class T>
struct keyed
{
    rank_key<T> key;
    std::uint32_t index;
};

constexpr int digit_bits = 11;
constexpr std::size_t buckets = std::size_t(1) << digit_bits;
template <class T>
constexpr int digits = (8 * sizeof(T) + digit_bits - 1) / digit_bits;

/// The numbers of keys with each value of a digit.
using digit_counts = std::array<std::uint32_t, buckets>;

/// Radix sort by key from the lowest digit. Digits that are the same in all keys are skipped. `scratch` and `counts`,
/// one for each digit, are overwritten.
template <class T>
void sort_keys(std::vector<keyed<T>>& items, std::vector<keyed<T>>& scratch, std::vector<digit_counts>& counts)
{
    std::fill(counts.begin(), counts.end(), digit_counts{});
    const auto digit = [](rank_key<T> key, int d) { return std::size_t(key >> (d * digit_bits)) & (buckets - 1); };
    for (const auto& item : items)
        for (int d = 0; d < digits<T>; ++d) ++counts[std::size_t(d)][digit(item.key, d)];

    scratch.resize(items.size());
    for (int d = 0; d < digits<T>; ++d) {
        auto& starts = counts[std::size_t(d)];
        if (starts[digit(items[0].key, d)] == items.size()) continue;
        std::uint32_t next = 0;
        for (std::uint32_t& start : starts) next += std::exchange(start, next);
        for (const auto& item : items) scratch[starts[digit(item.key, d)]++] = item;
        items.swap(scratch);
    }
}

/// A set of ranks: a byte, 0 or 1, for each possible one, since setting a byte is faster than setting a bit. The search
/// for the middle starts at the block of 64 ranks where the last search ended, because the middle moves little while a
/// window slides.
class rank_set
{
  public:
    /// The place of a rank's byte. Within a block, byte j of word k belongs to rank 8 * j + k, so that a sum of shifted
    /// words is the block as a mask of 64 bits.
    static std::uint32_t slot_of(std::uint32_t rank) { return (rank & ~63u) | (rank & 7u) << 3 | (rank >> 3 & 7u); }

    /// Allocates memory for ranks 0 .. most - 1.
    explicit rank_set(std::size_t most) { bytes_.reserve(bytes_for(most)); }

    /// Starts as the empty set, for ranks 0 .. count - 1.
    void start(std::size_t count)
    {
        bytes_.assign(bytes_for(count), 0);
        begin_ = below_ = 0;
    }

    void add(std::uint32_t slot)
    {
        bytes_[slot] = 1;
        below_ += slot < begin_;
    }
    void remove(std::uint32_t slot)
    {
        bytes_[slot] = 0;
        below_ -= slot < begin_;
    }

    /// The rank that has `index` smaller ones in the set, which has more than `index` ranks.
    std::uint32_t at(std::uint32_t index)
    {
        while (below_ > index) {
            begin_ -= block_size;
            below_ -= count_of_block();
        }
        for (std::uint32_t count = count_of_block(); below_ + count <= index; count = count_of_block()) {
            below_ += count;
            begin_ += block_size;
        }
        std::uint64_t mask = mask_of_block();
        for (std::uint32_t i = below_; i < index; ++i) mask &= mask - 1;
        return begin_ + static_cast<std::uint32_t>(std::countr_zero(mask));
    }

  private:
    static constexpr std::uint32_t block_size = 64;
    static std::size_t bytes_for(std::size_t count) { return (count + block_size) & ~std::size_t{block_size - 1}; }

    std::uint64_t word(int k) const
    {
        std::uint64_t bytes;
        std::memcpy(&bytes, bytes_.data() + begin_ + 8 * k, sizeof(bytes));
        return bytes;
    }
    std::uint32_t count_of_block() const
    {
        std::uint64_t sums = 0;  // of each byte, at most 8
        for (int k = 0; k < 8; ++k) sums += word(k);
        return static_cast<std::uint32_t>(sums * 0x0101010101010101 >> 56);
    }
    std::uint64_t mask_of_block() const
    {
        std::uint64_t mask = 0;
        for (int k = 8; k-- > 0;) mask = 2 * mask + word(k);
        return mask;
    }

    std::vector<std::uint8_t> bytes_;
    std::uint32_t begin_ = 0;  ///< first rank of the block where the last search ended
    std::uint32_t below_ = 0;  ///< ranks in the set below begin_
};

/// The ranks, as slots of a rank_set, of the pixels under a tile's windows, stored column by column: a window that
/// moves along a row adds a piece of one column and removes a piece of another.
template <class T>
class ranked_tile
{
  public:
    /// Allocates memory for tiles of up to `most` pixels.
    explicit ranked_tile(std::size_t most) : counts_(digits<T>)
    {
        items_.reserve(most);
        scratch_.reserve(most);
        slots_.reserve(most);
    }

    /// Ranks the positions across x down of the plane; those outside the plane are zeros.
    void rank(const dm::image<const T>& plane, window_range across, window_range down)
    {
        across_ = across;
        down_ = down;
        items_.clear();
        for (std::ptrdiff_t x = across.begin; x < across.end; ++x)
            for (std::ptrdiff_t y = down.begin; y < down.end; ++y) {
                const bool inside = x >= 0 && x < plane.width() && y >= 0 && y < plane.height();
                items_.push_back({key_of(inside ? plane(x, y) : T(0)), static_cast<std::uint32_t>(items_.size())});
            }
        sort_keys(items_, scratch_, counts_);
        slots_.resize(items_.size());
        for (std::size_t i = 0; i < items_.size(); ++i)
            slots_[items_[i].index] = rank_set::slot_of(static_cast<std::uint32_t>(i));
    }

    std::size_t size() const { return items_.size(); }
    const std::uint32_t* column(std::ptrdiff_t x, std::ptrdiff_t y) const
    {
        return slots_.data() + (x - across_.begin) * down_.count() + (y - down_.begin);
    }
    T value(std::uint32_t rank) const { return value_of<T>(items_[rank].key); }

    window_range across() const { return across_; }
    window_range down() const { return down_; }

  private:
    window_range across_{}, down_{};
    std::vector<keyed<T>> items_, scratch_;
    std::vector<std::uint32_t> slots_;
    std::vector<digit_counts> counts_;
};

/// The set of ranks of a square window that slides over a tile.
template <class T>
class sliding_window
{
  public:
    /// The window around (x, y); `set` is overwritten.
    sliding_window(const ranked_tile<T>& tile, std::ptrdiff_t radius, std::ptrdiff_t x, std::ptrdiff_t y, rank_set& set)
        : tile_{tile}, radius_{radius}, set_{set}, across_{visible(x, tile.across())}, down_{visible(y, tile.down())}
    {
        set_.start(tile.size());
        for (std::ptrdiff_t u = across_.begin; u < across_.end; ++u) add_column(u);
    }

    void move_x(std::ptrdiff_t x)
    {
        const window_range next = visible(x, tile_.across());
        if (next.end > across_.end) add_column(across_.end);
        if (next.begin < across_.begin) add_column(next.begin);
        if (next.begin > across_.begin) remove_column(across_.begin);
        if (next.end < across_.end) remove_column(next.end);
        across_ = next;
    }

    void move_down(std::ptrdiff_t y)
    {
        const window_range next = visible(y, tile_.down());
        for (std::ptrdiff_t u = across_.begin; u < across_.end; ++u) {
            if (next.end > down_.end) set_.add(*tile_.column(u, down_.end));
            if (next.begin > down_.begin) set_.remove(*tile_.column(u, down_.begin));
        }
        down_ = next;
    }

    T median()
    {
        const auto count = static_cast<std::uint32_t>(across_.count() * down_.count());
        const T middle = tile_.value(set_.at(count / 2));
        return count % 2 != 0 ? middle : (middle + tile_.value(set_.at(count / 2 - 1))) * T(0.5);
    }

  private:
    window_range visible(std::ptrdiff_t centre, window_range tile) const
    {
        const window_range window = window_around(centre - tile.begin, radius_, tile.count());
        return {window.begin + tile.begin, window.end + tile.begin};
    }
    void add_column(std::ptrdiff_t x)
    {
        const std::uint32_t* slots = tile_.column(x, down_.begin);
        for (std::ptrdiff_t i = 0; i < down_.count(); ++i) set_.add(slots[i]);
    }
    void remove_column(std::ptrdiff_t x)
    {
        const std::uint32_t* slots = tile_.column(x, down_.begin);
        for (std::ptrdiff_t i = 0; i < down_.count(); ++i) set_.remove(slots[i]);
    }

    const ranked_tile<T>& tile_;
    std::ptrdiff_t radius_;
    rank_set& set_;
    window_range across_, down_;
};

/// Filters the outputs row by row, alternately rightwards and leftwards.
template <class T>
void filter_tile(const ranked_tile<T>& tile, std::ptrdiff_t radius, const dm::image<T>& destination, window_range xs,
                 window_range ys, rank_set& set)
{
    sliding_window<T> window{tile, radius, xs.begin, ys.begin, set};
    bool right = true;
    for (std::ptrdiff_t y = ys.begin; y < ys.end; ++y, right = !right) {
        dm::stop_if_interrupted();
        if (y > ys.begin) window.move_down(y);
        const std::ptrdiff_t step = right ? 1 : -1;
        std::ptrdiff_t x = right ? xs.begin : xs.end - 1;
        destination(x, y) = window.median();
        for (std::ptrdiff_t i = 1; i < xs.count(); ++i) {
            window.move_x(x += step);
            destination(x, y) = window.median();
        }
    }
}

}  // namespace

template <class T>
void median_by_ranks(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                     const dm::image<T>& destination)
{
    const std::ptrdiff_t width = source.width();
    const std::ptrdiff_t height = source.height();
    const std::ptrdiff_t reach_x = outside == padding::none ? std::min(radius, width) : radius;
    const std::ptrdiff_t reach_y = outside == padding::none ? std::min(radius, height) : radius;
    const auto under_windows = [&](window_range outputs, std::ptrdiff_t reach, std::ptrdiff_t size) {
        outputs.begin -= reach;
        outputs.end += reach;
        if (outside == padding::none) {
            outputs.begin = std::max<std::ptrdiff_t>(outputs.begin, 0);
            outputs.end = std::min(outputs.end, size);
        }
        return outputs;
    };
    const std::ptrdiff_t side_x = std::max(tile_side, 2 * reach_x);
    const std::ptrdiff_t side_y = std::max(tile_side, 2 * reach_y);
    // All memory is allocated here, so that a lack of it leaves the destination as it was.
    const auto most_across = [&](std::ptrdiff_t side, std::ptrdiff_t reach, std::ptrdiff_t size) {
        const std::ptrdiff_t most = std::min(side, size) + 2 * reach;
        return static_cast<std::size_t>(outside == padding::none ? std::min(most, size) : most);
    };
    const std::size_t most = most_across(side_x, reach_x, width) * most_across(side_y, reach_y, height);
    ranked_tile<T> tile{most};
    rank_set set{most};
    for (std::ptrdiff_t z = 0; z < std::min(source.depth(), destination.depth()); ++z) {
        const auto from = source.plane(z);
        const auto to = destination.plane(z);
        for (std::ptrdiff_t y = 0; y < height; y += side_y)
            for (std::ptrdiff_t x = 0; x < width; x += side_x) {
                const window_range xs{x, std::min(x + side_x, width)};
                const window_range ys{y, std::min(y + side_y, height)};
                tile.rank(from, under_windows(xs, reach_x, width), under_windows(ys, reach_y, height));
                filter_tile(tile, radius, to, xs, ys, set);
            }
    }
}

template void median_by_ranks(const dm::image<const float>&, std::ptrdiff_t, padding, const dm::image<float>&);
template void median_by_ranks(const dm::image<const double>&, std::ptrdiff_t, padding, const dm::image<double>&);

}  // namespace qorv::functions
