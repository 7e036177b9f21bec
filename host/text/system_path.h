#pragma once

#include <filesystem>
#include <string>

namespace zentrix::host {

/// The path that a UTF-8 text names. std::filesystem::path{text} would read it in the system's code page on Windows.
inline std::filesystem::path system_path(const std::string& utf8)
{
    return std::filesystem::path{std::u8string{utf8.begin(), utf8.end()}};
}

/// The path as UTF-8 text.
inline std::string utf8_path(const std::filesystem::path& path)
{
    const auto text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace zentrix::host
