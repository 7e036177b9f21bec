#pragma once

#include <limits>

#include "numeric/float_bits.h"
#include "numeric/instruction_set.h"

namespace qorv::numeric {
inline namespace ZENTRIX_INSTRUCTION_SET {

/// A number as 2^exponent * m with m in [sqrt(1/2), sqrt(2)), and s = (m - 1) / (m + 1): half of ln m is the inverse
/// hyperbolic tangent of s, |s| <= 0.1716.
struct split_number
{
    double exponent;
    double s;
};

/// x   positive and finite; a float widened to double, which is a normal number even if the float was subnormal
inline split_number split(double x) noexcept
{
    constexpr std::uint64_t one = 0x3ff0000000000000u;
    constexpr std::uint64_t root_of_half = 0x3fe6a09e667f3bcdu;
    constexpr std::uint64_t fraction = 0x000fffffffffffffu;
    const std::uint64_t shifted = bits_of(x) + (one - root_of_half);  // exponent field as for m in [1, 2)
    const double m = double_of((shifted & fraction) + root_of_half);
    // The biased exponent under the pattern of 2^52 makes a double without an integer conversion.
    const double exponent = double_of((shifted >> 52) | 0x4330000000000000u) - (0x1p52 + 1023.0);
    return {exponent, (m - 1.0) / (m + 1.0)};
}

/// ln m of a split number with a relative error below 2^-37.
inline double log_of_fraction(const split_number& number) noexcept
{
    const double z = number.s * number.s;
    const double z2 = z * z;
    const double correction =
        (0.333333328243148266 + z * 0.20000167268790268) + z2 * (0.142686734017050265 + z * 0.11790737463790307);
    return 2.0 * number.s * (1.0 + z * correction);
}

/// `logarithm` of x, or C's special value where x has no finite logarithm: infinity, zero, a negative number or NaN.
inline float with_special_logarithms(float logarithm, float x) noexcept
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    const float finite_or_not = select(mask_of(x == infinity), infinity, logarithm);
    return select(mask_of(x > 0.0f), finite_or_not, select(mask_of(x == 0.0f), -infinity, nan));
}

/// Natural logarithm.
/// x          any float; zeros give -infinity, negative numbers and NaN give NaN
/// Exactness  at most 0.501 ulp
/// Source     coefficients from tools/numeric_coefficients.py
inline float log(float x) noexcept
{
    constexpr double log_of_2 = 0x1.62e42fefa39efp-1;
    const split_number number = split(x);
    return with_special_logarithms(static_cast<float>(number.exponent * log_of_2 + log_of_fraction(number)), x);
}

}  // namespace ZENTRIX_INSTRUCTION_SET
}  // namespace qorv::numeric
