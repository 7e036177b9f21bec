#pragma once

#include <cstdint>
#include <span>

namespace zentrix::host {

/// What an element's bytes mean, as far as the host treats them differently.
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

/// All element types, by code:
///   6, 9          1 byte unsigned, signed         10, 1     2 bytes unsigned, signed
///   11, 7         4 bytes unsigned, signed        2, 12     real of 4 and 8 bytes
///   3, 13         complex of 8 and 16 bytes       14        binary, 1 byte
///   23            colour, 4 bytes                 24, 25    integer of 8, 16 bytes, carried only
///   8, 15         colour of three 1-byte channels, 3 bytes
///   17, 18, 19    colour of three 2-, 4-, 8-byte channels: 6, 12, 24 bytes
///   26            two complex numbers, 32 bytes
/// The codes of the last three rows, and 14, 23 to 25, are moved as a whole and never computed with. Their sizes are
/// this host's choice: 24 and 25 have the sizes that other 8- and 16-byte elements have, the others sizes of their own.
std::span<const element> all_elements() noexcept;

/// The element type of `code`. Throws  script_error for an unknown code
const element& element_of(std::uint32_t code);

/// The code of the real, complex or integer element of `bytes` bytes. Throws  script_error when there is none
std::uint32_t code_of(element_class meaning, std::uint32_t bytes);

}  // namespace zentrix::host
