#pragma once

#include <cstdint>
#include <span>

#include "host/pictures/picture.h"

namespace zentrix::host {

/// A picture of the cuts on the wrapped phase: grey from -pi (black) to pi (white), pixels at cuts red, pixels left out
/// blue.
/// phase  two dimensions, contiguous, float32 [rad]; pixels left out are not finite
/// cuts   same shape, as report_on_unwrapping writes it
/// Throws  std::bad_alloc
picture paint_cuts(const image& phase, std::span<const std::uint8_t> cuts);

}  // namespace zentrix::host
