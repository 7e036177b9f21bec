#pragma once

#include <filesystem>
#include <fstream>

namespace zentrix::host {

/// Opens a regular file for reading in binary.
/// Throws  file_error when there is none or it cannot be opened, at once for pipes and devices, which could block
std::ifstream open_input(const std::filesystem::path& file);

}  // namespace zentrix::host
