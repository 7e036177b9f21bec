#pragma once

#include <limits>

#include "numeric/exp.h"
#include "numeric/float_bits.h"
#include "numeric/log.h"

namespace qorv::numeric {

/// log2 of the magnitude of a power's base, infinities and zeros included, with a relative error below 2^-44: the
/// exponent multiplies the error by up to 128.
inline double log2_of_base(float base_magnitude) noexcept
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double twice_log2_of_e = 0x1.71547652b82fep1;
    const split_number number = split(base_magnitude);
    const double z = number.s * number.s;
    const double z2 = z * z;
    const double correction = (0.333333333378842913 + z * 0.199999978164184098) +
                              z2 * ((0.142860539987689103 + z * 0.110881184477618932) + z2 * 0.0979173128165004183);
    const double logarithm = number.exponent + twice_log2_of_e * (number.s * (1.0 + z * correction));
    const double above_zero = base_magnitude == 0.0f ? -infinity : logarithm;
    return base_magnitude < std::numeric_limits<float>::infinity() ? above_zero : infinity;
}

/// Base raised to exponent, branch-free.
/// base, exponent  any floats; zeros, infinities, NaN and negative bases as C's table for pow has them
/// Exactness       at most 0.51 ulp; pow(2, x) has the bits of exp2(x)
inline float pow(float base, float exponent) noexcept
{
    const float base_magnitude = magnitude(base);
    const float exponent_magnitude = magnitude(exponent);
    const double wide_exponent = exponent;
    const float power = static_cast<float>(exp2_unrounded(wide_exponent * log2_of_base(base_magnitude)));

    // From 2^24 on every float is an even integer, infinity counts as one too.
    const float countable = exponent_magnitude < 0x1p24f ? exponent_magnitude : 0x1p24f;
    const double shifted = static_cast<double>(countable) + rounding_shift;
    const bool integral = shifted - rounding_shift == static_cast<double>(countable);
    const auto odd = static_cast<std::uint32_t>(bits_of(shifted)) & 1u;

    const bool negative_base = base < 0.0f;
    const bool base_finite = base_magnitude < std::numeric_limits<float>::infinity();
    const bool undefined = (negative_base & base_finite & !integral) | (base != base) | (exponent != exponent);
    const bool one = (exponent == 0.0f) | (base == 1.0f) |
                     ((base == -1.0f) & (exponent_magnitude == std::numeric_limits<float>::infinity()));
    const std::uint32_t sign = integral ? bits_of(base) & (odd << 31) : 0u;
    const float defined = select(undefined, std::numeric_limits<float>::quiet_NaN(), float_of(bits_of(power) | sign));
    return select(one, 1.0f, defined);
}

}  // namespace qorv::numeric
