#pragma once

#include <limits>

#include "numeric/float_bits.h"

namespace qorv::numeric {

/// Angle of the point (x, y), branch-free: [rad] from -pi to pi, the float next to pi included.
/// y, x      any floats; zeros, infinities and NaN as C's table for atan2 has them
/// Exactness at most 0.51 ulp
/// Source    coefficients from tools/numeric_coefficients.py
inline float atan2(float y, float x) noexcept
{
    constexpr double quarter_pi = 0x1.921fb54442d18p-1;
    constexpr double tangent_of_eighth_pi = 0x1.a827999fcef32p-2;
    constexpr double infinity = std::numeric_limits<double>::infinity();

    const double ax = magnitude(x);
    const double ay = magnitude(y);
    const bool steep = ay > ax;
    const double larger = steep ? ay : ax;
    const double smaller = steep ? ax : ay;
    // Two infinities lie on the diagonal like two ones; two zeros need a divisor.
    const double height = smaller == infinity ? 1.0 : smaller;
    const double width = smaller == infinity ? 1.0 : (larger == 0.0 ? 1.0 : larger);

    // The upper half of the octant is turned back by pi/4, so that |t| <= tan(pi/8).
    const bool turned = height > tangent_of_eighth_pi * width;
    const double t = (turned ? height - width : height) / (turned ? height + width : width);
    const double z = t * t;
    const double z2 = z * z;
    const double correction = (-0.333333324991400697 + z * 0.199999039084617136) +
                              z2 * ((-0.142820077700480871 + z * 0.110446918210180568) +
                                    z2 * (-0.0847627075354123936 + z * 0.0474405244059550243));
    const double octant = (turned ? quarter_pi : 0.0) + t * (1.0 + z * correction);
    const double quadrant = steep ? 2.0 * quarter_pi - octant : octant;
    const double half = (bits_of(x) & sign_bit) != 0u ? 4.0 * quarter_pi - quadrant : quadrant;

    const float angle = float_of(bits_of(static_cast<float>(half)) | (bits_of(y) & sign_bit));
    return select(mask_of(x != x) | mask_of(y != y), std::numeric_limits<float>::quiet_NaN(), angle);
}

}  // namespace qorv::numeric
