#pragma once

#include <cstdint>

#include "image/image.h"

namespace qorv::functions {

/// An extreme element: its value and position.
struct extremum
{
    double value;
    std::int32_t x, y, z;
};

struct extrema
{
    extremum smallest, greatest;
};

/// The smallest and the greatest element of an image. Of equal elements the first in storage order (x fastest, then y,
/// then z) is found. NaNs are ignored; an image that contains only NaNs has NaN at (0, 0, 0).
/// source     not empty, any strides, any of the eight real element types
/// Exactness  exact
template <class T>
extrema min_max(const dm::image<const T>& source);

template <class T>
extremum min_of(const dm::image<const T>& source);

template <class T>
extremum max_of(const dm::image<const T>& source);

}  // namespace qorv::functions
