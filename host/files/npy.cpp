#include "host/files/npy.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <vector>

#include "host/files/file_error.h"
#include "host/files/input_file.h"
#include "host/files/npy_header.h"
#include "host/files/pending_file.h"
#include "host/objects/value.h"

namespace zentrix::host {

static_assert(std::endian::native == std::endian::little, "elements are written as they are in memory");

namespace {

struct dtype
{
    std::uint32_t code;       ///< HOST_ELEMENT_...
    std::string_view symbol;  ///< of NumPy, without the byte order
    const char* name;
    std::size_t word;  ///< bytes of a part that is reversed as a whole when the byte order is swapped
};

constexpr std::array<dtype, 10> dtypes{{
    {HOST_ELEMENT_INT8, "i1", "int8", 1},
    {HOST_ELEMENT_UINT8, "u1", "uint8", 1},
    {HOST_ELEMENT_INT16, "i2", "int16", 2},
    {HOST_ELEMENT_UINT16, "u2", "uint16", 2},
    {HOST_ELEMENT_INT32, "i4", "int32", 4},
    {HOST_ELEMENT_UINT32, "u4", "uint32", 4},
    {HOST_ELEMENT_FLOAT32, "f4", "float32", 4},
    {HOST_ELEMENT_FLOAT64, "f8", "float64", 8},
    {HOST_ELEMENT_COMPLEX64, "c8", "complex64", 4},
    {HOST_ELEMENT_COMPLEX128, "c16", "complex128", 8},
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

void require_enough_bytes(const std::vector<std::uint32_t>& sizes, std::size_t element_bytes, std::uint64_t available)
{
    std::uint64_t possible = available / element_bytes;
    for (const std::uint32_t size : sizes) possible /= size;
    if (possible > 0) return;
    std::string text;
    for (auto size = sizes.rbegin(); size != sizes.rend(); ++size)
        text += (text.empty() ? "" : " x ") + std::to_string(*size);
    throw header_error{"it is cut short: " + text + " elements of " + std::to_string(element_bytes) +
                       " bytes are announced, but only " + std::to_string(available) + " bytes follow"};
}

void reverse_words(std::vector<std::byte>& bytes, std::size_t word)
{
    for (auto at = bytes.begin(); at != bytes.end(); at += static_cast<std::ptrdiff_t>(word))
        std::reverse(at, at + static_cast<std::ptrdiff_t>(word));
}

/// Copies a column-major array of the same shape into row-major order.
void copy_from_column_major(image& to, const std::vector<std::byte>& from)
{
    const std::size_t bytes = to.type().bytes, width = to.size(0), height = to.size(1), depth = to.size(2);
    auto* out = static_cast<std::byte*>(to.data());
    for (std::size_t z = 0; z < depth; ++z)
        for (std::size_t y = 0; y < height; ++y)
            for (std::size_t x = 0; x < width; ++x, out += bytes)
                std::memcpy(out, &from[(z + depth * (y + height * x)) * bytes], bytes);
}

image_ref read(std::istream& stream, const std::filesystem::path& file)
{
    const npy_header header = read_npy_header(stream);
    const dtype& type = dtype_of(header.descr);
    const auto sizes = sizes_of(header);
    const std::size_t element_bytes = element_of(type.code).bytes;
    const auto here = stream.tellg();
    const auto available = static_cast<std::uint64_t>(stream.seekg(0, std::ios::end).tellg() - here);
    require_enough_bytes(sizes, element_bytes, available);
    stream.seekg(here);

    auto result = image::create(utf8_path(file.stem()), type.code, sizes);
    const bool swap = header.descr.front() == '>' && type.word > 1;
    if (!swap && !header.fortran_order) {
        stream.read(static_cast<char*>(result->data()), static_cast<std::streamsize>(result->count() * element_bytes));
    } else {
        std::vector<std::byte> raw(result->count() * element_bytes);
        stream.read(reinterpret_cast<char*>(raw.data()), static_cast<std::streamsize>(raw.size()));
        if (swap) reverse_words(raw, type.word);
        if (header.fortran_order)
            copy_from_column_major(*result, raw);
        else
            std::memcpy(result->data(), raw.data(), raw.size());
    }
    if (!stream) throw header_error{"its elements cannot be read"};
    return result;
}

}  // namespace

image_ref read_npy(const std::filesystem::path& file)
{
    std::ifstream stream = open_input(file);
    try {
        return read(stream, file);
    } catch (const header_error& problem) {
        throw file_error{file, problem.what()};
    } catch (const script_error& problem) {  // from image::create: size or memory
        throw file_error{file, problem.what()};
    }
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
