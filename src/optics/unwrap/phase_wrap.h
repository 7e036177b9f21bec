#pragma once

/// Wrapped differences of phases.
namespace qorv::optics {

inline constexpr double pi = 3.141592653589793;
inline constexpr double full_turn = 6.283185307179586;

/// The smallest float above pi: a float d is above pi exactly when d >= half_turn, so a compare needs no widening.
inline constexpr float half_turn = 3.14159274f;
static_assert(half_turn > pi && 3.14159250f < pi);

/// What makes the difference d of two phases [rad] a wrapped one: one turn at most, so differences beyond 3 pi stay
/// outside. The neutral value is -0, because d + -0 is d for every d, a negative zero too.
inline double turn_of(float d) noexcept
{
    const double down = d >= half_turn ? -full_turn : -0.0;
    return d <= -half_turn ? full_turn : down;
}

/// d, or d with one turn added or taken off where it lies outside [-pi, pi]; odd in d but for zeros' signs.
inline double wrap(float d) noexcept { return static_cast<double>(d) + turn_of(d); }

}  // namespace qorv::optics
