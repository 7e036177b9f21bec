#pragma once

#include <cstdint>
#include <span>

namespace zentrix::host {

/// The meaning of an element's bytes, as far as the host distinguishes it.
enum class element_class
{
    signed_integer,
    unsigned_integer,
    real,
    complex,
    other
};

/// An element type of the host.
struct element
{
    std::uint32_t code;
    std::uint32_t bytes;
    element_class meaning;
    const char* name;
};

/// All element types, by code: those of host_element, and
///   8, 15         colour of three 1-byte channels, 3 bytes
///   17, 18, 19    colour of three 2-, 4- and 8-byte channels: 6, 12 and 24 bytes
///   23            colour, 4 bytes
///   24, 25        blocks of 8 and 16 bytes
///   26            two complex numbers, 32 bytes
/// These and HOST_ELEMENT_BINARY are copied as a whole and never computed with. Their sizes are this host's choice.
std::span<const element> all_elements() noexcept;

/// The element type of `code`. Throws  script_error for an unknown code
const element& element_of(std::uint32_t code);

/// The code of the real, complex or integer element of `bytes` bytes. Throws  script_error when there is none
std::uint32_t code_of(element_class meaning, std::uint32_t bytes);

}  // namespace zentrix::host
