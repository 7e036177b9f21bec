#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/files/binary_input.h"

namespace zentrix::host {

/// The header of a .npy file.
struct npy_header
{
    std::string descr;  ///< element type with its byte order, "<f4"
    bool fortran_order = false;
    std::vector<std::uint64_t> shape;
};

/// Reads magic, version (1, 2 or 3), length and dictionary; leaves the input at the first element.
/// Throws  header_error
npy_header read_npy_header(binary_input& from);

/// Magic, version 1, length and dictionary, padded to a multiple of 64 bytes as the format requires.
std::string npy_header_text(const npy_header& header);

}  // namespace zentrix::host
