#pragma once

#include <cstddef>

#include "functions/statistics/radial_grid.h"
#include "image/image.h"

namespace qorv::functions {

/// Elements of the radial profile of a width x height image: one for each whole radius from 0 to that of the farthest
/// pixel, rounded.
/// Throws  errors::parameters_invalid when a scale is not finite or the profile would exceed 2^24 elements
std::ptrdiff_t radial_length(const radial_grid& grid, std::ptrdiff_t width, std::ptrdiff_t height);

/// Rotational average: profile element r is the mean of the pixels whose radius rounds to r, and 0 where there is none.
/// source     any strides, any of the eight real element types
/// profile    radial_length(...) x source.depth(): a row for each plane
/// Throws     as radial_length; errors::different_size for a profile of another size
/// Exactness  summed in double in storage order, rounded once to the profile's type. A NaN reaches only its own radius.
template <class T, class Profile>
void radial_survey(const dm::image<const T>& source, const radial_grid& grid, const dm::image<Profile>& profile);

}  // namespace qorv::functions
