#pragma once

#include <bit>
#include <cstdint>
#include <type_traits>

/// Unsigned integers that sort like the floating-point numbers they encode: all bits of a negative number are flipped,
/// of any other number the sign bit. -0 sorts before +0; a NaN sorts first or last, by its sign.
namespace qorv::functions {

template <class T>
using rank_key = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;

template <class T>
rank_key<T> key_of(T value)
{
    using key = rank_key<T>;
    constexpr int last = 8 * sizeof(T) - 1;
    const key bits = std::bit_cast<key>(value);
    return bits ^ ((key(0) - (bits >> last)) | key(1) << last);
}

template <class T>
T value_of(rank_key<T> key)
{
    constexpr int last = 8 * sizeof(T) - 1;
    return std::bit_cast<T>(key ^ (((key >> last) - 1) | rank_key<T>(1) << last));
}

}  // namespace qorv::functions
