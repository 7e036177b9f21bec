#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Expansion of lists and patterns of file names. All texts are UTF-8.
namespace qorv::functions {

/// The patterns of the first pair of a file dialog's filter "description|pattern;pattern|description|pattern...".
/// A filter without '|' consists of patterns only. An empty filter, "*" and "*.*" match every file.
std::vector<std::string> patterns_of(std::string_view filter);

/// Whether a file name matches a pattern, in which '*' matches any bytes and '?' one byte. The case of the letters A
/// to Z is ignored.
bool matches(std::string_view pattern, std::string_view name);

/// Whether a text is a list of files: it contains '*', '?', ';' or a line end.
bool lists_files(std::string_view text);

/// The files in a list of items, which are separated by ';' or line ends. An item is a file, a folder (its files that
/// match the filter), or a path with '*' or '?' in its last part (the matching files of that folder). Missing files and
/// folders are left out.
std::vector<std::string> expanded(std::string_view text, std::string_view filter);

/// Files as scripts receive them: the common folder with a separator at its end, and the names sorted by
/// sort_numbered_names. Files of several folders keep their paths as names, and the folder is empty.
struct selected_files
{
    std::string folder;
    std::vector<std::string> names;
};
selected_files grouped(const std::vector<std::string>& paths);

/// Whether a file is raw: its extension is none of the known image formats, which store size and type.
bool is_raw(std::string_view path);

}  // namespace qorv::functions
