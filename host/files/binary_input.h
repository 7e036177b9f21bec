#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "host/objects/image.h"

namespace zentrix::host {

/// A file of binary numbers. Each access is checked against the file's length before memory is allocated for it.
class binary_input
{
  public:
    /// Throws  file_error as open_input
    explicit binary_input(const std::filesystem::path& file);

    std::uint64_t size() const noexcept { return size_; }
    std::uint64_t position() const noexcept { return position_; }
    std::uint64_t remaining() const noexcept { return size_ - position_; }

    /// Throws  header_error beyond the file's end
    void seek(std::uint64_t position);
    void skip(std::uint64_t bytes);
    /// Throws  header_error when the file has fewer bytes left
    void read(void* to, std::size_t bytes);
    /// The same for a number of that byte order.
    template <class T>
    T number(std::endian order)
    {
        static_assert(std::is_arithmetic_v<T>);
        std::array<std::byte, sizeof(T)> bytes;
        read(bytes.data(), bytes.size());
        if (order != std::endian::native) std::ranges::reverse(bytes);
        return std::bit_cast<T>(bytes);
    }
    std::string text(std::size_t bytes);

  private:
    std::ifstream stream_;
    std::uint64_t size_ = 0;
    std::uint64_t position_ = 0;
};

/// Sizes of an image, x first, from those in a header, after checks. Dimensions of length 1 beyond the second are left
/// out.
/// Throws  header_error for none, for more than three, and for a length below 1 or above 2147483647
std::vector<std::uint32_t> checked_sizes(std::span<const std::int64_t> announced);

/// Throws  header_error "it is cut short: ..." unless `available` bytes are enough for these elements
void require_enough_bytes(std::span<const std::uint32_t> sizes, std::size_t element_bytes, std::uint64_t available);

/// Reverses the bytes of each word in place. `word` is 1, 2, 4 or 8 bytes and divides the number of bytes.
void reverse_words(std::span<std::byte> bytes, std::size_t word);

/// The bytes that are reversed together when a number of that type changes its byte order: a complex number has two.
std::size_t word_of(const element& type) noexcept;

/// Reads all elements of a new contiguous image from the input's position.
/// Throws  header_error when the file has fewer
void read_elements(binary_input& from, std::endian order, image& to);

}  // namespace zentrix::host
