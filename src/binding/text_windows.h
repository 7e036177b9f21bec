#pragma once

#include <windows.h>

#include <string>

/// Between the contract's UTF-8 and the system's 8-bit code page, for the system calls that take the latter.
namespace qorv::platform {

inline std::wstring widen(const std::string& text, UINT code_page)
{
    if (text.empty()) return {};
    const int size = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(code_page, 0, text.data(), size, nullptr, 0)),
                      L'\0');
    MultiByteToWideChar(code_page, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

inline std::string narrow(const std::wstring& text, UINT code_page)
{
    if (text.empty()) return {};
    const int size = static_cast<int>(text.size());
    const int bytes = WideCharToMultiByte(code_page, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string narrowed(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(code_page, 0, text.data(), size, narrowed.data(), bytes, nullptr, nullptr);
    return narrowed;
}

inline std::string to_ansi(const std::string& utf8) { return narrow(widen(utf8, CP_UTF8), CP_ACP); }
inline std::string to_utf8(const std::string& ansi) { return narrow(widen(ansi, CP_ACP), CP_UTF8); }

}  // namespace qorv::platform
