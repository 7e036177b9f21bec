#include "image/element_type.h"

#include <array>

#include "image/errors.h"

namespace qorv::dm {
namespace {

struct row
{
    data_type code;
    const char* name;
    std::uint32_t bytes;
};

constexpr std::array<row, 10> rows{{
    {data_type::int8, "Integer 1 Byte Signed", 1},
    {data_type::uint8, "Integer 1 Byte Unsigned", 1},
    {data_type::int16, "Integer 2 Byte Signed", 2},
    {data_type::uint16, "Integer 2 Byte Unsigned", 2},
    {data_type::int32, "Integer 4 Byte Signed", 4},
    {data_type::uint32, "Integer 4 Byte Unsigned", 4},
    {data_type::float32, "Real 4 Byte", 4},
    {data_type::float64, "Real 8 Byte", 8},
    {data_type::complex64, "Complex 8 Byte", 8},
    {data_type::complex128, "Complex 16 Byte", 16},
}};

const row* row_of(element_type type) noexcept
{
    const auto index = static_cast<std::int32_t>(type);
    return index >= 0 && index < std::int32_t{rows.size()} ? &rows[static_cast<std::size_t>(index)] : nullptr;
}

}  // namespace

std::uint32_t ToDMDataType(std::int32_t index)
{
    if (index == -1) return static_cast<std::uint32_t>(data_type::none);
    const row* found = row_of(static_cast<element_type>(index));
    require(found != nullptr, errors::unknown_data_type);
    return static_cast<std::uint32_t>(found->code);
}

element_type element_type_of(std::uint32_t code) noexcept
{
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (static_cast<std::uint32_t>(rows[i].code) == code) return static_cast<element_type>(i);
    return element_type::none;
}

const char* display_name(element_type type) noexcept
{
    const row* found = row_of(type);
    return found ? found->name : "";
}

std::uint32_t element_bytes(element_type type) noexcept
{
    const row* found = row_of(type);
    return found ? found->bytes : 0;
}

}  // namespace qorv::dm
