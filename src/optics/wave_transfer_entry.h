#pragma once

#include <complex>
#include <cstdint>

#include "binding/object_ref.h"

namespace qorv::optics {

/// Script function ZXWTFMulDLL: multiplies a centred complex spectrum by the wave transfer function of a lens; the
/// numbers are those of wave_transfer.h, complex ones narrowed to single precision.
/// source         complex, 8 bytes per element; only the first plane is processed
/// with_envelope  0: phase only; anything else: c2s, bdiv and vib damp
/// destination    same type, same width and height; may be the source. Null: a clone of the source
/// Returns        the destination
/// Throws         errors::parameters_invalid for a null source, then errors::all_complex8, then errors::different_size,
///                then errors::out_of_place for a partial overlap; nothing is written then
binding::image_ref WTFMulDM(binding::image_ref source, float lambda, float step, float c20, std::complex<double> c22,
                            float c40, float c60, std::complex<double> c31, std::complex<double> c33,
                            std::complex<double> c42, std::complex<double> c44, std::complex<double> c51,
                            std::complex<double> c53, std::complex<double> c55, std::complex<double> c62,
                            std::complex<double> c64, std::complex<double> c66, float c2s, float bdiv, float vib,
                            std::int32_t with_envelope, std::complex<double> tilt, binding::image_ref destination);

}  // namespace qorv::optics
