#pragma once

#include "functions/rank/nth_element.h"

#include <xsimd/xsimd.hpp>

namespace qorv::functions {

template <class Arch, class T>
row_counts count_row(const T* row, std::ptrdiff_t count, T low, T high, T* inside)
{
    using batch = xsimd::batch<T, Arch>;
    constexpr std::ptrdiff_t lanes = batch::size;
    static_assert(longest_row < 1 << 24, "a float counts exactly up to 2^24");

    const batch lows(low), highs(high), one(T(1));
    batch below(T(0)), up_to_low(T(0));
    auto nan = xsimd::isnan(lows);
    row_counts counts;
    const auto copy_inside = [&](T value) {
        inside[counts.inside] = value;
        counts.inside += (value > low) & (value < high);
    };
    std::ptrdiff_t x = 0;
    for (; x + lanes <= count; x += lanes) {
        const batch values = batch::load_unaligned(row + x);
        nan = nan | xsimd::isnan(values);
        below += batch(values < lows);
        up_to_low += batch(values <= lows);
        if (xsimd::any((values > lows) & (values < highs)))
            for (std::ptrdiff_t i = x; i < x + lanes; ++i) copy_inside(row[i]);
    }
    counts.below = static_cast<std::int64_t>(xsimd::hadd(below));
    counts.up_to_low = static_cast<std::int64_t>(xsimd::hadd(up_to_low));
    counts.nan = xsimd::any(nan);
    for (; x < count; ++x) {
        counts.nan = counts.nan || row[x] != row[x];
        counts.below += row[x] < low;
        counts.up_to_low += row[x] <= low;
        copy_inside(row[x]);
    }
    return counts;
}

}  // namespace qorv::functions
