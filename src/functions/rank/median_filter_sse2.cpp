#include "functions/rank/median_filter_ranks.h"
#include "functions/rank/rank_packs_sse.h"

#include <algorithm>
#include <cstring>

// Sorted columns are shared by the windows that hold them. A stretch of columns small enough for the first-level cache is
// sorted first; each window then takes its neighbours' columns from there.
namespace qorv::functions {
namespace {

constexpr std::ptrdiff_t stretch = 128;

/// Room for the columns of a stretch's windows and for what whole vectors reach beyond them.
template <class T>
using line = T[stretch + 16];

template <class T>
void store_some(pack<T> values, T* out, std::ptrdiff_t count)
{
    if (count >= pack<T>::lanes) return values.store(out);
    T all[pack<T>::lanes];
    values.store(all);
    std::memcpy(out, all, static_cast<std::size_t>(count) * sizeof(T));
}

template <class Pack>
Pack middle(Pack a, Pack b, Pack c)
{
    return max(min(a, b), min(max(a, b), c));
}

template <class T>
void medians_of_9(const T* const* rows, std::ptrdiff_t begin, T* out, std::ptrdiff_t count)
{
    using P = pack<T>;
    line<T> low, mid, high;
    for (std::ptrdiff_t x = 0; x < count + 2; x += P::lanes) {
        P a = P::load(rows[0] + begin + x), b = P::load(rows[1] + begin + x), c = P::load(rows[2] + begin + x);
        exchange(a, b);
        exchange(b, c);
        exchange(a, b);
        a.store(low + x);
        b.store(mid + x);
        c.store(high + x);
    }
    const auto at = [](const T* from) { return P::load(from); };
    for (std::ptrdiff_t x = 0; x < count; x += P::lanes) {
        const P largest_low = max(max(at(low + x), at(low + x + 1)), at(low + x + 2));
        const P smallest_high = min(min(at(high + x), at(high + x + 1)), at(high + x + 2));
        const P middle_mid = middle(at(mid + x), at(mid + x + 1), at(mid + x + 2));
        store_some<T>(middle(largest_low, middle_mid, smallest_high), out + begin + x, count - x);
    }
}

template <class Pack>
void sort5(Pack& a, Pack& b, Pack& c, Pack& d, Pack& e)
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

/// The median of the 13 values that can still be it when the columns of a window of 25 are sorted and each rank's row of
/// five is sorted as far as needed: the two largest of the smallest (0, 1), three largest (2 to 4), middle three (5 to 7),
/// three smallest (8 to 10), two smallest of the largest (11, 12), with (3, 4), (5, 6) and (8, 9) in order. Every value
/// that more than six others are known to pass is left out at once, so that min or max does for an exchange. The order of
/// the steps was found by a search over the 0-1 patterns that sorted columns can give.
template <class Pack>
Pack median_of_candidates(Pack (&c)[13])
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

/// Two ordered pairs and a single value.
template <class Pack>
struct five
{
    Pack low1, high1, low2, high2, single;

    Pack smallest_pair() const { return min(low1, low2); }
    Pack largest_pair() const { return max(high1, high2); }
    /// The middle two of the pairs in order.
    void middle_pairs(Pack& a, Pack& b) const
    {
        const Pack u = max(low1, low2);
        const Pack v = min(high1, high2);
        a = min(u, v);
        b = max(u, v);
    }
};

template <class T>
void medians_of_25(const T* const* rows, std::ptrdiff_t begin, T* out, std::ptrdiff_t count)
{
    using P = pack<T>;
    line<T> sorted[5], low[5], high[5];  // by rank in the column; low and high of each column and its right neighbour
    const auto at = [](const T* from) { return P::load(from); };
    for (std::ptrdiff_t x = 0; x < count + 4; x += P::lanes) {
        P c[5];
        for (int i = 0; i < 5; ++i) c[i] = at(rows[i] + begin + x);
        sort5(c[0], c[1], c[2], c[3], c[4]);
        for (int i = 0; i < 5; ++i) c[i].store(sorted[i] + x);
    }
    for (int i = 0; i < 5; ++i)
        for (std::ptrdiff_t x = 0; x < count + 3; x += P::lanes) {
            P a = at(sorted[i] + x), b = at(sorted[i] + x + 1);
            exchange(a, b);
            a.store(low[i] + x);
            b.store(high[i] + x);
        }
    for (std::ptrdiff_t x = 0; x < count; x += P::lanes) {
        const auto rank = [&](int i) {
            return five<P>{at(low[i] + x), at(high[i] + x), at(low[i] + x + 2), at(high[i] + x + 2),
                           at(sorted[i] + x + 4)};
        };
        P c[13];
        P a, b;
        const five<P> r0 = rank(0), r1 = rank(1), r2 = rank(2), r3 = rank(3), r4 = rank(4);
        r0.middle_pairs(a, b);
        c[0] = max(b, r0.single);
        c[1] = r0.largest_pair();
        r1.middle_pairs(a, b);
        c[2] = max(a, r1.single);
        c[3] = b;
        c[4] = r1.largest_pair();
        r2.middle_pairs(c[5], c[6]);
        c[7] = min(r2.largest_pair(), max(r2.smallest_pair(), r2.single));
        r3.middle_pairs(a, b);
        c[8] = r3.smallest_pair();
        c[9] = a;
        c[10] = min(b, r3.single);
        r4.middle_pairs(a, b);
        c[11] = r4.smallest_pair();
        c[12] = min(a, r4.single);
        store_some<T>(median_of_candidates(c), out + begin + x, count - x);
    }
}

}  // namespace

template <class T>
void median_row_by_network(const T* const* rows, std::ptrdiff_t radius, T* out, std::ptrdiff_t width)
{
    for (std::ptrdiff_t x = 0; x < width; x += stretch)
        if (radius == 1)
            medians_of_9(rows, x, out, std::min(stretch, width - x));
        else
            medians_of_25(rows, x, out, std::min(stretch, width - x));
}

template void median_row_by_network(const float* const*, std::ptrdiff_t, float*, std::ptrdiff_t);
template void median_row_by_network(const double* const*, std::ptrdiff_t, double*, std::ptrdiff_t);

}  // namespace qorv::functions
