#pragma once

#include <algorithm>
#include <cstddef>

#include "image/image.h"

namespace qorv::dm {

/// Applies a kernel for flat sequences to images of the same width and height: calls work(count, pointer...) for the
/// longest stretches that are contiguous in all images, in storage order. Planes that one of them lacks are left out.
template <class Work, class First, class... Others>
void for_runs(Work&& work, const image<First>& first, const image<Others>&... others)
{
    const std::ptrdiff_t width = first.width(), height = first.height();
    const std::ptrdiff_t depth = std::min({first.depth(), others.depth()...});
    if (first.contiguous() && (others.contiguous() && ...))
        return work(width * height * depth, first.data(), others.data()...);
    const bool unit_steps = first.strides()[0] == 1 && ((others.strides()[0] == 1) && ...);
    for (std::ptrdiff_t z = 0; z < depth; ++z)
        for (std::ptrdiff_t y = 0; y < height; ++y) {
            if (unit_steps)
                work(width, first.row(y, z), others.row(y, z)...);
            else
                for (std::ptrdiff_t x = 0; x < width; ++x)
                    work(std::ptrdiff_t{1}, &first(x, y, z), &others(x, y, z)...);
        }
}

}  // namespace qorv::dm
