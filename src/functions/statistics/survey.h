#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <cstdint>
#include <limits>

/// Basic statistics of a real image in one pass.
namespace qorv::functions {

/// As for an image without elements.
struct survey_record
{
    std::int64_t count = 0;  ///< width * height * depth
    double minimum = std::numeric_limits<double>::max();
    double maximum = -std::numeric_limits<double>::max();
    double sum = 0, sum_of_squares = 0, sum_of_absolutes = 0;
};

/// Surveys all pixels of an image of int8 to uint32, float or double; strides of any size and sign. Accumulates in
/// double precision. Minimum and maximum are exact. The plain kernel adds in row order; the vector kernels (float,
/// double) add in lanes, so that sums of many terms differ in their last bits.
/// NaN pixels make the three sums NaN and are passed over by minimum and maximum. The minimum is at most the largest
/// number of the search's start value and the maximum at least its negative: 1.7976931348623157e308, and 3.4028235e38
/// in the vector kernel for float. Only an image of nothing but NaNs and infinities shows it.
template <class T>
survey_record survey(const dm::image<const T>& image);

template <class T>
using survey_kernel = survey_record(const dm::image<const T>& image);

template <class T>
survey_record survey_plain(const dm::image<const T>& image);

/// Adds each row in lanes; images without contiguous rows go to the plain variant.
survey_kernel<float> survey_sse;
survey_kernel<double> survey_sse;

template <class T>
inline constexpr dm::variant<survey_kernel<T>> survey_variants[] = {{"plain", dm::cpu::none, survey_plain<T>}};
template <>
inline constexpr dm::variant<survey_kernel<float>> survey_variants<float>[] = {
    {"sse2", dm::cpu::sse2, survey_sse}, {"plain", dm::cpu::none, survey_plain<float>}};
template <>
inline constexpr dm::variant<survey_kernel<double>> survey_variants<double>[] = {
    {"sse2", dm::cpu::sse2, survey_sse}, {"plain", dm::cpu::none, survey_plain<double>}};

}  // namespace qorv::functions
