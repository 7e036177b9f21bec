#pragma once

#include <limits>

#include "numeric/float_bits.h"
#include "numeric/instruction_set.h"

namespace qorv::numeric {
inline namespace ZENTRIX_INSTRUCTION_SET {

/// Angle of the point (x, y), branch-free: [rad] from -pi to pi, the float next to pi included.
/// y, x      any floats; zeros, infinities and NaN give the values of C's atan2
/// Exactness at most 0.51 ulp
/// Source    coefficients from tools/numeric_coefficients.py
inline float atan2(float y, float x) noexcept
{
    constexpr double quarter_pi = 0x1.921fb54442d18p-1;
    constexpr float tangent_of_eighth_pi = 0x1.a8279ap-2f;
    constexpr float infinity = std::numeric_limits<float>::infinity();

    const float ax = magnitude(x);
    const float ay = magnitude(y);
    const std::uint32_t steep = mask_of(ay > ax);
    const float larger = select(steep, ay, ax);
    const float smaller = select(steep, ax, ay);
    // Two infinities are a point on the diagonal, like (1, 1); two zeros need a divisor other than zero.
    const std::uint32_t both_infinite = mask_of(smaller == infinity);
    const float height = select(both_infinite, 1.0f, smaller);
    const float width = select(both_infinite | mask_of(larger == 0.0f), 1.0f, larger);

    // The upper half of the octant is rotated back by pi/4, so that |t| <= tan(pi/8). In octants where the angle
    // decreases from the axis to the diagonal, t and the arc change their sign.
    const std::uint32_t turned = mask_of(height > tangent_of_eighth_pi * width);
    const std::uint32_t left = mask_of((bits_of(x) & sign_bit) != 0u);
    const std::uint32_t reversed = (steep ^ left) & sign_bit;
    const float from_turned = select(turned, 1.0f, 0.0f);
    const float from_steep = select(steep, 2.0f - from_turned, from_turned);
    const float eighths_of_turn = select(left, 4.0f - from_steep, from_steep);  // of pi/4 each

    const double rise = float_of(bits_of(height) ^ reversed);
    const double rise_of_turn = float_of(bits_of(select(turned, width, 0.0f)) ^ reversed);
    const double run_of_turn = select(turned, height, 0.0f);
    const double t = (rise - rise_of_turn) / (width + run_of_turn);
    const double z = t * t;
    const double z2 = z * z;
    const double correction = (-0.333333324991400697 + z * 0.199999039084617136) +
                              z2 * ((-0.142820077700480871 + z * 0.110446918210180568) +
                                    z2 * (-0.0847627075354123936 + z * 0.0474405244059550243));
    const double half = eighths_of_turn * quarter_pi + t * (1.0 + z * correction);

    const float angle = float_of(bits_of(static_cast<float>(half)) | (bits_of(y) & sign_bit));
    return select(mask_of(x != x) | mask_of(y != y), std::numeric_limits<float>::quiet_NaN(), angle);
}

}  // namespace ZENTRIX_INSTRUCTION_SET
}  // namespace qorv::numeric
