#pragma once

#include <cstdint>

#include "host/pictures/picture.h"
#include "host/pictures/view_map.h"

namespace zentrix::host {

/// Enlarges or reduces a picture, on all processors. A pixel of the reduced picture is the mean of the area that it
/// covers, in whole and partial pixels; enlarged pixels keep their edges.
/// from           at least one pixel
/// width, height  of the result, 1 or more; each may be larger or smaller than in `from`
/// pixels         receives width * height pixels 0x00RRGGBB, row by row from the top
/// Throws  std::bad_alloc
void zoom(const picture& from, int width, int height, std::uint32_t* pixels);

/// The pixels of a part of what `zoom` makes, without the rest.
/// whole   of the enlarged or reduced picture; only its place relative to `part` matters
/// part    inside of `whole`, at least one pixel
/// pixels  receives part.width() * part.height() pixels
/// Throws  std::bad_alloc
void zoom_part(const picture& from, const pixel_box& whole, const pixel_box& part, std::uint32_t* pixels);

}  // namespace zentrix::host
