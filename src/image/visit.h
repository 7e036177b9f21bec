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

/// `M(T);` for each of the eight real element types. Kernels are templates defined in source files and instantiated
/// there with this list, so that none of them can lack a type that a script function accepts.
#define ZENTRIX_FOR_EIGHT_REALS(M) \
    M(std::int8_t);                \
    M(std::uint8_t);               \
    M(std::int16_t);               \
    M(std::uint16_t);              \
    M(std::int32_t);               \
    M(std::uint32_t);              \
    M(float);                      \
    M(double)

/// Calls `work.operator()<T>()` for the type of the list with the host's code `code`. False when the list has none.
template <class... T, class Work>
bool visit(element_list<T...>, std::uint32_t code, Work&& work)
{
    return ((code == static_cast<std::uint32_t>(data_type_of<T>) ? (work.template operator()<T>(), true) : false) ||
            ...);
}

/// Whether the list has a type with the host's code `code`.
template <class... T>
constexpr bool has_type(element_list<T...>, std::uint32_t code)
{
    return ((code == static_cast<std::uint32_t>(data_type_of<T>)) || ...);
}

}  // namespace qorv::dm
