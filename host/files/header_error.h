#pragma once

#include <filesystem>
#include <stdexcept>

#include "host/files/file_error.h"
#include "host/objects/value.h"

namespace zentrix::host {

/// The contents of a file are wrong. The text does not name the file.
class header_error : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

/// What `read` returns. Errors in the contents, and sizes that no image can have, become a file_error of this file.
template <class Read>
auto with_file_name(const std::filesystem::path& file, Read read)
try {
    return read();
} catch (const header_error& problem) {
    throw file_error{file, problem.what()};
} catch (const script_error& problem) {  // from image::create: size or memory
    throw file_error{file, problem.what()};
}

}  // namespace zentrix::host
