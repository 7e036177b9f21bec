#pragma once

/// Wrapped differences of phases.
namespace qorv::optics {

inline constexpr double pi = 3.141592653589793;
inline constexpr double full_turn = 6.283185307179586;

/// The sum of the wrapped differences around a loop is a residue when its modulus is larger than this [rad].
inline constexpr double least_residue = 0.01;

/// The smallest float above pi: a float d is above pi exactly when d >= half_turn.
inline constexpr float half_turn = 3.14159274f;
static_assert(half_turn > pi && 3.14159250f < pi);

/// The turn to add to the difference d of two phases [rad] to wrap it: one at most, so a difference beyond 3 pi stays
/// outside. No turn is -0.0, because d + -0.0 is d for every d, a negative zero included.
inline double turn_of(float d) noexcept
{
    const double down = d >= half_turn ? -full_turn : -0.0;
    return d <= -half_turn ? full_turn : down;
}

/// d, with one turn added or subtracted when it is outside [-pi, pi]. wrap(-d) is -wrap(d) except for a zero's sign.
inline double wrap(float d) noexcept { return static_cast<double>(d) + turn_of(d); }

}  // namespace qorv::optics
