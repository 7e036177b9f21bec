#include "host/files/pending_file.h"

#include <system_error>

#include "host/files/draft_file.h"
#include "host/files/file_error.h"

namespace zentrix::host {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void refuse(const fs::path& file, const std::string& why)
{
    throw file_error{file, "cannot be written: " + why};
}

/// The file at the end of symbolic links; it need not exist.
fs::path followed(fs::path target)
{
    constexpr int most_links = 40;  // as Linux has it
    std::error_code ignored;
    for (int i = 0; i < most_links; ++i) {
        if (!fs::is_symlink(target, ignored)) return target;
        target = target.parent_path() / fs::read_symlink(target, ignored);
    }
    throw std::system_error{std::make_error_code(std::errc::too_many_symbolic_link_levels)};
}

fs::path checked(const fs::path& target)
{
    fs::path end = followed(target);
    std::error_code problem;
    const fs::file_status status = fs::status(end, problem);
    if (status.type() == fs::file_type::not_found) return end;
    if (status.type() == fs::file_type::none) throw std::system_error{problem};
    if (fs::is_directory(status)) refuse(target, "it is a folder");
    if (!fs::is_regular_file(status)) refuse(target, "it is not a regular file");
    if (is_read_only(end)) refuse(target, "it is read-only");
    return end;
}

}  // namespace

pending_file::pending_file(const fs::path& target)
try : target_{checked(target)}, draft_{std::make_unique<draft_file>(target_)} {
} catch (const std::system_error& problem) {
    refuse(target, problem.code().message());
}

pending_file::~pending_file() = default;

void pending_file::reserve(std::uint64_t bytes)
try {
    draft_->reserve(bytes);
} catch (const std::system_error& problem) {
    refuse(target_, problem.code().message());
}

void pending_file::write(const void* bytes, std::size_t count)
try {
    draft_->write(static_cast<const std::byte*>(bytes), count);
} catch (const std::system_error& problem) {
    refuse(target_, problem.code().message());
}

void pending_file::commit()
try {
    draft_->move_to(target_);
} catch (const std::system_error& problem) {
    refuse(target_, problem.code().message());
}

}  // namespace zentrix::host
