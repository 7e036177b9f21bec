#pragma once

#include <complex>
#include <cstdint>

#include "binding/object_ref.h"

namespace qorv::optics {

/// Script function ZXWTFMulDLL: multiplies a centred complex spectrum by the wave transfer function (wave_transfer.h
/// tells what each number means; complex arguments are narrowed to single precision). source       complex, 8 bytes per
/// element; the first plane counts destination  same type and size, or the source itself (in place); null: a clone of
/// the source envelope     0: phase only; anything else: with the damping envelopes Returns      the destination Throws
/// errors::all_complex8, then errors::different_size
binding::image_ref WTFMulDM(binding::image_ref source, float lambda, float step, float c20, std::complex<double> c22,
                            float c40, float c60, std::complex<double> c31, std::complex<double> c33,
                            std::complex<double> c42, std::complex<double> c44, std::complex<double> c51,
                            std::complex<double> c53, std::complex<double> c55, std::complex<double> c62,
                            std::complex<double> c64, std::complex<double> c66, float c2s, float bdiv, float vib,
                            std::int32_t envelope, std::complex<double> tilt, binding::image_ref destination);

}  // namespace qorv::optics
