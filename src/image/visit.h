#pragma once

#include <complex>
#include <cstdint>

#include "image/element_type.h"

namespace qorv::dm {

/// A list of element types that a script function has kernels for.
template <class... T>
struct element_list
{};

using float_or_double = element_list<float, double>;
using real_or_complex = element_list<float, std::complex<float>, double, std::complex<double>>;
using eight_reals =
    element_list<std::int16_t, float, std::uint8_t, std::int32_t, std::int8_t, std::uint16_t, std::uint32_t, double>;

/// Calls `work.operator()<T>()` for the type of the list that the host's code stands for. False when the list has none.
template <class... T, class Work>
bool visit(element_list<T...>, std::uint32_t code, Work&& work)
{
    return ((code == static_cast<std::uint32_t>(data_type_of<T>) ? (work.template operator()<T>(), true) : false) ||
            ...);
}

/// Whether the list has the type that the host's code stands for.
template <class... T>
constexpr bool has_type(element_list<T...>, std::uint32_t code)
{
    return ((code == static_cast<std::uint32_t>(data_type_of<T>)) || ...);
}

}  // namespace qorv::dm
