#pragma once

#include "functions/rank/median_filter.h"
#include "functions/rank/nth_element.h"
#include "image/image.h"

#include <algorithm>
#include <vector>

namespace qorv::functions {

/// Positions begin .. end - 1 along one direction.
struct window_range
{
    std::ptrdiff_t begin, end;

    std::ptrdiff_t count() const { return end - begin; }
    bool operator==(const window_range&) const = default;
};

/// One direction of a window: the positions from centre - radius to centre + radius that lie within 0 .. size - 1.
inline window_range window_around(std::ptrdiff_t centre, std::ptrdiff_t radius, std::ptrdiff_t size)
{
    return {centre - std::min(radius, centre), centre + std::min(radius, size - 1 - centre) + 1};
}

/// Collects the window around (x, y) row by row and returns its median.
template <class T>
T window_median(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside, std::ptrdiff_t x,
                std::ptrdiff_t y, std::vector<T>& window)
{
    const window_range across = window_around(x, radius, source.width());
    const window_range down = window_around(y, radius, source.height());
    window.clear();
    const auto zeros = [&](std::ptrdiff_t count) {
        window.insert(window.end(), static_cast<std::size_t>(count), T(0));
    };
    if (outside == padding::none) {
        for (std::ptrdiff_t v = down.begin; v < down.end; ++v)
            for (std::ptrdiff_t u = across.begin; u < across.end; ++u) window.push_back(source(u, v));
        return median_of(window.data(), window.data() + window.size());
    }

    // As long as the zeros are no majority, the side is bounded by the image's and nothing below grows beyond it.
    const std::uint64_t side = 2 * static_cast<std::uint64_t>(radius) + 1;
    if (side * side > 2 * static_cast<std::uint64_t>(across.count() * down.count())) return T(0);
    for (std::ptrdiff_t v = y - radius; v <= y + radius; ++v) {
        if (v < down.begin || v >= down.end) {
            zeros(2 * radius + 1);
            continue;
        }
        zeros(across.begin - (x - radius));
        for (std::ptrdiff_t u = across.begin; u < across.end; ++u) window.push_back(source(u, v));
        zeros(x + radius + 1 - across.end);
    }
    return median_of(window.data(), window.data() + window.size());
}

/// The plain median filter for the pixels [begin, end) of row y.
template <class T>
void median_stretch(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside,
                    const dm::image<T>& destination, std::ptrdiff_t y, std::ptrdiff_t begin, std::ptrdiff_t end,
                    std::vector<T>& window)
{
    for (std::ptrdiff_t x = begin; x < end; ++x) {
        // A window as wide as the image holds the same values in the same order as the one before.
        const bool same = outside == padding::none && x > begin &&
                          window_around(x, radius, source.width()) == window_around(x - 1, radius, source.width());
        destination(x, y) = same ? destination(x - 1, y) : window_median(source, radius, outside, x, y, window);
    }
}

}  // namespace qorv::functions
