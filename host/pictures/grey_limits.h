#pragma once

#include <functional>
#include <span>

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

/// The 0.1 % and 99.9 % quantiles of the finite values, so that a few outliers do not take all the contrast. Equal when
/// they differ by less than 1e-5 of their magnitude, which is rounding noise; both 0 when no value is finite.
/// Reads the values three times; needs little memory, however many there are.
grey_limits robust_limits(const value_source& values);

/// robust_limits of the displayed values of the first plane, exactly. Computes each value three times.
/// Throws  script_error for elements that are not numbers
grey_limits limits_of(const image& pixels, display_mode mode);

/// The same for a sample of the pixels: a quick estimate for pictures that change while one watches. An image of at
/// most 131072 pixels is its own sample, so the limits are exact. Larger ones are divided into that many square cells
/// at most, each with one pixel of the sample at a place that differs from cell to cell: in a regular grid, the sample
/// of a periodic image could miss its maxima. The places depend on the image's size only, so a picture does not
/// flicker. The limits usually are between the quantiles of 0.08 % and 0.12 %, and of 99.88 % and 99.92 %.
grey_limits sampled_limits(const image& pixels, display_mode mode);

}  // namespace zentrix::host
