#pragma once

#include <complex>
#include <cstdint>

#include "contract/host_link.h"

/// Zentrix64's numbering of pixel types, and the host's codes for them.
namespace qorv::dm {

enum class element_type : std::int32_t
{
    none = -1,
    int8,
    uint8,
    int16,
    uint16,
    int32,
    uint32,
    float32,
    float64,
    complex64,   ///< two floats, 8 bytes
    complex128,  ///< two doubles, 16 bytes
};

/// The host's data type codes of the ten element types; the host has further codes (14 binary, 23 RGB, ...).
enum class data_type : std::uint32_t
{
    none = 0xFFFFFFFFu,
    int16 = HOST_ELEMENT_INT16,
    float32 = HOST_ELEMENT_FLOAT32,
    complex64 = HOST_ELEMENT_COMPLEX64,
    uint8 = HOST_ELEMENT_UINT8,
    int32 = HOST_ELEMENT_INT32,
    int8 = HOST_ELEMENT_INT8,
    uint16 = HOST_ELEMENT_UINT16,
    uint32 = HOST_ELEMENT_UINT32,
    float64 = HOST_ELEMENT_FLOAT64,
    complex128 = HOST_ELEMENT_COMPLEX128,
    binary = HOST_ELEMENT_BINARY,
};

/// The host's code of element type `index`.
/// index   0 to 9, or -1 for none, whose code is 0xFFFFFFFF
/// Throws  errors::unknown_data_type for any other index
std::uint32_t ToDMDataType(std::int32_t index);

/// The element type of a host code; none for a code outside the table.
element_type element_type_of(std::uint32_t code) noexcept;

/// Name shown to a user ("Real 4 Byte"); empty for none.
const char* display_name(element_type type) noexcept;

/// Bytes of one element; 0 for none.
std::uint32_t element_bytes(element_type type) noexcept;

template <class T>
inline constexpr data_type data_type_of = data_type::none;
template <>
inline constexpr data_type data_type_of<std::int8_t> = data_type::int8;
template <>
inline constexpr data_type data_type_of<std::uint8_t> = data_type::uint8;
template <>
inline constexpr data_type data_type_of<std::int16_t> = data_type::int16;
template <>
inline constexpr data_type data_type_of<std::uint16_t> = data_type::uint16;
template <>
inline constexpr data_type data_type_of<std::int32_t> = data_type::int32;
template <>
inline constexpr data_type data_type_of<std::uint32_t> = data_type::uint32;
template <>
inline constexpr data_type data_type_of<float> = data_type::float32;
template <>
inline constexpr data_type data_type_of<double> = data_type::float64;
template <>
inline constexpr data_type data_type_of<std::complex<float>> = data_type::complex64;
template <>
inline constexpr data_type data_type_of<std::complex<double>> = data_type::complex128;

}  // namespace qorv::dm
