#pragma once

#include <bit>
#include <cstdint>

#include "numeric/instruction_set.h"

/// Bit patterns and branch-free steps of the elementary functions. SSE2 has all of this arithmetic for vectors, so the
/// compiler vectorises loops over these functions; a scalar call gives the same bits.
namespace qorv::numeric {
inline namespace ZENTRIX_INSTRUCTION_SET {

constexpr std::uint32_t bits_of(float x) noexcept { return std::bit_cast<std::uint32_t>(x); }
constexpr std::uint64_t bits_of(double x) noexcept { return std::bit_cast<std::uint64_t>(x); }
constexpr float float_of(std::uint32_t bits) noexcept { return std::bit_cast<float>(bits); }
constexpr double double_of(std::uint64_t bits) noexcept { return std::bit_cast<double>(bits); }

inline constexpr std::uint32_t sign_bit = 0x80000000u;

/// Adding and subtracting 1.5 * 2^52 rounds a double below 2^51 to an integer, ties to even. The low bits of the sum
/// contain that integer in two's complement.
inline constexpr double rounding_shift = 0x1.8p52;

constexpr float magnitude(float x) noexcept { return float_of(bits_of(x) & ~sign_bit); }

/// All bits set if `condition` holds, none otherwise. Conditions are combined as masks because GCC does not vectorise
/// longer expressions of bool.
constexpr std::uint32_t mask_of(bool condition) noexcept { return condition ? ~0u : 0u; }

/// `chosen` if all bits of the mask are set, `otherwise` if none is.
constexpr float select(std::uint32_t mask, float chosen, float otherwise) noexcept
{
    return float_of((bits_of(chosen) & mask) | (bits_of(otherwise) & ~mask));
}

/// `x` limited to [low, high]; NaN stays NaN. Without masks, which GCC does not vectorise for double.
constexpr double limited(double x, double low, double high) noexcept
{
    const double from_below = x < low ? low : x;
    return from_below > high ? high : from_below;
}

}  // namespace ZENTRIX_INSTRUCTION_SET
}  // namespace qorv::numeric
