#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// How a user picks picture files. Texts are UTF-8.
namespace qorv::platform {

/// The system's dialog for opening several files; elsewhere than on Windows nobody is asked, and the start is expanded
/// (file_selection.h).
/// start    folder to begin in, or file name to begin with; may be empty
/// filter   "description|pattern;pattern|..."
/// owner    title of the window that owns the dialog; empty: the active window
/// Returns  whole paths; none when the user cancelled
std::vector<std::string> choose_files(const std::string& start, const std::string& filter, const std::string& owner);

/// Size and element type (-1 to 9) of raw files.
struct raw_format
{
    std::int32_t width, height, type;
};

/// Asks for the format of raw files, beginning with `format`, or where that is empty with what was entered last. False
/// when the user cancelled. Elsewhere than on Windows the format stays as the script gave it.
bool choose_raw_format(raw_format& format, const std::string& owner);

}  // namespace qorv::platform
