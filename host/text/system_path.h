#pragma once

#include <filesystem>
#include <string>

namespace zentrix::host {

/// The system's form of a path in UTF-8, which is what all texts of this host are in.
inline std::filesystem::path system_path(const std::string& utf8)
{
    return std::filesystem::path{std::u8string{utf8.begin(), utf8.end()}};
}

/// The same back.
inline std::string utf8_path(const std::filesystem::path& path)
{
    const auto text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace zentrix::host
