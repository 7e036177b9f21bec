#pragma once

#include <complex>

#include "image/image.h"
#include "tests/fuzz/fuzz.h"

/// Images of any layout for kernels.
namespace fuzz {

using extents = std::array<std::ptrdiff_t, 3>;

/// Sizes around those of vectors; now and then a few lines along one axis that are longer than the kernels' blocks.
/// depth  at most, unless the long axis is z; 1: a plane
inline extents small_sizes(input& from, std::ptrdiff_t depth = 4)
{
    constexpr std::ptrdiff_t edges[] = {1, 2, 3, 4, 7, 8, 15, 16, 17, 31, 33, 63, 64, 65, 100};
    constexpr std::ptrdiff_t long_lines[] = {127, 128, 129, 200, 255, 256, 257, 300, 511, 512, 513, 520, 700};
    const auto length = [&] {
        return from.coin() ? static_cast<std::ptrdiff_t>(1 + from.below(40)) : from.pick(edges);
    };
    const std::ptrdiff_t width = length(), height = length();
    extents sizes{width, height, static_cast<std::ptrdiff_t>(1 + from.below(static_cast<std::size_t>(depth)))};
    if (from.below(8) == 0) {
        for (std::ptrdiff_t& size : sizes) size = std::min<std::ptrdiff_t>(size, 6);
        sizes[from.below(depth > 1 ? 3 : 2)] = from.pick(long_lines);
    }
    return sizes;
}

/// The order of the axes in memory, the distances between elements and their directions.
struct layout
{
    std::array<std::uint8_t, 3> order{0, 1, 2};
    std::array<std::uint8_t, 3> gaps{};
    std::array<bool, 3> backwards{};
    std::uint8_t step = 1;
};

/// Dense in half of the cases.
inline layout any_layout(input& from)
{
    layout made;
    const std::uint8_t kind = from.number<std::uint8_t>();
    if (kind % 2 == 0) return made;
    constexpr std::array<std::uint8_t, 3> orders[] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
    if (kind & 2) made.order = from.pick(orders);
    if (kind & 4) made.step = static_cast<std::uint8_t>(1 + from.below(3));
    if (kind & 8)
        for (std::uint8_t& gap : made.gaps) gap = static_cast<std::uint8_t>(from.below(5));
    if (kind & 16)
        for (bool& one : made.backwards) one = from.coin();
    return made;
}

/// An image with a guard of its own pattern around it and between its elements.
template <class T>
class strided
{
  public:
    strided(const extents& sizes, const layout& how)
    {
        extents strides{};
        std::ptrdiff_t distance = how.step, origin = guard;
        for (const std::uint8_t axis : how.order) {
            strides[axis] = distance;
            distance = distance * sizes[axis] + how.gaps[axis];
            if (how.backwards[axis]) {
                origin += strides[axis] * (sizes[axis] - 1);
                strides[axis] = -strides[axis];
            }
        }
        memory_.resize(static_cast<std::size_t>(distance + 2 * guard));
        std::memset(static_cast<void*>(memory_.data()), pattern, memory_.size() * sizeof(T));
        view_ = {memory_.data() + origin, sizes, strides};
    }
    strided(const strided&) = delete;
    strided& operator=(const strided&) = delete;

    const qorv::dm::image<T>& view() const { return view_; }

    void fill(generator random, contents what)
    {
        each([&](T& value) {
            if constexpr (requires { typename T::value_type; }) {
                using part = typename T::value_type;
                const part re = pixel<part>(random, what), im = pixel<part>(random, what);
                value = {re, im};
            } else {
                value = pixel<T>(random, what);
            }
        });
    }
    std::vector<T> pixels() const
    {
        std::vector<T> result;
        each([&](const T& value) { result.push_back(value); });
        return result;
    }
    bool gaps_untouched() const
    {
        std::vector<bool> used(memory_.size());
        each([&](const T& value) { used[static_cast<std::size_t>(&value - memory_.data())] = true; });
        T clean;
        std::memset(static_cast<void*>(&clean), pattern, sizeof clean);
        for (std::size_t i = 0; i < memory_.size(); ++i)
            if (!used[i] && std::memcmp(&memory_[i], &clean, sizeof clean) != 0) return false;
        return true;
    }
    /// Ends the process when anything but the pixels was written.
    void check_gaps() const
    {
        if (!gaps_untouched()) fail("a kernel wrote between pixels");
    }

  private:
    static constexpr std::ptrdiff_t guard = 32;
    static constexpr int pattern = 0xA5;

    template <class Visit>
    void each(Visit visit) const
    {
        const extents& sizes = view_.sizes();
        for (std::ptrdiff_t z = 0; z < sizes[2]; ++z)
            for (std::ptrdiff_t y = 0; y < sizes[1]; ++y)
                for (std::ptrdiff_t x = 0; x < sizes[0]; ++x) visit(view_(x, y, z));
    }

    std::vector<T> memory_;
    qorv::dm::image<T> view_;
};

template <class T>
bool same_bits(const std::vector<T>& a, const std::vector<T>& b)
{
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

}  // namespace fuzz
