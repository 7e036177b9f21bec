#pragma once

#include <cstddef>

#include "host/engine/engine.h"

namespace zentrix::host {

/// Replaces pixels that stand out from their neighbours (hot and dead pixels, single dead rows, hits of X-rays) by the
/// median of the 3 x 3 pixels around them ("ZXMedianFilter"). A pixel stands out if its difference from that median is
/// more than 8 times the image's median difference, which noise of a normal distribution exceeds in one of 10^7 pixels.
/// hologram  float32, two dimensions, contiguous
/// Returns  how many pixels were replaced
std::size_t replace_outliers(engine& engine, const image_ref& hologram);

}  // namespace zentrix::host
