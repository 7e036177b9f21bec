#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace support {

/// The distance of a float from the true value, in units in the last place of the true value, which may be subnormal.
/// 0 for the correct infinity, zero or NaN; infinite for an incorrect one and for a zero of the wrong sign.
inline double ulps(float got, double truth)
{
    constexpr double wrong = std::numeric_limits<double>::infinity();
    if (std::isnan(truth)) return std::isnan(got) ? 0 : wrong;
    if (truth == 0) return got == 0 && std::signbit(got) == std::signbit(truth) ? 0 : wrong;
    const auto nearest = static_cast<float>(truth);
    if (std::isinf(nearest) || std::isinf(got)) return got == nearest ? 0 : wrong;
    if (std::isnan(got)) return wrong;
    const int exponent = std::max(std::ilogb(truth), -126);
    return std::abs(got - truth) * std::ldexp(1.0, 23 - exponent);
}

}  // namespace support
