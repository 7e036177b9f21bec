#pragma once

#include <string_view>

/// Patterns of file names, for shells that do not expand them.
namespace zentrix::host {

/// Whether the text contains *, ? or [.
bool has_wildcard(std::string_view text);

/// Whether the whole name fits the pattern: * is any text, ? one character (of UTF-8), [a-f] and [!a-f] one of a set of
/// ASCII characters. A [ without ] is an ordinary character. A leading dot has to be in the pattern.
bool fits_wildcard(std::string_view pattern, std::string_view name);

}  // namespace zentrix::host
