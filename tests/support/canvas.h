#pragma once

#include "tests/fuzz/strided.h"

#include <limits>
#include <random>

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

using fuzz::layout;
inline constexpr layout dense{}, gapped{.gaps = {3, 5, 0}}, sparse{.gaps = {1, 4, 0}, .step = 2};

/// Pixels are noise of `seed`; everything else is a pattern that `gaps_untouched` looks for.
template <class T>
struct canvas : fuzz::strided<T>
{
    explicit canvas(const fuzz::extents& sizes, const layout& how = dense, unsigned seed = 1)
        : fuzz::strided<T>{sizes, how}
    {
        this->fill(fuzz::generator{seed}, fuzz::contents::ordinary);
    }
};

}  // namespace support
