#pragma once

#include "functions/rank/median_filter.h"
#include "functions/rank/median_simd.h"
#include "image/lanes_simd.h"

// Neighbouring windows share sorted columns: first, the columns of a stretch that fits in the first-level cache are
// sorted; each window then combines the sorted columns that it covers.
namespace qorv::functions {

constexpr std::ptrdiff_t network_stretch = 128;

/// Room for the columns of a stretch's windows and for reads and writes past them.
template <class T>
using network_line = T[network_stretch + 2 * network_slack];

template <class Batch>
Batch middle(Batch a, Batch b, Batch c)
{
    return max(min(a, b), min(max(a, b), c));
}

template <class Arch, class T>
void medians_of_9(const T* const* rows, std::ptrdiff_t begin, T* out, std::ptrdiff_t count)
{
    using batch = xsimd::batch<T, Arch>;
    constexpr std::ptrdiff_t lanes = batch::size;
    const auto at = [](const T* from) { return batch::load_unaligned(from); };
    network_line<T> low, mid, high;
    for (std::ptrdiff_t x = 0; x < count + 2; x += lanes) {
        batch a = at(rows[0] + begin + x), b = at(rows[1] + begin + x), c = at(rows[2] + begin + x);
        exchange(a, b);
        exchange(b, c);
        exchange(a, b);
        a.store_unaligned(low + x);
        b.store_unaligned(mid + x);
        c.store_unaligned(high + x);
    }
    for (std::ptrdiff_t x = 0; x < count; x += lanes) {
        const batch largest_low = max(max(at(low + x), at(low + x + 1)), at(low + x + 2));
        const batch smallest_high = min(min(at(high + x), at(high + x + 1)), at(high + x + 2));
        const batch middle_mid = middle(at(mid + x), at(mid + x + 1), at(mid + x + 2));
        dm::simd::store_first(middle(largest_low, middle_mid, smallest_high), out + begin + x, count - x);
    }
}

template <class Batch>
void sort5(Batch& a, Batch& b, Batch& c, Batch& d, Batch& e)
{
    exchange(a, b);
    exchange(d, e);
    exchange(c, e);
    exchange(c, d);
    exchange(b, e);
    exchange(a, d);
    exchange(a, c);
    exchange(b, d);
    exchange(b, c);
}

/// The median of the 13 values that remain candidates after the columns of a window of 25 were sorted and the five
/// values of each rank were sorted as far as needed: the two largest of the smallest (0, 1), three largest (2 to 4),
/// middle three (5 to 7), three smallest (8 to 10), two smallest of the largest (11, 12); (3, 4), (5, 6) and (8, 9) are
/// in order. A value known to be below or above more than six others is dropped at once, so that min or max replaces
/// the exchange. The sequence was found by a search over the 0-1 patterns that sorted columns can produce.
template <class Batch>
Batch median_of_candidates(Batch (&c)[13])
{
    exchange(c[1], c[3]);
    exchange(c[10], c[11]);
    exchange(c[7], c[9]);
    exchange(c[2], c[8]);
    c[2] = max(c[1], c[2]);
    exchange(c[6], c[8]);
    c[4] = min(c[4], c[8]);
    exchange(c[0], c[5]);
    c[3] = min(c[3], c[11]);
    exchange(c[3], c[5]);
    c[4] = min(c[4], c[9]);
    exchange(c[2], c[6]);
    c[3] = max(c[2], c[3]);
    c[10] = max(c[0], c[10]);
    c[5] = min(c[5], c[12]);
    exchange(c[5], c[6]);
    exchange(c[4], c[10]);
    c[7] = max(c[3], c[7]);
    c[5] = max(c[4], c[5]);
    c[6] = min(c[6], c[10]);
    exchange(c[5], c[6]);
    c[7] = max(c[5], c[7]);
    return min(c[6], c[7]);
}

/// Five values of the same rank in their columns: two ordered pairs and a single value.
template <class Batch>
struct five_of_rank
{
    Batch low1, high1, low2, high2, single;

    Batch smallest_of_pairs() const { return min(low1, low2); }
    Batch largest_of_pairs() const { return max(high1, high2); }
    /// The middle two of the pairs' four values, in order.
    void middle_of_pairs(Batch& a, Batch& b) const
    {
        const Batch u = max(low1, low2);
        const Batch v = min(high1, high2);
        a = min(u, v);
        b = max(u, v);
    }
};

template <class Arch, class T>
void medians_of_25(const T* const* rows, std::ptrdiff_t begin, T* out, std::ptrdiff_t count)
{
    using batch = xsimd::batch<T, Arch>;
    constexpr std::ptrdiff_t lanes = batch::size;
    const auto at = [](const T* from) { return batch::load_unaligned(from); };
    network_line<T> sorted[5], low[5], high[5];  // by rank; low and high of each column and its right neighbour
    for (std::ptrdiff_t x = 0; x < count + 4; x += lanes) {
        batch c[5];
        for (int i = 0; i < 5; ++i) c[i] = at(rows[i] + begin + x);
        sort5(c[0], c[1], c[2], c[3], c[4]);
        for (int i = 0; i < 5; ++i) c[i].store_unaligned(sorted[i] + x);
    }
    for (int i = 0; i < 5; ++i)
        for (std::ptrdiff_t x = 0; x < count + 3; x += lanes) {
            batch a = at(sorted[i] + x), b = at(sorted[i] + x + 1);
            exchange(a, b);
            a.store_unaligned(low[i] + x);
            b.store_unaligned(high[i] + x);
        }
    for (std::ptrdiff_t x = 0; x < count; x += lanes) {
        const auto rank = [&](int i) {
            return five_of_rank<batch>{at(low[i] + x), at(high[i] + x), at(low[i] + x + 2), at(high[i] + x + 2),
                                       at(sorted[i] + x + 4)};
        };
        batch c[13];
        batch a, b;
        const five_of_rank<batch> r0 = rank(0), r1 = rank(1), r2 = rank(2), r3 = rank(3), r4 = rank(4);
        r0.middle_of_pairs(a, b);
        c[0] = max(b, r0.single);
        c[1] = r0.largest_of_pairs();
        r1.middle_of_pairs(a, b);
        c[2] = max(a, r1.single);
        c[3] = b;
        c[4] = r1.largest_of_pairs();
        r2.middle_of_pairs(c[5], c[6]);
        c[7] = min(r2.largest_of_pairs(), max(r2.smallest_of_pairs(), r2.single));
        r3.middle_of_pairs(a, b);
        c[8] = r3.smallest_of_pairs();
        c[9] = a;
        c[10] = min(b, r3.single);
        r4.middle_of_pairs(a, b);
        c[11] = r4.smallest_of_pairs();
        c[12] = min(a, r4.single);
        dm::simd::store_first(median_of_candidates(c), out + begin + x, count - x);
    }
}

template <class Arch, class T>
void median_row(const T* const* rows, std::ptrdiff_t radius, T* out, std::ptrdiff_t width)
{
    static_assert(xsimd::batch<T, Arch>::size <= network_slack);
    for (std::ptrdiff_t x = 0; x < width; x += network_stretch) {
        const std::ptrdiff_t count = width - x < network_stretch ? width - x : network_stretch;
        if (radius == 1)
            medians_of_9<Arch>(rows, x, out, count);
        else
            medians_of_25<Arch>(rows, x, out, count);
    }
}

}  // namespace qorv::functions
