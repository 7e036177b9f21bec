#pragma once

#include "image/image.h"

namespace qorv::functions {

/// Sums over two images of the same size and over their difference.
struct difference_survey
{
    double sum1 = 0, square_sum1 = 0;
    double sum2 = 0, square_sum2 = 0;
    double difference_sum = 0;           ///< of first - second
    double difference_square_sum = 0;    ///< of (first - second)^2
    double difference_absolute_sum = 0;  ///< of |first - second|
};

/// Surveys two images and their difference in one pass.
/// first, second  same size, any strides, any of the eight real element types
/// Throws     errors::different_size
/// Exactness  elements are converted to double first. Even and odd columns are summed separately and added at the end:
///            sums of integers are exact below 2^53, others right to the last bits. A NaN makes every sum to which it
///            contributes a NaN.
template <class T>
difference_survey survey_difference(const dm::image<const T>& first, const dm::image<const T>& second);

}  // namespace qorv::functions
