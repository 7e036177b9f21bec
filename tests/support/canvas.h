#pragma once

#include "image/image.h"

#include <array>
#include <complex>
#include <cstring>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

/// Images with gaps between their elements, rows and planes, and a guard around them.
namespace support {

/// Calls `visit(x, y, z)` for every place, x fastest.
template <class Visit>
void for_each_place(const std::array<std::ptrdiff_t, 3>& sizes, Visit visit)
{
    for (std::ptrdiff_t z = 0; z < sizes[2]; ++z)
        for (std::ptrdiff_t y = 0; y < sizes[1]; ++y)
            for (std::ptrdiff_t x = 0; x < sizes[0]; ++x) visit(x, y, z);
}

/// The pixels alone, x fastest.
template <class T>
std::vector<T> pixels_of(const qorv::dm::image<T>& view)
{
    std::vector<T> result;
    for_each_place(view.sizes(), [&](auto... place) { result.push_back(view(place...)); });
    return result;
}

/// The distance from one pixel to the next, and unused elements after each row and each plane, in elements.
struct layout
{
    std::ptrdiff_t step = 1, row_gap = 0, plane_gap = 0;
};
inline constexpr layout dense{}, gapped{1, 3, 5}, sparse{2, 1, 4};

template <class T>
T noise(std::mt19937& random)
{
    if constexpr (requires { typename T::value_type; }) {  // complex
        const auto re = noise<typename T::value_type>(random), im = noise<typename T::value_type>(random);
        return {re, im};
    } else if constexpr (std::is_integral_v<T>) {
        return static_cast<T>(random());
    } else {
        return static_cast<T>((static_cast<double>(random()) / 4294967296.0 - 0.4) * 1000);
    }
}

template <class T>
class canvas
{
  public:
    using extents = typename qorv::dm::image<T>::extents;

    /// Pixels are noise of `seed`; everything else is a pattern that `gaps_untouched` looks for.
    explicit canvas(extents sizes, layout how = dense, unsigned seed = 1)
        : all_(room(sizes, how)), view_{all_.data() + guard, sizes, strides(sizes, how)}
    {
        std::memset(static_cast<void*>(all_.data()), pattern, all_.size() * sizeof(T));
        std::mt19937 random{seed};
        each([&](T& pixel) { pixel = noise<T>(random); });
    }
    canvas(const canvas&) = delete;
    canvas& operator=(const canvas&) = delete;

    const qorv::dm::image<T>& view() const { return view_; }

    std::vector<T> pixels() const { return pixels_of(view_); }
    bool gaps_untouched() const
    {
        std::vector<bool> used(all_.size());
        each([&](T& pixel) { used[static_cast<std::size_t>(&pixel - all_.data())] = true; });
        T clean;
        std::memset(static_cast<void*>(&clean), pattern, sizeof(T));
        for (std::size_t i = 0; i < all_.size(); ++i)
            if (!used[i] && std::memcmp(&all_[i], &clean, sizeof(T)) != 0) return false;
        return true;
    }

  private:
    static constexpr std::ptrdiff_t guard = 64;
    static constexpr int pattern = 0xA5;

    static extents strides(const extents& sizes, layout how)
    {
        const std::ptrdiff_t row = sizes[0] * how.step + how.row_gap;
        return {how.step, row, sizes[1] * row + how.plane_gap};
    }
    static std::size_t room(const extents& sizes, layout how)
    {
        return static_cast<std::size_t>(sizes[2] * strides(sizes, how)[2] + 2 * guard);
    }
    template <class Visit>
    void each(Visit visit) const
    {
        for_each_place(view_.sizes(), [&](auto... place) { visit(view_(place...)); });
    }

    std::vector<T> all_;
    qorv::dm::image<T> view_;
};

}  // namespace support
