#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include "host/text/system_path.h"

namespace zentrix::host {

/// A file that cannot be read or written. The text starts with the file's name and says what was expected or what the
/// system answered.
class file_error : public std::runtime_error
{
  public:
    file_error(const std::filesystem::path& file, const std::string& problem)
        : std::runtime_error{utf8_path(file) + ": " + problem}
    {}
};

}  // namespace zentrix::host
