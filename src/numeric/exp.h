#pragma once

#include "numeric/float_bits.h"
#include "numeric/instruction_set.h"

namespace qorv::numeric {
inline namespace ZENTRIX_INSTRUCTION_SET {

/// 2^t with a relative error below 2^-34. The functions of this folder round it to float once.
/// t        [-1000, 1000], or NaN, which stays NaN; integers give exact powers
/// Source   coefficients from tools/numeric_coefficients.py
inline double exp2_unrounded(double t) noexcept
{
    const double shifted = t + rounding_shift;
    const double r = t - (shifted - rounding_shift);  // in [-1/2, 1/2]
    const double r2 = r * r;
    const double r4 = r2 * r2;
    const double p =
        ((0.999999999961679337 + r * 0.693147180728438434) + r2 * (0.240226511981672535 + r * 0.0555041035345692719)) +
        r4 * ((0.009618027252690619 + r * 0.00133339225549174898) +
              r2 * (0.000154692914075347694 + r * 0.0000152019242488386218));
    return double_of(bits_of(p) + (bits_of(shifted) << 52));  // the exponent grows by the integer part
}

/// 2^x.
/// x          any float
/// Exactness  at most 0.501 ulp, subnormal results included; exact for integers
inline float exp2(float x) noexcept { return static_cast<float>(exp2_unrounded(limited(x, -200.0, 200.0))); }

/// e^x.
/// x          any float
/// Exactness  at most 0.501 ulp, subnormal results included
inline float exp(float x) noexcept
{
    constexpr double log2_of_e = 0x1.71547652b82fep0;  // the error of the product, at most 2^-46, needs no second part
    return static_cast<float>(exp2_unrounded(limited(x, -200.0, 200.0) * log2_of_e));
}

}  // namespace ZENTRIX_INSTRUCTION_SET
}  // namespace qorv::numeric
