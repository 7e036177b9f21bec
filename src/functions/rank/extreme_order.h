#pragma once

#include <limits>

/// The two orders that the extreme filters know, for the plain and the vector form alike.
namespace qorv::functions {

template <class T>
struct largest
{
    static constexpr T start = std::numeric_limits<T>::lowest();
    static constexpr T identity =
        std::numeric_limits<T>::has_infinity ? -std::numeric_limits<T>::infinity() : std::numeric_limits<T>::lowest();
    static bool beats(T a, T b) { return a > b; }
    static bool holds(T best, T value) { return best >= value; }
};

template <class T>
struct smallest
{
    static constexpr T start = std::numeric_limits<T>::max();
    static constexpr T identity =
        std::numeric_limits<T>::has_infinity ? std::numeric_limits<T>::infinity() : std::numeric_limits<T>::max();
    static bool beats(T a, T b) { return a < b; }
    static bool holds(T best, T value) { return best <= value; }
};

}  // namespace qorv::functions
