#pragma once

#include <algorithm>
#include <cstddef>

namespace qorv::functions {

/// The positions begin .. end - 1 along one axis.
struct window_range
{
    std::ptrdiff_t begin, end;

    std::ptrdiff_t count() const { return end - begin; }
    bool operator==(const window_range&) const = default;
};

/// A window along one axis, clipped: the positions centre - radius .. centre + radius that lie within 0 .. size - 1.
inline window_range window_around(std::ptrdiff_t centre, std::ptrdiff_t radius, std::ptrdiff_t size)
{
    return {centre - std::min(radius, centre), centre + std::min(radius, size - 1 - centre) + 1};
}

}  // namespace qorv::functions
