#pragma once

#include <atomic>

#include "host/correction/picture_supply.h"

namespace zentrix::host {

/// Finds the limits and the histogram of `shown.values`, and paints them.
/// given_up  looked at between the steps; the rest is then missing
/// Throws    std::bad_alloc
void show_values(const picture_request& wanted, const std::atomic<bool>& given_up, rendered_picture& shown);

/// The histogram of displayed values.
/// automatic  their limits; the range is by half of their distance wider on each side, within that of all phases
value_histogram histogram_of(std::span<const float> values, grey_limits automatic, display_mode mode);

}  // namespace zentrix::host
