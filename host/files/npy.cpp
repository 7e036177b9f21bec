#include "host/files/npy.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <vector>

#include "host/files/binary_input.h"
#include "host/files/header_error.h"
#include "host/files/npy_header.h"
#include "host/files/pending_file.h"

namespace zentrix::host {

static_assert(std::endian::native == std::endian::little, "elements are written as they are in memory");

namespace {

struct dtype
{
    std::uint32_t code;       ///< HOST_ELEMENT_...
    std::string_view symbol;  ///< of NumPy, without the byte order
    const char* name;
};

constexpr std::array<dtype, 11> dtypes{{
    {HOST_ELEMENT_INT8, "i1", "int8"},
    {HOST_ELEMENT_UINT8, "u1", "uint8"},
    {HOST_ELEMENT_UINT8, "b1", "bool"},  // read as 0 and 1; never written
    {HOST_ELEMENT_INT16, "i2", "int16"},
    {HOST_ELEMENT_UINT16, "u2", "uint16"},
    {HOST_ELEMENT_INT32, "i4", "int32"},
    {HOST_ELEMENT_UINT32, "u4", "uint32"},
    {HOST_ELEMENT_FLOAT32, "f4", "float32"},
    {HOST_ELEMENT_FLOAT64, "f8", "float64"},
    {HOST_ELEMENT_COMPLEX64, "c8", "complex64"},
    {HOST_ELEMENT_COMPLEX128, "c16", "complex128"},
}};

const dtype* dtype_of(std::uint32_t code)
{
    const auto found = std::find_if(dtypes.begin(), dtypes.end(), [&](const dtype& d) { return d.code == code; });
    return found == dtypes.end() ? nullptr : &*found;
}

const dtype& dtype_of(const std::string& descr)
{
    const bool has_order = !descr.empty() && std::strchr("<>|=", descr.front()) != nullptr;
    const std::string_view symbol = std::string_view{descr}.substr(has_order ? 1 : 0);
    const auto found = std::find_if(dtypes.begin(), dtypes.end(), [&](const dtype& d) { return d.symbol == symbol; });
    if (found != dtypes.end()) return *found;
    throw header_error{
        "its elements are of type '" + descr +
        "'; expected int8, uint8, int16, uint16, int32, uint32, float32, float64, complex64 or complex128 "
        "(in NumPy: array.astype(\"float32\"))"};
}

/// Sizes with x first, checked against the limits of the host.
std::vector<std::uint32_t> sizes_of(const npy_header& header)
{
    const auto& shape = header.shape;
    if (shape.empty() || shape.size() > max_dimensions)
        throw header_error{"the array has " + std::to_string(shape.size()) + " dimensions; expected 1, 2 or 3"};
    for (const std::uint64_t length : shape)
        if (length == 0 || length > std::uint64_t{std::numeric_limits<std::int32_t>::max()})
            throw header_error{"one of its dimensions is " + std::to_string(length) +
                               " long; expected 1 to 2147483647"};
    return {shape.rbegin(), shape.rend()};
}

/// The image whose elements a column-major array of the same shape has in that order.
image_ref from_column_major(const image& array)
{
    auto result = array.clone();
    const std::size_t bytes = array.type().bytes, width = array.size(0), height = array.size(1), depth = array.size(2);
    const auto* from = static_cast<const std::byte*>(array.data());
    auto* out = static_cast<std::byte*>(result->data());
    for (std::size_t z = 0; z < depth; ++z)
        for (std::size_t y = 0; y < height; ++y)
            for (std::size_t x = 0; x < width; ++x, out += bytes)
                std::memcpy(out, from + (z + depth * (y + height * x)) * bytes, bytes);
    return result;
}

image_ref read_array(const std::filesystem::path& file)
{
    binary_input from{file};
    const npy_header header = read_npy_header(from);
    const dtype& type = dtype_of(header.descr);
    const auto sizes = sizes_of(header);
    require_enough_bytes(sizes, element_of(type.code).bytes, from.remaining());

    auto result = image::create(utf8_path(file.stem()), type.code, sizes);
    read_elements(from, header.descr.front() == '>' ? std::endian::big : std::endian::little, *result);
    return header.fortran_order && sizes.size() > 1 ? from_column_major(*result) : result;
}

}  // namespace

image_ref read_npy(const std::filesystem::path& file)
{
    return with_file_name(file, [&] { return read_array(file); });
}

void write_npy(const std::filesystem::path& file, const image& pixels)
{
    const dtype* const type = dtype_of(pixels.code());
    if (type == nullptr)
        throw file_error{file, std::string{"an image of type "} + pixels.type().name + " cannot be written as .npy"};
    std::vector<std::uint64_t> shape;
    for (std::size_t d = pixels.dimensions(); d-- > 0;) shape.push_back(pixels.size(d));
    const std::string order = type->symbol.back() == '1' ? "|" : "<";  // one-byte elements have no byte order

    pending_file output{file};
    const std::string header = npy_header_text({order + std::string{type->symbol}, false, shape});
    const std::size_t bytes = pixels.count() * pixels.type().bytes;
    output.reserve(header.size() + bytes);
    output.write(header.data(), header.size());
    const image_ref copy = pixels.is_contiguous() ? nullptr : pixels.clone();
    output.write(copy ? copy->data() : pixels.data(), bytes);
    output.commit();
}

std::string dtype_name(const element& type)
{
    const dtype* const found = dtype_of(type.code);
    return found ? found->name : type.name;
}

}  // namespace zentrix::host
