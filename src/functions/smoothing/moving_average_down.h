#pragma once

#include "functions/smoothing/moving_average.h"

namespace qorv::functions {

/// The pass along y or z for many columns at once, for rows of contiguous pixels (strides()[0] == 1 in both images).
/// In place (the same pixels) or out of place without shared memory; the same bits as the plain pass.
template <class T>
void box_pass_down(const dm::image<const T>& from, const dm::image<T>& to, axis along, std::ptrdiff_t radius);

}  // namespace qorv::functions
