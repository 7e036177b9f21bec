#pragma once

#include "image/image.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

/// The values for which an order by comparison does not settle which bits come out: a NaN, which compares with nothing,
/// and -0, which equals +0. The fast forms of the rank filters go ahead regardless of them and then have the windows in
/// which they occur done again by the plain form, so that every variant gives the same bits.
namespace qorv::functions {

template <class T>
constexpr bool is_special(T value)
{
    if constexpr (std::is_floating_point_v<T>) {
        using bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
        return value != value || std::bit_cast<bits>(value) == bits(1) << (8 * sizeof(T) - 1);
    } else
        return false;
}

/// Whether any of `count` contiguous values is special.
template <class T>
bool any_special(const T* values, std::ptrdiff_t count)
{
    if constexpr (std::is_floating_point_v<T>) {
        using bits = std::conditional_t<sizeof(T) == 4, std::int32_t, std::int64_t>;
        constexpr bits sign = std::numeric_limits<bits>::min();
        constexpr bits infinity = std::bit_cast<bits>(std::numeric_limits<T>::infinity());
        bits found = 0;  // as integers throughout, which leaves one kind of compare to the vector unit
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            const bits b = std::bit_cast<bits>(values[i]);
            found |= bits(b == sign) | bits((b & ~sign) > infinity);
        }
        return found != 0;
    } else
        return values == nullptr && count < 0;
}

/// Remembers which rows of a plane hold special values, and finds the outputs that these can reach.
template <class T>
class special_rows
{
  public:
    explicit special_rows(const dm::image<const T>& plane)
        : plane_{plane}, flags_(static_cast<std::size_t>(plane.height()))
    {}

    /// Looks at the contiguous pixels [begin, end) of row y.
    void look(std::ptrdiff_t y, std::ptrdiff_t begin, std::ptrdiff_t end)
    {
        if (any_special(plane_.row(y) + begin, end - begin)) flags_[static_cast<std::size_t>(y)] = true;
    }

    /// Calls redo(y, begin, end) for the stretches of output pixels whose windows hold a special value.
    template <class Redo>
    void repair(std::ptrdiff_t radius, Redo&& redo) const
    {
        if (std::find(flags_.begin(), flags_.end(), true) == flags_.end()) return;
        const std::ptrdiff_t height = plane_.height();
        std::vector<std::int32_t> counts(static_cast<std::size_t>(plane_.width()));  // in the window's rows, by column
        const auto add = [&](std::ptrdiff_t y, std::int32_t step) {
            if (!flags_[static_cast<std::size_t>(y)]) return;
            for (std::ptrdiff_t x = 0; x < plane_.width(); ++x)
                if (is_special(plane_(x, y))) counts[static_cast<std::size_t>(x)] += step;
        };
        for (std::ptrdiff_t y = 0; y < std::min(radius, height); ++y) add(y, 1);
        for (std::ptrdiff_t y = 0; y < height; ++y) {
            if (radius < height - y) add(y + radius, 1);
            if (y > radius) add(y - radius - 1, -1);
            stretches(counts, std::min(radius, plane_.width()), [&](auto begin, auto end) { redo(y, begin, end); });
        }
    }

  private:
    template <class Found>
    static void stretches(const std::vector<std::int32_t>& counts, std::ptrdiff_t reach, Found&& found)
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
};

}  // namespace qorv::functions
