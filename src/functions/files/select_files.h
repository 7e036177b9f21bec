#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Dialogs for choosing image files. Texts are UTF-8.
namespace qorv::platform {

/// Opens the system's dialog for several files. On other platforms than Windows no dialog is shown; `start` is expanded
/// by expanded() of file_selection.h.
/// start    initial folder or file name; may be empty
/// filter   "description|pattern;pattern|..."
/// owner    title of the window that owns the dialog; empty: the active window
/// Returns  absolute paths; none after Cancel
std::vector<std::string> choose_files(const std::string& start, const std::string& filter, const std::string& owner);

/// Size and element type (-1 to 9) of raw files.
struct raw_format
{
    std::int32_t width, height, type;
};

/// Asks for the format of raw files. On other platforms than Windows, returns true and leaves `format` unchanged.
/// format   initial values; sizes below 1 and types outside 0 to 9 are replaced by the values entered last
/// owner    as in choose_files
/// Returns  false after Cancel
bool choose_raw_format(raw_format& format, const std::string& owner);

}  // namespace qorv::platform
