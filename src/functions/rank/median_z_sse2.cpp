#include "functions/rank/median_z.h"
#include "functions/rank/nth_element.h"
#include "functions/rank/rank_packs_sse.h"
#include "functions/rank/special_values.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

namespace qorv::functions {
namespace {

constexpr std::ptrdiff_t network_planes = 512;
constexpr std::ptrdiff_t line_bytes = 64;          // columns come in cache lines of each plane,
constexpr std::ptrdiff_t widest = 4;               // up to so many, as long as
constexpr std::ptrdiff_t block_bytes = 24 * 1024;  // all of the block stays in a first-level cache of 32 KB

struct comparator
{
    std::int32_t low, high;
};

/// Sorts the wires begin .. begin + count - 1: merge exchange (K. E. Batcher; D. E. Knuth, The Art of Computer Programming
/// 3, 5.2.2, algorithm M). Its passes over the longest distances come to sorting every stride-th wire, up to eight of
/// them, which fit in registers; the comparators are the rest.
struct sorting_network
{
    std::ptrdiff_t begin, end, stride;
    std::vector<comparator> comparators;

    sorting_network(std::ptrdiff_t first, std::ptrdiff_t count) : begin{first}, end{first + count}
    {
        std::ptrdiff_t top = 1;
        while (2 * top < count) top *= 2;
        stride = std::max<std::ptrdiff_t>(top / 4, 1);
        for (std::ptrdiff_t p = stride / 2; p > 0; p /= 2) add_pass(count, top, p);
    }

  private:
    void add_pass(std::ptrdiff_t count, std::ptrdiff_t top, std::ptrdiff_t p)
    {
        std::ptrdiff_t q = top;
        std::ptrdiff_t r = 0;
        for (std::ptrdiff_t d = p; d > 0; d = q - p, q /= 2, r = p)
            for (std::ptrdiff_t i = 0; i + d < count; ++i)
                if ((i & p) == r) comparators.push_back({std::int32_t(begin + i), std::int32_t(begin + i + d)});
    }
};

template <class Pack>
void sort8(Pack (&v)[8])
{
    constexpr int steps[19][2] = {{0, 4}, {1, 5}, {2, 6}, {3, 7}, {0, 2}, {1, 3}, {4, 6}, {5, 7}, {2, 4}, {3, 5},
                                  {0, 1}, {2, 3}, {4, 5}, {6, 7}, {1, 4}, {3, 6}, {1, 2}, {3, 4}, {5, 6}};
#pragma GCC unroll 19
    for (const auto& step : steps) exchange(v[step[0]], v[step[1]]);
}

/// Neighbouring columns of the stack, a row for each plane.
template <class T>
class column_block
{
  public:
    using P = pack<T>;

    explicit column_block(std::ptrdiff_t depth)
        : depth_{depth},
          half_{(depth + 1) / 2},
          columns_{line_bytes / std::ptrdiff_t(sizeof(T)) *
                   std::clamp<std::ptrdiff_t>(block_bytes / (line_bytes * depth), 1, widest)},
          rows_(static_cast<std::size_t>(depth * columns_)),
          column_(static_cast<std::size_t>(depth))
    {
        if (depth > network_planes) return;
        networks_.emplace_back(0, half_);
        if (depth > half_) networks_.emplace_back(half_, depth - half_);
    }

    std::ptrdiff_t columns() const { return columns_; }

    /// Medians of `count` columns from (x, y) on.
    void run(const dm::image<const T>& stack, std::ptrdiff_t x, std::ptrdiff_t y, std::ptrdiff_t count, T* out)
    {
        for (std::ptrdiff_t z = 0; z < depth_; ++z)
            std::memcpy(row(z), stack.row(y, z) + x, static_cast<std::size_t>(count) * sizeof(T));
        if (depth_ > network_planes || any_special(rows_.data(), depth_ * columns_)) return select_each(count, out);
        for (const auto& network : networks_) sort(network);
        for (std::ptrdiff_t i = 0; i < count; i += P::lanes) store_medians(i, out + i, std::min(P::lanes, count - i));
    }

  private:
    T* row(std::ptrdiff_t z) { return rows_.data() + z * columns_; }

    void select_each(std::ptrdiff_t count, T* out)
    {
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            for (std::ptrdiff_t z = 0; z < depth_; ++z) column_[static_cast<std::size_t>(z)] = row(z)[i];
            out[i] = median_of(column_.data(), column_.data() + depth_);
        }
    }

    void sort(const sorting_network& network)
    {
        for (std::ptrdiff_t first = network.begin; first < network.begin + network.stride; ++first)
            for (std::ptrdiff_t i = 0; i < columns_; i += P::lanes) sort_every(first, network.stride, network.end, i);
        for (const comparator c : network.comparators) {
            T* low = row(c.low);
            T* high = row(c.high);
            for (std::ptrdiff_t i = 0; i < columns_; i += P::lanes) {
                const P a = P::load(low + i);
                const P b = P::load(high + i);
                min(a, b).store(low + i);
                max(a, b).store(high + i);
            }
        }
    }

    /// The rows first, first + stride, ... before `end`; the place of missing ones is taken by infinity.
    void sort_every(std::ptrdiff_t first, std::ptrdiff_t stride, std::ptrdiff_t end, std::ptrdiff_t column)
    {
        P v[8];
        for (std::ptrdiff_t j = 0; j < 8; ++j)
            v[j] = first + j * stride < end ? P::load(row(first + j * stride) + column)
                                            : P::all(std::numeric_limits<T>::infinity());
        sort8(v);
        for (std::ptrdiff_t j = 0; j < 8 && first + j * stride < end; ++j) v[j].store(row(first + j * stride) + column);
    }

    /// Of each pair (i-th smallest of one half, i-th largest of the other) the smaller values are the lower half of all
    /// and the larger ones the upper half.
    void store_medians(std::ptrdiff_t column, T* out, std::ptrdiff_t count)
    {
        const bool odd = depth_ % 2 != 0;  // then the first half is one longer, and its smallest has no partner
        const auto at = [&](std::ptrdiff_t z) { return P::load(row(z) + column); };
        P lower = odd ? at(0) : min(at(0), at(depth_ - 1));
        P upper = odd ? at(0) : max(at(0), at(depth_ - 1));
        for (std::ptrdiff_t z = 1; z < half_; ++z) {
            const P partner = at(depth_ - (odd ? 0 : 1) - z);
            lower = max(lower, min(at(z), partner));
            upper = min(upper, max(at(z), partner));
        }
        T below[P::lanes], above[P::lanes];
        lower.store(below);
        upper.store(above);
        for (std::ptrdiff_t j = 0; j < count; ++j) out[j] = odd ? below[j] : (below[j] + above[j]) * T(0.5);
    }

    std::ptrdiff_t depth_, half_, columns_;
    std::vector<T> rows_, column_;
    std::vector<sorting_network> networks_;
};

}  // namespace

template <class T>
void median_z_vector(const dm::image<const T>& stack, const dm::image<T>& destination)
{
    if (stack.strides()[0] != 1 || destination.strides()[0] != 1) return median_z_plain<T>(stack, destination);
    column_block<T> block{stack.depth()};
    const std::ptrdiff_t step = block.columns();
    for (std::ptrdiff_t y = 0; y < stack.height(); ++y)
        for (std::ptrdiff_t x = 0; x < stack.width(); x += step)
            block.run(stack, x, y, std::min(step, stack.width() - x), destination.row(y) + x);
}

template median_z_kernel<float> median_z_vector<float>;
template median_z_kernel<double> median_z_vector<double>;

}  // namespace qorv::functions
