#pragma once

#include "optics/wave_transfer.h"

/// One row of a spectrum times the wave transfer function, for each instruction set.
namespace qorv::optics {

/// Values at the centre pixel, to which the phase and the damping of every pixel refer.
struct centre_values
{
    float s;
    float chi;
    complex_float gradient;
};

/// What a row needs to know. The arrays have a number for each of its pixels.
struct transfer_row
{
    const float* angle_x;      ///< real part of the complex angle
    const float* vibration_x;  ///< the columns' part of the vibration term; not read without damping
    float angle_y;             ///< imaginary part
    float vibration_y;         ///< the row's part of the vibration term
    const envelope* damping;   ///< null: no envelope
    aberrations lens;
    centre_values centre;
};

/// Multiplies `count` pixels of a row; dst may be src. Defined in wave_transfer_simd.h, instantiated for each
/// instruction set in a file of its own.
using transfer_row_kernel = void(const complex_float* src, complex_float* dst, int count, const transfer_row& row);
template <class Arch>
transfer_row_kernel transfer_row_simd;

}  // namespace qorv::optics
