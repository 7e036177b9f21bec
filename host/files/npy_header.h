#pragma once

#include <cstdint>
#include <istream>
#include <stdexcept>
#include <string>
#include <vector>

namespace zentrix::host {

/// The header of a .npy file.
struct npy_header
{
    std::string descr;  ///< element type with its byte order, "<f4"
    bool fortran_order = false;
    std::vector<std::uint64_t> shape;
};

/// The contents of a file are wrong. The text does not name the file.
class header_error : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

/// Reads magic, version (1, 2 or 3), length and dictionary; leaves the stream at the first element.
/// Throws  header_error
npy_header read_npy_header(std::istream& stream);

/// Magic, version 1, length and dictionary, padded to a multiple of 64 bytes as the format requires.
std::string npy_header_text(const npy_header& header);

}  // namespace zentrix::host
