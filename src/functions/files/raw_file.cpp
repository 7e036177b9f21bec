#include "functions/files/raw_file.h"

#include <filesystem>
#include <limits>
#include <system_error>

#include "image/errors.h"

namespace qorv::functions {
namespace {

std::filesystem::path from_utf8(const std::string& path) { return std::u8string{path.begin(), path.end()}; }

}  // namespace

std::uint64_t raw_bytes(dm::element_type type, std::int32_t width, std::int32_t height, std::int32_t depth)
{
    std::uint64_t bytes = dm::element_bytes(type);
    dm::require(bytes != 0, dm::errors::unknown_data_type);
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    for (const std::int32_t size : {width, height, depth}) {
        dm::require(size >= 1 && bytes <= most / static_cast<std::uint64_t>(size), dm::errors::invalid_image_size);
        bytes *= static_cast<std::uint64_t>(size);
    }
    return bytes;
}

raw_file::raw_file(const std::string& path)
{
    std::error_code error;
    const auto name = from_utf8(path);
    dm::require(std::filesystem::is_regular_file(name, error), file_not_opened);
    length_ = std::filesystem::file_size(name, error);
    stream_.open(name, std::ios::binary);
    dm::require(!error && stream_.is_open(), file_not_opened);
}

void raw_file::require_length(std::uint64_t bytes) const
{
    dm::require(length_ == bytes, dm::errors::invalid_image_size);
}

void raw_file::read(void* destination, std::uint64_t bytes)
{
    stream_.seekg(0);
    stream_.read(static_cast<char*>(destination), static_cast<std::streamsize>(bytes));
    dm::require(static_cast<std::uint64_t>(stream_.gcount()) == bytes, file_not_read);
}

}  // namespace qorv::functions
