#pragma once

#include <windows.h>

#include <boost/nowide/convert.hpp>
#include <string>

/// Conversion between the contract's UTF-8 and the system's ANSI code page, for system calls that take 8-bit text.
/// Characters that the code page lacks are replaced as the system does it.
namespace qorv::platform {

inline std::string to_ansi(const std::string& utf8)
{
    const std::wstring wide = boost::nowide::widen(utf8);
    const int size = static_cast<int>(wide.size());
    const int bytes = WideCharToMultiByte(CP_ACP, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string ansi(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.data(), size, ansi.data(), bytes, nullptr, nullptr);
    return ansi;
}

inline std::string to_utf8(const std::string& ansi)
{
    const int size = static_cast<int>(ansi.size());
    const int length = MultiByteToWideChar(CP_ACP, 0, ansi.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_ACP, 0, ansi.data(), size, wide.data(), length);
    return boost::nowide::narrow(wide);
}

}  // namespace qorv::platform
