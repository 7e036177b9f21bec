#pragma once

#include <windows.h>

#include <filesystem>

namespace zentrix::host {

/// What a system dialog for files asks for.
struct file_question
{
    bool exists;              ///< a file to open; otherwise one to save, with a question before an existing one
    const wchar_t* filter;    ///< pairs of description and pattern, each ending in a zero, and a zero
    const wchar_t* ending;    ///< is appended to names without one
    const wchar_t* proposal;  ///< the name that is shown at first
};

/// The file that the user chooses; empty after Cancel. Throws  std::runtime_error when the system cannot ask
std::filesystem::path ask_file(HWND owner, const file_question& question);

}  // namespace zentrix::host
