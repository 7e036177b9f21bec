#pragma once

#include <cstdint>

#include "image/image.h"

namespace qorv::functions {

/// The window and the number of iterations of a search.
struct mass_search
{
    double radius;             ///< [pixel] > 0; infinity: the whole image
    std::int32_t most_cycles;  ///< >= 1
    double threshold;          ///< an element's mass is its value minus the threshold, if positive
};

/// A position in pixels; pixel centres have integer coordinates.
struct position
{
    double x, y;
};

/// Moves `center` to the centre of mass of the pixels within the radius around it, and repeats this until it does not
/// move or the cycles are used up. Pixels at or below the threshold, and NaNs, have no mass.
/// source     one plane, any strides, any of the eight real element types
/// center     in: the start; out: the centre found. Unchanged when the function returns 0.
/// Returns    the cycles used, including the last one, in which the centre did not move; 0 when a cycle found no mass
///            or infinite mass
/// Throws     errors::invalid_image_size for more than one plane; errors::parameters_invalid for a radius that is not
///            above 0, no cycle, or a start or threshold that is not finite
/// Exactness  summed in double in storage order, one partial sum for each row
template <class T>
std::int32_t center_of_mass(const dm::image<const T>& source, position& center, const mass_search& how);

}  // namespace qorv::functions
