#pragma once

#include "numeric/float_bits.h"
#include "numeric/instruction_set.h"

namespace qorv::numeric {
inline namespace ZENTRIX_INSTRUCTION_SET {

struct sine_cosine
{
    float sine;
    float cosine;
};

/// Sine and cosine of one angle together, branch-free.
/// x         [rad], any float
/// Exactness at most 0.501 ulp for |x| <= 1e6. For larger |x| the angle that remains after the whole quarter turns has
///           an error of about |x| * 2^-53 rad; from |x| = 2^40, where neighbouring floats are 20861 turns apart, the
///           angle is taken as 0. For every finite x, sine and cosine belong to the same angle. Zeros keep their sign;
///           infinities and NaN give NaN.
/// Source    Reduction by pi/2 in two parts: Cody, Waite, Software Manual for the Elementary Functions (1980);
///           coefficients from tools/numeric_coefficients.py
inline sine_cosine sincos(float x) noexcept
{
    constexpr double quarter_turns_per_radian = 0x1.45f306dc9c883p-1;  // 2 / pi
    constexpr double quarter_turn_high = 0x1.921fb544p0;               // 33 bits of pi / 2: exact times 20-bit integers
    constexpr double quarter_turn_low = 0x1.0b4611a626331p-34;         // the rest

    const double wide = select(mask_of(magnitude(x) < 0x1p40f), x, x * 0.0f);  // infinity * 0 is NaN
    const double shifted = wide * quarter_turns_per_radian + rounding_shift;
    const auto quadrant = static_cast<std::uint32_t>(bits_of(shifted));
    const double turns = shifted - rounding_shift;
    const double r = (wide - turns * quarter_turn_high) - turns * quarter_turn_low;

    const double z = r * r;
    const double z2 = z * z;
    // The product r * (1 + ...) keeps the sign of -0; the sum r + ... would lose it.
    const double sine =
        r * ((1.0 + z * -0.166666666407970758) +
             z2 * ((0.0083333293048511998 + z * -0.000198393122721969034) + z2 * 2.71812164949643665e-6));
    const double cosine = (0.999999999952600502 + z * -0.499999996154336651) +
                          z2 * ((0.0416666167392158174 + z * -0.00138866192103410923) + z2 * 0.0000243799293759266315);

    const std::uint32_t s = bits_of(static_cast<float>(sine));
    const std::uint32_t c = bits_of(static_cast<float>(cosine));
    const std::uint32_t exchange = (s ^ c) & (0u - (quadrant & 1u));
    return {float_of(s ^ exchange ^ ((quadrant << 30) & sign_bit)),
            float_of(c ^ exchange ^ (((quadrant + 1u) << 30) & sign_bit))};
}

}  // namespace ZENTRIX_INSTRUCTION_SET
}  // namespace qorv::numeric
