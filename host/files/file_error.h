#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include "host/text/system_path.h"

namespace zentrix::host {

/// A file cannot be read or written. The text starts with the file's name and gives the reason.
class file_error : public std::runtime_error
{
  public:
    file_error(const std::filesystem::path& file, const std::string& problem)
        : std::runtime_error{utf8_path(file) + ": " + problem}
    {}
};

}  // namespace zentrix::host
