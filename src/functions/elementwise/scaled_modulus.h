#pragma once

#include "numeric/float_bits.h"
#include "numeric/instruction_set.h"

#include <cmath>
#include <limits>
#include <type_traits>

/// The overflow-safe modulus of a complex number: its parts are scaled by a power of two before they are squared, so
/// that no square overflows or underflows. Branch-free, for float and double; the compiler vectorises loops over it.
namespace qorv::functions {
inline namespace ZENTRIX_INSTRUCTION_SET {

/// A complex number as (re, im) * back. The larger part is in [1, 2); for the smallest and largest numbers it is in
/// [2^-52, 4). Zeros, infinities and NaNs remain what they are.
template <class T>
struct scaled_complex
{
    T re, im;
    T back;  ///< a power of two

    /// sqrt(re^2 + im^2), still scaled.
    T modulus() const noexcept { return std::sqrt(re * re + im * im); }
};

/// |x|, as an integer operation that the compiler vectorises together with those below.
template <class T>
constexpr T without_sign(T x) noexcept
{
    using bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    return std::bit_cast<T>(static_cast<bits>(std::bit_cast<bits>(x) & (~bits{0} >> 1)));
}

template <class T>
scaled_complex<T> scaled(T re, T im) noexcept
{
    using bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    constexpr int fraction_bits = std::numeric_limits<T>::digits - 1;
    constexpr bits exponent_field = std::bit_cast<bits>(std::numeric_limits<T>::infinity());
    constexpr bits twice_bias = exponent_field - (bits{1} << fraction_bits);  // exponent field of 2^0, doubled
    constexpr T smallest = std::numeric_limits<T>::min();
    constexpr T largest = 1 / smallest;  // both have a reciprocal that is a normal number

    const T a = without_sign(re), b = without_sign(im);
    const T larger = a > b ? a : b;
    const T not_tiny = larger < smallest ? smallest : larger;
    const T within = not_tiny > largest ? largest : not_tiny;
    const bits exponent = std::bit_cast<bits>(within) & exponent_field;
    const T down = std::bit_cast<T>(static_cast<bits>(twice_bias - exponent));
    return {re * down, im * down, std::bit_cast<T>(exponent)};
}

/// |re + i im|, within 1.5 ulp. An infinite part gives infinity even if the other is NaN.
template <class T>
T safe_modulus(T re, T im) noexcept
{
    constexpr T infinity = std::numeric_limits<T>::infinity();
    const scaled_complex<T> z = scaled(re, im);
    const T modulus = z.modulus() * z.back;
    const T with_infinite_re = without_sign(re) == infinity ? infinity : modulus;
    return without_sign(im) == infinity ? infinity : with_infinite_re;
}

}  // namespace ZENTRIX_INSTRUCTION_SET
}  // namespace qorv::functions
