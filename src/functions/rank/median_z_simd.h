#pragma once

#include "functions/rank/median_simd.h"
#include "functions/rank/median_z.h"
#include "image/lanes_simd.h"

#include <limits>

namespace qorv::functions {

template <class Batch>
void sort8(Batch (&v)[8])
{
    constexpr int steps[19][2] = {{0, 4}, {1, 5}, {2, 6}, {3, 7}, {0, 2}, {1, 3}, {4, 6}, {5, 7}, {2, 4}, {3, 5},
                                  {0, 1}, {2, 3}, {4, 5}, {6, 7}, {1, 4}, {3, 6}, {1, 2}, {3, 4}, {5, 6}};
#pragma GCC unroll 19
    for (const auto& step : steps) exchange(v[step[0]], v[step[1]]);
}

/// Sorts the rows first, first + stride, ... before `end`, at most eight, in a vector of columns. Infinity fills in for
/// missing rows.
template <class Batch, class T>
void sort_every(const column_block<T>& block, std::ptrdiff_t first, std::ptrdiff_t stride, std::ptrdiff_t end,
                std::ptrdiff_t column)
{
    const auto place = [&](std::ptrdiff_t j) { return block.rows + (first + j * stride) * block.columns + column; };
    Batch v[8];
    for (std::ptrdiff_t j = 0; j < 8; ++j)
        v[j] = first + j * stride < end ? Batch::load_unaligned(place(j)) : Batch(std::numeric_limits<T>::infinity());
    sort8(v);
    for (std::ptrdiff_t j = 0; j < 8 && first + j * stride < end; ++j) v[j].store_unaligned(place(j));
}

template <class Arch, class T>
void sort_columns(const column_block<T>& block, const sorting_network& network)
{
    using batch = xsimd::batch<T, Arch>;
    constexpr std::ptrdiff_t lanes = batch::size;
    for (std::ptrdiff_t first = network.begin; first < network.begin + network.stride; ++first)
        for (std::ptrdiff_t i = 0; i < block.columns; i += lanes)
            sort_every<batch>(block, first, network.stride, network.end, i);
    for (const comparator* c = network.first; c != network.last; ++c) {
        T* low = block.rows + c->low * block.columns;
        T* high = block.rows + c->high * block.columns;
        for (std::ptrdiff_t i = 0; i < block.columns; i += lanes) {
            batch a = batch::load_unaligned(low + i), b = batch::load_unaligned(high + i);
            exchange(a, b);
            a.store_unaligned(low + i);
            b.store_unaligned(high + i);
        }
    }
}

/// In each pair of the i-th smallest value of one half and the i-th largest of the other, the smaller value belongs to
/// the lower half of all values and the larger one to the upper half.
template <class Arch, class T>
void medians_of_halves(const column_block<T>& block, std::ptrdiff_t count, T* out)
{
    using batch = xsimd::batch<T, Arch>;
    constexpr std::ptrdiff_t lanes = batch::size;
    const bool odd = block.depth % 2 != 0;  // the first half is then one longer, and its smallest value has no partner
    const std::ptrdiff_t half = (block.depth + 1) / 2;
    for (std::ptrdiff_t i = 0; i < count; i += lanes) {
        const auto at = [&](std::ptrdiff_t z) { return batch::load_unaligned(block.rows + z * block.columns + i); };
        batch lower = odd ? at(0) : min(at(0), at(block.depth - 1));
        batch upper = odd ? at(0) : max(at(0), at(block.depth - 1));
        for (std::ptrdiff_t z = 1; z < half; ++z) {
            const batch partner = at(block.depth - (odd ? 0 : 1) - z);
            lower = max(lower, min(at(z), partner));
            upper = min(upper, max(at(z), partner));
        }
        dm::simd::store_first(odd ? lower : (lower + upper) * batch(T(0.5)), out + i, count - i);
    }
}

}  // namespace qorv::functions
