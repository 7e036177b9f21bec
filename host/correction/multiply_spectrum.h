#pragma once

#include <chrono>

#include "host/engine/engine.h"
#include "lens/transfer.h"

namespace zentrix::host {

/// Calls "ZXWTFMulDLL" of the library in `engine`: destination = source times the transfer function.
/// source, destination  spectra of the size that `arguments` were made for; may be the same image
/// Throws  script_error with the library's message
void multiply_by_transfer(engine& engine, const image_ref& source, const image_ref& destination,
                          const lens::transfer_arguments& arguments);

/// Where the time of a correction went.
struct spectrum_costs
{
    std::chrono::duration<double> transform{};  ///< both transforms
    std::chrono::duration<double> transfer{};   ///< the transfer function
};

/// Multiplies the spectrum of a wave by the transfer function: forward transform, multiply_by_transfer, backward
/// transform.
/// wave       complex of two floats per pixel, two dimensions, contiguous; replaced by the result
/// arguments  lens::arguments_for of the wave's size
/// Throws  script_error with the library's message, and when the result of a finite wave is not finite; the contents of
///         `wave` are then undefined
spectrum_costs multiply_spectrum(engine& engine, const image_ref& wave, const lens::transfer_arguments& arguments);

/// The error when the result of a finite wave has pixels that are not finite.
inline constexpr char result_not_finite[] =
    "The result is not finite: the values of the wave are too large for single precision.";

}  // namespace zentrix::host
