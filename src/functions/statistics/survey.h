#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <cstdint>
#include <limits>

/// Basic statistics of a real image in one pass.
namespace qorv::functions {

/// The initial values are the result for an image without elements.
struct survey_record
{
    std::int64_t count = 0;  ///< width * height * depth
    double minimum = std::numeric_limits<double>::max();
    double maximum = -std::numeric_limits<double>::max();
    double sum = 0, sum_of_squares = 0, sum_of_absolutes = 0;
};

/// Surveys all pixels of an image of int8 to uint32, float or double; strides of any size and sign. Accumulates in
/// double precision. Minimum and maximum are exact. The plain kernel adds in row order; the vector kernels (float,
/// double) add in lanes, so that sums of many terms differ in their last bits; all vector kernels give the same bits.
/// NaN pixels make the three sums NaN; minimum and maximum ignore them. The search starts with the largest finite
/// number as the minimum and its negative as the maximum: 1.7976931348623157e308, in the vector kernel for float
/// 3.4028235e38. These values are the result only for an image that contains nothing but NaNs and infinities.
template <class T>
survey_record survey(const dm::image<const T>& image);

template <class T>
using survey_kernel = survey_record(const dm::image<const T>& image);

template <class T>
survey_record survey_plain(const dm::image<const T>& image);

/// float and double: each row is added in lanes; images without contiguous rows are passed to the plain variant.
/// Defined in survey_simd.h, instantiated for each instruction set in a file of its own.
template <class Arch, class T>
survey_record survey_simd(const dm::image<const T>& image);

template <class T>
dm::variants<survey_kernel<T>> survey_variants();

}  // namespace qorv::functions
