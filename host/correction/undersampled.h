#pragma once

#include "host/pictures/picture.h"
#include "lens/transfer.h"

namespace zentrix::host {

/// The colour of places where a transfer function is undersampled: light blue.
constexpr rgb undersampled_ink{176, 196, 222};

/// Paints the pixels of a picture of a transfer function where chi changes by more than pi to a neighbour: rings that
/// one would see there are not real. A grey picture becomes one in colours if there are any.
/// arguments     of the shown function
/// right, down   from a pixel to the next one [1/nm]; zero frequency is at (width / 2, height / 2)
/// Throws  std::bad_alloc
void mask_undersampled(picture& shown, const lens::transfer_arguments& arguments, double right, double down);

}  // namespace zentrix::host
