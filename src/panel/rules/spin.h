#pragma once

#include <array>
#include <cmath>
#include <cstdint>

#include "panel/rules/knob_geometry.h"

/// The effect of a spin button on its value.
namespace qorv::panel {

/// Moves a modulus by one step per click. There are no limits, negative moduli included; a sum beyond float is ignored.
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

/// Moves an angle by the spin's (accelerated) delta, or by exactly one with the Shift key held. A step beyond one end
/// of the range gives the other end, whatever its size.
std::int32_t spin_angle(std::int32_t angle, int delta, shift_key shift, const dial& dial);

struct spin_acceleration
{
    std::uint32_t seconds;
    std::uint32_t increment;
};

/// The increments of an angle spin after 0, 2 and 4 seconds. `tag` is the increment in the tags.
inline std::array<spin_acceleration, 3> angle_acceleration(std::int32_t tag)
{
    const auto increment = static_cast<std::uint32_t>(tag);
    return {{{0, increment}, {2, 2 * increment}, {4, 3 * increment}}};
}

}  // namespace qorv::panel
