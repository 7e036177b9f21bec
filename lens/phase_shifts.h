#pragma once

#include <array>
#include <numbers>

#include "lens/transfer.h"

/// The phase by which each coefficient alone shifts the highest frequency that the image has: which of them matter.
namespace zentrix::lens {

/// A shift above pi / 4 is visible in the image.
inline constexpr double noticeable_phase_shift = std::numbers::pi / 4;

struct phase_shifts
{
    double frequency = 0;                             ///< of the shifts [1/nm]
    bool at_information_limit = false;                ///< otherwise it is the Nyquist frequency, 1 / (2 pixels)
    std::array<double, coefficient_count> radians{};  ///< in the order of `coefficient`; 0 or more

    double of(coefficient which) const { return radians[static_cast<std::size_t>(which)]; }
};

/// The largest |chi| that each coefficient of `setup` makes at a frequency, over all azimuths. The frequency is the
/// information limit, where the envelope of the widths and the round coefficients falls below exp(-2); without such a
/// place it is the Nyquist frequency. The beam tilt is not considered.
/// Throws  std::invalid_argument as arguments_for
phase_shifts phase_shifts_of(const optics& setup);

}  // namespace zentrix::lens
