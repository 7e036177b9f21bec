#pragma once

#include <boost/nowide/convert.hpp>
#include <string>
#include <string_view>

/// All texts of this host are UTF-8; Windows takes and returns UTF-16. Sequences that are not valid become U+FFFD.
namespace zentrix::host {

inline std::wstring widen(std::string_view utf8) { return boost::nowide::widen(utf8.data(), utf8.size()); }
inline std::string narrow(std::wstring_view utf16) { return boost::nowide::narrow(utf16.data(), utf16.size()); }

}  // namespace zentrix::host
