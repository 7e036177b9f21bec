#include "host/files/binary_input.h"

#include <algorithm>
#include <limits>

#include "host/files/header_error.h"
#include "host/files/input_file.h"

namespace zentrix::host {

namespace {

[[noreturn]] void end_of_file() { throw header_error{"it ends within its header"}; }

template <class T>
void reverse_each(std::span<std::byte> bytes)
{
    for (std::size_t at = 0; at < bytes.size(); at += sizeof(T)) {
        std::array<std::byte, sizeof(T)> word;
        std::memcpy(word.data(), &bytes[at], sizeof(T));
        std::ranges::reverse(word);
        std::memcpy(&bytes[at], word.data(), sizeof(T));
    }
}

}  // namespace

binary_input::binary_input(const std::filesystem::path& file) : stream_{open_input(file)}
{
    stream_.seekg(0, std::ios::end);
    const auto end = stream_.tellg();
    size_ = end > 0 ? static_cast<std::uint64_t>(end) : 0;
    stream_.seekg(0);
}

void binary_input::seek(std::uint64_t position)
{
    if (position > size_) end_of_file();
    stream_.seekg(static_cast<std::streamoff>(position));
    position_ = position;
}

void binary_input::skip(std::uint64_t bytes)
{
    if (bytes > remaining()) end_of_file();
    constexpr std::uint64_t within_buffer = 512;  // a seek would read the buffer again
    if (bytes > within_buffer) return seek(position_ + bytes);
    stream_.ignore(static_cast<std::streamsize>(bytes));
    position_ += bytes;
}

void binary_input::read(void* to, std::size_t bytes)
{
    if (bytes > remaining()) end_of_file();
    stream_.read(static_cast<char*>(to), static_cast<std::streamsize>(bytes));
    if (!stream_) throw header_error{"it cannot be read"};
    position_ += bytes;
}

std::string binary_input::text(std::size_t bytes)
{
    if (bytes > remaining()) end_of_file();
    std::string result(bytes, '\0');
    read(result.data(), bytes);
    return result;
}

std::vector<std::uint32_t> checked_sizes(std::span<const std::int64_t> announced)
{
    std::vector<std::uint32_t> sizes;
    for (const std::int64_t length : announced) {
        if (length < 1 || length > std::numeric_limits<std::int32_t>::max())
            throw header_error{"one of its dimensions is " + std::to_string(length) +
                               " long; expected 1 to 2147483647"};
        sizes.push_back(static_cast<std::uint32_t>(length));
    }
    while (sizes.size() > 2 && sizes.back() == 1) sizes.pop_back();
    if (sizes.empty() || sizes.size() > max_dimensions)
        throw header_error{"it has " + std::to_string(sizes.size()) + " dimensions; expected 1, 2 or 3"};
    return sizes;
}

void require_enough_bytes(std::span<const std::uint32_t> sizes, std::size_t element_bytes, std::uint64_t available)
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

void reverse_words(std::span<std::byte> bytes, std::size_t word)
{
    switch (word) {
        case 2: return reverse_each<std::uint16_t>(bytes);
        case 4: return reverse_each<std::uint32_t>(bytes);
        case 8: return reverse_each<std::uint64_t>(bytes);
        default: return;
    }
}

std::size_t word_of(const element& type) noexcept
{
    return type.meaning == element_class::complex ? type.bytes / 2 : type.bytes;
}

void read_elements(binary_input& from, std::endian order, image& to)
{
    const std::span bytes{static_cast<std::byte*>(to.data()), to.count() * to.type().bytes};
    from.read(bytes.data(), bytes.size());
    if (order != std::endian::native) reverse_words(bytes, word_of(to.type()));
}

}  // namespace zentrix::host
