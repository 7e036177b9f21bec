#pragma once

#include "image/image.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <type_traits>
#include <vector>

/// NaN, which is unordered, and -0, which equals +0: with these values the bits of a rank filter's result depend on the
/// order of its comparisons. The fast forms first filter as if there were none and then recompute by the plain form the
/// pixels whose windows hold one, so that all variants return the same bits.
namespace qorv::functions {

template <class T>
constexpr bool is_special([[maybe_unused]] T value)
{
    if constexpr (std::is_floating_point_v<T>) {
        using bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
        return value != value || std::bit_cast<bits>(value) == bits(1) << (8 * sizeof(T) - 1);
    } else
        return false;
}

/// Whether any of `count` contiguous values is special.
template <class T>
bool any_special([[maybe_unused]] const T* values, [[maybe_unused]] std::ptrdiff_t count)
{
    if constexpr (std::is_floating_point_v<T>) {
        using bits = std::conditional_t<sizeof(T) == 4, std::int32_t, std::int64_t>;
        bits found = 0;  // written so that the compiler vectorises it
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            const bits b = std::bit_cast<bits>(values[i]);
            found |= (values[i] == 0 ? b : 0) | (values[i] != values[i] ? b : 0);  // +0 alone has no bits
        }
        return found != 0;
    } else
        return false;
}

/// The rows of a plane that hold special values, and the output pixels that depend on them.
template <class T>
class special_rows
{
  public:
    /// Allocates memory for planes of the size of this one.
    explicit special_rows(const dm::image<const T>& plane)
        : flags_(static_cast<std::size_t>(plane.height())), counts_(static_cast<std::size_t>(plane.width()))
    {}

    /// Starts with a plane, whose rows are still to be inspected.
    void start(const dm::image<const T>& plane)
    {
        plane_ = plane;
        std::fill(flags_.begin(), flags_.end(), false);
    }

    /// Flags row y if one of its pixels [begin, end), which must be contiguous, is special.
    void inspect(std::ptrdiff_t y, std::ptrdiff_t begin, std::ptrdiff_t end)
    {
        if (any_special(plane_.row(y) + begin, end - begin)) flags_[static_cast<std::size_t>(y)] = true;
    }

    /// Calls recompute(y, begin, end) for each run of output pixels whose windows hold a special value.
    template <class Recompute>
    void repair(std::ptrdiff_t radius, Recompute&& recompute)
    {
        if (std::find(flags_.begin(), flags_.end(), true) == flags_.end()) return;
        const std::ptrdiff_t height = plane_.height();
        std::fill(counts_.begin(), counts_.end(), 0);
        const auto add = [&](std::ptrdiff_t y, std::int32_t step) {
            if (!flags_[static_cast<std::size_t>(y)]) return;
            for (std::ptrdiff_t x = 0; x < plane_.width(); ++x)
                if (is_special(plane_(x, y))) counts_[static_cast<std::size_t>(x)] += step;
        };
        for (std::ptrdiff_t y = 0; y < std::min(radius, height); ++y) add(y, 1);
        for (std::ptrdiff_t y = 0; y < height; ++y) {
            if (radius < height - y) add(y + radius, 1);
            if (y > radius) add(y - radius - 1, -1);
            for_each_run(counts_, std::min(radius, plane_.width()),
                         [&](auto begin, auto end) { recompute(y, begin, end); });
        }
    }

  private:
    /// Calls found(begin, end) for each maximal run of positions within `reach` of a column with a count.
    template <class Found>
    static void for_each_run(const std::vector<std::int32_t>& counts, std::ptrdiff_t reach, Found&& found)
    {
        const auto width = static_cast<std::ptrdiff_t>(counts.size());
        std::ptrdiff_t begin = 0;
        std::ptrdiff_t end = 0;
        for (std::ptrdiff_t x = 0; x < width; ++x) {
            if (counts[static_cast<std::size_t>(x)] == 0) continue;
            if (x - reach > end) {
                if (end > begin) found(begin, end);
                begin = x - reach;
            }
            end = std::min(x + reach + 1, width);
        }
        if (end > begin) found(begin, end);
    }

    dm::image<const T> plane_;
    std::vector<bool> flags_;
    std::vector<std::int32_t> counts_;  ///< for each column, the special values in the window's rows
};

}  // namespace qorv::functions
