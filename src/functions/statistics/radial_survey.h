#pragma once

#include <cstddef>

#include "functions/statistics/radial_grid.h"
#include "image/image.h"

namespace qorv::functions {

/// Elements of the radial profile of one plane: one for each whole radius from 0 to the rounded radius of the farthest
/// pixel.
/// sizes   of the image: width, height, depth
/// Throws  errors::parameters_invalid when a scale is not finite, and when all profiles together have more than 2^24
///         elements and more than the image; only a wrong scale or centre causes this
std::ptrdiff_t radial_length(const radial_grid& grid, const dm::image<const float>::extents& sizes);

/// Rotational average: profile element r is the mean of the pixels whose radius rounds to r, and 0 where there is none.
/// source     any strides, any of the eight real element types
/// profile    radial_length(...) wide, source.depth() high: a row for each plane
/// Throws     as radial_length; errors::different_size for a profile of another size
/// Exactness  summed in double in storage order, rounded once to the profile's type. A NaN affects only its own radius.
template <class T, class Profile>
void radial_survey(const dm::image<const T>& source, const radial_grid& grid, const dm::image<Profile>& profile);

}  // namespace qorv::functions
