#pragma once

#include <complex>
#include <cstddef>
#include <limits>
#include <type_traits>
#include <vector>

namespace support {

/// The same values with every NaN replaced by one: which operand's NaN an addition returns is the compiler's choice.
template <class T>
std::vector<T> one_nan(std::vector<T> values)
{
    if constexpr (!std::is_integral_v<T>) {
        using part = decltype(std::real(T{}));
        auto* parts = reinterpret_cast<part*>(values.data());
        for (std::size_t i = 0; i < values.size() * (sizeof(T) / sizeof(part)); ++i)
            if (parts[i] != parts[i]) parts[i] = std::numeric_limits<part>::quiet_NaN();
    }
    return values;
}

}  // namespace support
