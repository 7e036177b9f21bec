#pragma once

#include <cstdint>

#include "functions/statistics/radial_grid.h"
#include "image/image.h"

namespace qorv::functions {

/// The interpolation of the curve at a radius, and whether its value multiplies or divides.
enum class weight_mode : std::int32_t
{
    nearest = 0,
    linear = 1,
    inverse_nearest = 2,
    inverse_linear = 3,
};

/// The mode of a script's number.
/// Throws  errors::invalid_mode outside 0..3
weight_mode weight_mode_of(std::int32_t number);

/// Multiplies every pixel by the value of a curve at the pixel's radius. Element r of the curve is its value at radius
/// r; the last element is the value at all larger radii. An inverse mode divides instead; where the curve is 0 the
/// result is 0.
/// source       any strides; float, double or complex of these
/// curve        one row for all planes, or a row for each plane; one element or more
/// destination  size of the source; may be the source
/// Throws       errors::different_size; errors::invalid_image_size for a curve of another shape;
///              errors::parameters_invalid for a scale that is not finite; errors::out_of_place for any other overlap
/// Exactness    the factor (in an inverse mode the reciprocal) and the product are formed in double and rounded once
template <class T, class Curve>
void weight(const dm::image<const T>& source, const dm::image<const Curve>& curve, const radial_grid& grid,
            weight_mode mode, const dm::image<T>& destination);

}  // namespace qorv::functions
