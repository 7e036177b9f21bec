#pragma once

#include <cstdint>
#include <fstream>
#include <string>

#include "image/element_type.h"

namespace qorv::functions {

inline constexpr char file_not_opened[] = "The file cannot be opened.";
inline constexpr char file_not_read[] = "The file cannot be read.";

/// Bytes of a raw image: elements without header or gaps, x fastest, then y, then z.
/// Throws  errors::unknown_data_type for none; errors::invalid_image_size for a size below 1 and for more bytes than
///         2^63 - 1
std::uint64_t raw_bytes(dm::element_type type, std::int32_t width, std::int32_t height, std::int32_t depth);

/// A file of raw elements in the byte order of the machine (little-endian).
class raw_file
{
  public:
    /// path    UTF-8
    /// Throws  file_not_opened
    explicit raw_file(const std::string& path);

    /// Throws  errors::invalid_image_size unless the file has exactly that length: a wrong width or type would give a
    ///         skewed image
    void require_length(std::uint64_t bytes) const;

    /// Reads the first `bytes` bytes.
    /// Throws  file_not_read
    void read(void* destination, std::uint64_t bytes);

  private:
    std::ifstream stream_;
    std::uint64_t length_ = 0;
};

}  // namespace qorv::functions
