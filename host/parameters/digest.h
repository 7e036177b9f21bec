#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace zentrix::host {

/// Size and digest of a file's contents. The digest tells files apart; it does not protect against forgery.
struct fingerprint
{
    std::uint64_t bytes = 0;
    std::string digest;  ///< "xxh128:" and 32 hexadecimal digits, the XXH3 hash of 128 bits that `xxh128sum` prints

    bool operator==(const fingerprint&) const = default;
};

/// Reads the whole file, 64 KiB at a time. Throws  file_error
fingerprint fingerprint_of(const std::filesystem::path& file);

}  // namespace zentrix::host
