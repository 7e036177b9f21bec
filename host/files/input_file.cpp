#include "host/files/input_file.h"

#include <cerrno>
#include <system_error>

#include "host/files/file_error.h"

namespace zentrix::host {

namespace fs = std::filesystem;

std::ifstream open_input(const fs::path& file)
{
    std::error_code problem;
    const fs::file_status status = fs::status(file, problem);
    if (status.type() == fs::file_type::not_found) throw file_error{file, "there is no such file"};
    if (status.type() == fs::file_type::none) throw file_error{file, "cannot be read: " + problem.message()};
    if (fs::is_directory(status)) throw file_error{file, "cannot be read: it is a folder"};
    if (!fs::is_regular_file(status)) throw file_error{file, "cannot be read: it is not a regular file"};
    std::ifstream stream{file, std::ios::binary};
    if (!stream) throw file_error{file, "cannot be read: " + std::generic_category().message(errno)};
    return stream;
}

}  // namespace zentrix::host
