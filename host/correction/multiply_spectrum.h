#pragma once

#include "host/engine/engine.h"
#include "lens/transfer.h"

namespace zentrix::host {

/// Calls "ZXWTFMulDLL" of the library in `engine`: destination = source times the transfer function.
/// source, destination  spectra of the size that `arguments` were made for; may be the same image
/// Throws  script_error with the library's message
void multiply_by_transfer(engine& engine, const image_ref& source, const image_ref& destination,
                          const lens::transfer_arguments& arguments);

/// Multiplies a wave's spectrum by the transfer function: forward transform, "ZXWTFMulDLL" of the library in `engine`,
/// backward transform.
/// wave       complex of two floats a pixel, two dimensions, contiguous; replaced by the result
/// arguments  lens::arguments_for of the wave's size
/// Throws  script_error with the library's message; the wave is then its spectrum
void multiply_spectrum(engine& engine, const image_ref& wave, const lens::transfer_arguments& arguments);

}  // namespace zentrix::host
