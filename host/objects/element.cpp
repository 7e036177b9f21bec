#include "host/objects/element.h"

#include "host/objects/value.h"

#include <algorithm>

namespace zentrix::host {

namespace {

using enum element_class;

constexpr element elements[] = {{HOST_ELEMENT_INT16, 2, signed_integer, "Integer 2 Byte Signed"},
                                {HOST_ELEMENT_FLOAT32, 4, real, "Real 4 Byte"},
                                {HOST_ELEMENT_COMPLEX64, 8, complex, "Complex 8 Byte"},
                                {HOST_ELEMENT_UINT8, 1, unsigned_integer, "Integer 1 Byte Unsigned"},
                                {HOST_ELEMENT_INT32, 4, signed_integer, "Integer 4 Byte Signed"},
                                {8, 3, other, "Colour 3 Byte"},
                                {HOST_ELEMENT_INT8, 1, signed_integer, "Integer 1 Byte Signed"},
                                {HOST_ELEMENT_UINT16, 2, unsigned_integer, "Integer 2 Byte Unsigned"},
                                {HOST_ELEMENT_UINT32, 4, unsigned_integer, "Integer 4 Byte Unsigned"},
                                {HOST_ELEMENT_FLOAT64, 8, real, "Real 8 Byte"},
                                {HOST_ELEMENT_COMPLEX128, 16, complex, "Complex 16 Byte"},
                                {HOST_ELEMENT_BINARY, 1, other, "Binary 1 Byte"},
                                {15, 3, other, "Colour 3 Byte, other order"},
                                {17, 6, other, "Colour 6 Byte"},
                                {18, 12, other, "Colour 12 Byte"},
                                {19, 24, other, "Colour 24 Byte"},
                                {23, 4, other, "Colour 4 Byte"},
                                {24, 8, other, "Block 8 Byte"},
                                {25, 16, other, "Block 16 Byte"},
                                {26, 32, other, "Complex Pair 32 Byte"}};

}  // namespace

std::span<const element> all_elements() noexcept { return elements; }

const element& element_of(std::uint32_t code)
{
    const auto found = std::ranges::find(elements, code, &element::code);
    if (found == std::end(elements)) throw script_error{"The data type " + std::to_string(code) + " is unknown."};
    return *found;
}

std::uint32_t code_of(element_class meaning, std::uint32_t bytes)
{
    const auto found = std::ranges::find_if(
        elements, [&](const element& one) { return one.meaning == meaning && one.bytes == bytes; });
    if (found == std::end(elements))
        throw script_error{"There is no such element type of " + std::to_string(bytes) + " bytes."};
    return found->code;
}

}  // namespace zentrix::host
