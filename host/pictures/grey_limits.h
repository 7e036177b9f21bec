#pragma once

#include <functional>
#include <span>
#include <vector>

#include "host/pictures/display_mode.h"

/// The range of values that a grey picture shows.
namespace zentrix::host {

/// The values shown as black and as white.
struct grey_limits
{
    float black = 0;
    float white = 0;
};

/// Passes all values to its argument, in one part or several. May be called more than once.
using value_source = std::function<void(const std::function<void(std::span<const float>)>& use)>;

/// What limits are chosen from.
struct value_survey
{
    grey_limits quantiles;         ///< of 0.1 % and 99.9 % of the finite values; both 0 when no value is finite
    grey_limits extremes;          ///< least and largest finite value; both 0 when no value is finite
    std::size_t not_a_number = 0;  ///< values that are not a number
};

/// Reads the values three times; needs little memory, however many there are.
value_survey survey_of(const value_source& values);

/// The survey of the displayed values of the first plane. Computes each value three times.
/// border  this part of the width is left out at the left and at the right, of the height at the top and at the bottom
/// Throws  script_error for elements that are not numbers
value_survey survey_of(const image& pixels, display_mode mode, double border = 0);

/// The displayed values of the first plane that are not a number. Computes each value once. Throws  as survey_of
std::size_t count_not_a_number(const image& pixels, display_mode mode);

/// The limits that pictures have unless others are given: the quantiles, so that a few outliers do not take all the
/// contrast.
///   - They are equal when they differ by less than 1e-5 of their magnitude, which is rounding noise; for phases and
///     logarithms also when they differ by less than 1e-5.
///   - A modulus whose quantiles differ by less than 2 % is flat to the eye and is shown so: from 0 to 1.25 times the
///     upper quantile, as light grey.
grey_limits automatic_limits(grey_limits quantiles, display_mode mode);

/// automatic_limits of the displayed values of the first plane, exactly.
/// Throws  script_error for elements that are not numbers
grey_limits limits_of(const image& pixels, display_mode mode);

/// limits_of for a sample of the pixels: a quick estimate for pictures that change while one watches. An image of at
/// most 131072 pixels is its own sample, so the limits are exact. Larger ones are divided into that many square cells
/// at most, each with one pixel of the sample at a place that differs from cell to cell: in a regular grid, the sample
/// of a periodic image could miss its maxima. The places depend on the image's size only, so a picture does not
/// flicker. The limits usually are between the quantiles of 0.08 % and 0.12 %, and of 99.88 % and 99.92 %.
grey_limits sampled_limits(const image& pixels, display_mode mode);

/// The displayed values of that sample, in no particular order.
/// Throws  script_error for elements that are not numbers
std::vector<float> sampled_values(const image& pixels, display_mode mode);

/// automatic_limits of values.
grey_limits limits_of(std::span<const float> values, display_mode mode);

}  // namespace zentrix::host
