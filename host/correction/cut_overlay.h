#pragma once

#include <cstdint>
#include <span>

#include "host/pictures/picture.h"

namespace zentrix::host {

/// A picture of the cuts on the wrapped phase: light grey at -pi to white at pi, pixels at cuts red, pixels left out
/// blue. Enlarged by the largest whole number with which it has at most 1024 pixels along its longer side.
/// phase  two dimensions, contiguous, float32 [rad]; pixels left out are not finite
/// cuts   same shape, as report_on_unwrapping writes it
/// Throws  std::bad_alloc
picture paint_cuts(const image& phase, std::span<const std::uint8_t> cuts);

}  // namespace zentrix::host
