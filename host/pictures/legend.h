#pragma once

#include "host/pictures/drawing.h"
#include "host/pictures/figure.h"

namespace zentrix::host {

/// The legend at the right of a picture: a bar of the greys with their numbers, or the wheel of the colours, counter-
/// clockwise from 0 at the right; for palette::wave a disc, whose radius is the modulus.
/// height   of the picture that it belongs to
/// letters  size of the text, see text_width
drawing legend_of(const shown_range& range, int height, double letters);

}  // namespace zentrix::host
