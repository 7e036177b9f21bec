#pragma once

#include <cstdint>

#include "image/image.h"

namespace qorv::functions {

/// How far and how often GetCenterOfMass looks.
struct mass_search
{
    double radius;             ///< [pixel] > 0; infinity: the whole image
    std::int32_t most_cycles;  ///< >= 1
    double threshold;          ///< only elements above it have mass, as much as they exceed it
};

/// A position in pixels; pixel centres lie on whole numbers.
struct position
{
    double x, y;
};

/// Moves `center` to the centre of mass of the pixels within the radius about it, and again from there, until it rests
/// or the cycles are used up. A pixel's mass is its value minus the threshold; one at or below it, or NaN, has none.
/// source     one plane, any strides, any of the eight real element types
/// center     in: where to start; out: the centre found. Left alone when the result is 0.
/// Returns    the cycles used, with the one that found the centre at rest; 0 when a cycle found no mass or infinite mass
/// Throws     errors::invalid_image_size for more than one plane; errors::parameters_invalid for a radius that is not
///            above 0, no cycle, or a start or threshold that is not finite
/// Exactness  summed in double in storage order, one partial sum for each row
template <class T>
std::int32_t center_of_mass(const dm::image<const T>& source, position& center, const mass_search& how);

}  // namespace qorv::functions
