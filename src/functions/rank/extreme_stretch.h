#pragma once

#include "image/image.h"

#include <algorithm>
#include <vector>

namespace qorv::functions {

/// The extreme of one column over the rows [begin, end). Four rows a step, one after the other: the order matters for a
/// NaN, which is taken and then given up for the next value.
template <class T, class Order>
T column_extreme(const dm::image<const T>& source, std::ptrdiff_t x, std::ptrdiff_t begin, std::ptrdiff_t end)
{
    T best = source(x, begin);
    const auto meet = [&](std::ptrdiff_t y) {
        const T value = source(x, y);
        if (!Order::holds(best, value)) best = value;
    };
    std::ptrdiff_t y = begin + 1;
    for (; y + 4 <= end; y += 4) {
        meet(y);
        meet(y + 1);
        meet(y + 2);
        meet(y + 3);
    }
    for (; y < end; ++y) meet(y);
    return best;
}

/// The plain extreme filter for the pixels [begin, end) of row y, with what a whole row's pass would give them: the
/// ring is filled as it would stand at `begin`.
template <class T, class Order>
void extreme_stretch(const dm::image<const T>& source, std::ptrdiff_t radius, const dm::image<T>& destination,
                     std::ptrdiff_t y, std::ptrdiff_t begin, std::ptrdiff_t end)
{
    const std::ptrdiff_t width = source.width();
    const std::ptrdiff_t reach = std::min(radius, width);  // as wide as the image, all its columns enter before x = 0
    const std::ptrdiff_t slots = 2 * reach + 1;
    const std::ptrdiff_t top = y - std::min(radius, y);
    const std::ptrdiff_t bottom = y + std::min(radius, source.height() - 1 - y) + 1;
    const auto column = [&](std::ptrdiff_t x) { return column_extreme<T, Order>(source, x, top, bottom); };

    std::vector<T> ring(static_cast<std::size_t>(slots), Order::start);
    for (std::ptrdiff_t x = std::max<std::ptrdiff_t>(begin - reach, 0); x < std::min(begin + reach, width); ++x)
        ring[static_cast<std::size_t>(x % slots)] = column(x);
    for (std::ptrdiff_t x = begin; x < end; ++x) {
        const std::ptrdiff_t entering = x + reach;
        ring[static_cast<std::size_t>(entering % slots)] = entering < width ? column(entering) : Order::start;
        T best = ring[0];
        for (const T slot : ring)
            if (Order::beats(slot, best)) best = slot;
        destination(x, y) = best;
    }
}

}  // namespace qorv::functions
