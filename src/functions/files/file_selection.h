#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Which files a script means by a text, without a dialog. All texts are UTF-8.
namespace qorv::functions {

/// The patterns of a file dialog's filter "description|pattern;pattern|description|pattern...": those of its first pair,
/// with which the dialog opens. A filter without '|' is patterns only. Empty, "*" and "*.*" mean every file.
std::vector<std::string> patterns_of(std::string_view filter);

/// Compares a file's name with a pattern of '*' (any run) and '?' (any one byte), letters A to Z without regard to case.
bool matches(std::string_view pattern, std::string_view name);

/// True for a text that lists files by itself: with '*', '?', ';' or a line end in it.
bool lists_files(std::string_view text);

/// The files that a text lists, items separated by ';' or line ends: a file stands for itself, a folder for its files that
/// fit the filter, an item with '*' or '?' in its last part for the files of that folder that fit. What does not exist
/// gives nothing.
std::vector<std::string> expanded(std::string_view text, std::string_view filter);

/// Files as a script gets them: names in the order of their numbers, and the folder that they share, with a separator at
/// its end. Files of several folders keep their whole paths as names and have an empty folder.
struct selected_files
{
    std::string folder;
    std::vector<std::string> names;
};
selected_files grouped(const std::vector<std::string>& paths);

/// True for a file whose extension is none of the picture formats that tell their size and type themselves.
bool is_raw(std::string_view path);

}  // namespace qorv::functions
