#pragma once

#include <cstdint>

#include "image/image.h"

namespace qorv::functions {

/// An extreme element: its value and where it lies.
struct extremum
{
    double value;
    std::int32_t x, y, z;
};

struct extrema
{
    extremum smallest, greatest;
};

/// The smallest and the greatest element of an image, each the first of its value in storage order (x fastest, then y,
/// then z), whatever the image's size. A NaN is neither small nor great and is passed over; an image of NaNs only gives
/// NaN at (0, 0, 0).
/// source     one element or more, any strides, any of the eight real element types
/// Exactness  exact
template <class T>
extrema min_max(const dm::image<const T>& source);

template <class T>
extremum min_of(const dm::image<const T>& source);

template <class T>
extremum max_of(const dm::image<const T>& source);

}  // namespace qorv::functions
