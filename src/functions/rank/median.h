#pragma once

#include "image/image.h"

/// The median of a range of values or of all values of an image. Instantiated for float and double.
///
/// Of an odd count it is the middle element in ascending order, of an even count (a + b) * 0.5 of the two middle ones
/// in the precision of the elements, which is infinite where a + b overflows. NaN and zeros of both signs: see
/// nth_element.h.
namespace qorv::functions {

/// first, last  at least one element; reordered
template <class T>
T median_of(T* first, T* last);

/// values  any strides, up to three dimensions; not modified
/// Throws  errors::parameters_invalid for null data or no values
template <class T>
T median(const dm::image<const T>& values);

}  // namespace qorv::functions
