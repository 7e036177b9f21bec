#include "host/files/pending_file.h"

#include <cerrno>
#include <random>
#include <system_error>

#include "host/files/file_error.h"

namespace zentrix::host {

namespace fs = std::filesystem;

namespace {

std::string last_system_error() { return std::generic_category().message(errno); }

fs::path followed(const fs::path& target)
{
    std::error_code ignored;
    if (!fs::is_symlink(target, ignored)) return target;
    const fs::path end = fs::weakly_canonical(target, ignored);
    return end.empty() ? target : end;
}

/// In the same folder, so that the move stays within one file system.
fs::path draft_of(const fs::path& target)
{
    fs::path draft = target;
    draft += ".part" + std::to_string(std::random_device{}() % 1000000);
    return draft;
}

}  // namespace

pending_file::pending_file(const fs::path& target) : target_{followed(target)}, draft_{draft_of(target_)}
{
    std::error_code ignored;
    // Moving a file over a device or a folder would replace the device or fail with a riddle.
    if (fs::exists(target_, ignored) && !fs::is_regular_file(target_, ignored))
        throw file_error{target, "cannot be written: it is not a regular file"};
    stream_.open(draft_, std::ios::binary | std::ios::trunc);
    if (!stream_) throw file_error{target, "cannot be written: " + last_system_error()};
}

pending_file::~pending_file()
{
    if (draft_.empty()) return;
    stream_.close();
    std::error_code ignored;
    fs::remove(draft_, ignored);
}

void pending_file::write(const void* bytes, std::size_t count)
{
    stream_.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(count));
    if (!stream_) throw file_error{target_, "cannot be written: " + last_system_error()};
}

void pending_file::commit()
{
    stream_.close();
    if (!stream_) throw file_error{target_, "cannot be written: " + last_system_error()};
    std::error_code problem;
    fs::rename(draft_, target_, problem);
    if (problem) throw file_error{target_, "cannot be written: " + problem.message()};
    draft_.clear();
}

}  // namespace zentrix::host
