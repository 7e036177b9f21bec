#pragma once

#include <array>
#include <cmath>
#include <cstdint>

#include "panel/rules/knob_geometry.h"

/// What a click on a spin button does to the value beside it.
namespace qorv::panel {

/// Moduli know no bounds: a click moves them by a step, also below zero. What would leave the numbers stays.
inline float spin_modulus(float modulus, float step, int delta)
{
    const float moved = modulus + step * static_cast<float>(delta);
    return std::isfinite(moved) ? moved : modulus;
}

enum class shift_key
{
    up,
    down
};

/// Moves an angle by the spin's (accelerated) delta, or by exactly one with the Shift key held. A step over an end of
/// the dial lands on the other end, however far it went.
std::int32_t spin_angle(std::int32_t angle, int delta, shift_key shift, const dial& dial);

struct spin_acceleration
{
    std::uint32_t seconds;
    std::uint32_t increment;
};

/// The longer the button is held, the longer the steps.
inline std::array<spin_acceleration, 3> angle_acceleration(std::int32_t tag)
{
    const auto increment = static_cast<std::uint32_t>(tag);
    return {{{0, increment}, {2, 2 * increment}, {4, 3 * increment}}};
}

}  // namespace qorv::panel
