#pragma once

#include <cstddef>

namespace zentrix::host {

/// Calls each(index) for the left, right, upper and lower neighbours of pixel `at` that are inside the image.
/// width, count  length of a row, number of pixels
template <class Each>
void for_each_neighbour(std::size_t at, std::size_t width, std::size_t count, Each each)
{
    const std::size_t x = at % width;
    if (x > 0) each(at - 1);
    if (x + 1 < width) each(at + 1);
    if (at >= width) each(at - width);
    if (at + width < count) each(at + width);
}

}  // namespace zentrix::host
