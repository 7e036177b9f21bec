#pragma once

#include <limits>

#include "numeric/exp.h"
#include "numeric/float_bits.h"
#include "numeric/instruction_set.h"
#include "numeric/log.h"

namespace qorv::numeric {
inline namespace ZENTRIX_INSTRUCTION_SET {

/// log2 of the magnitude of a power's base, including infinity, zero and NaN. The relative error is below 2^-44,
/// because the exponent multiplies it by up to 128.
inline double log2_of_base(float base_magnitude) noexcept
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double twice_log2_of_e = 0x1.71547652b82fep1;
    const double wide = base_magnitude;
    const split_number number = split(wide);
    const double z = number.s * number.s;
    const double z2 = z * z;
    const double correction = (0.333333333378842913 + z * 0.199999978164184098) +
                              z2 * ((0.142860539987689103 + z * 0.110881184477618932) + z2 * 0.0979173128165004183);
    const double logarithm = number.exponent + twice_log2_of_e * (number.s * (1.0 + z * correction));
    const double above_zero = wide == 0.0 ? -infinity : logarithm;
    return wide < infinity ? above_zero : wide;
}

/// base^exponent from `logarithm` = exponent * log2_of_base(|base|), with the sign and the special values of C's pow.
inline float power_of_logarithm(double logarithm, float base, float exponent) noexcept
{
    const float power = static_cast<float>(exp2_unrounded(limited(logarithm, -200.0, 200.0)));

    // Every float from 2^24 is an even integer; infinity counts as one, too.
    const float exponent_magnitude = magnitude(exponent);
    const float countable = exponent_magnitude < 0x1p24f ? exponent_magnitude : 0x1p24f;
    const double shifted = static_cast<double>(countable) + rounding_shift;
    const std::uint32_t integral = mask_of(static_cast<float>(shifted - rounding_shift) == countable);
    const std::uint32_t odd = static_cast<std::uint32_t>(bits_of(shifted)) << 31;

    constexpr float infinity = std::numeric_limits<float>::infinity();
    const std::uint32_t finite_negative = mask_of(base < 0.0f) & mask_of(base > -infinity);
    const std::uint32_t undefined = finite_negative & ~integral;  // NaN operands have made the power NaN already
    const std::uint32_t one = mask_of(exponent == 0.0f) | mask_of(base == 1.0f) |
                              (mask_of(base == -1.0f) & mask_of(exponent_magnitude == infinity));
    const std::uint32_t sign = bits_of(base) & odd & integral;
    const float defined = select(undefined, std::numeric_limits<float>::quiet_NaN(), float_of(bits_of(power) | sign));
    return select(one, 1.0f, defined);
}

/// Base raised to exponent, branch-free.
/// base, exponent  any floats; zeros, infinities, NaN and negative bases give the values of C's pow
/// Exactness       at most 0.51 ulp
inline float pow(float base, float exponent) noexcept
{
    return power_of_logarithm(exponent * log2_of_base(magnitude(base)), base, exponent);
}

}  // namespace ZENTRIX_INSTRUCTION_SET
}  // namespace qorv::numeric
