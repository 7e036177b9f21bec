#include "host/windows/file_dialog.h"

#include <commdlg.h>

#include <cwchar>
#include <stdexcept>
#include <string>
#include <vector>

namespace zentrix::host {

namespace {

constexpr std::size_t longest_path = 32768;  // limit of the system

}  // namespace

std::filesystem::path ask_file(HWND owner, const file_question& question)
{
    std::vector<wchar_t> file(longest_path);
    wcsncpy(file.data(), question.proposal, longest_path - 1);
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = question.filter;
    dialog.lpstrDefExt = question.ending;
    dialog.lpstrFile = file.data();
    dialog.nMaxFile = static_cast<DWORD>(file.size());
    dialog.Flags = OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR;
    dialog.Flags |= question.exists ? OFN_FILEMUSTEXIST | OFN_HIDEREADONLY : OFN_OVERWRITEPROMPT;
    if (question.exists ? GetOpenFileNameW(&dialog) : GetSaveFileNameW(&dialog)) return file.data();
    if (const DWORD error = CommDlgExtendedError(); error != 0)  // not cancelled by the user
        throw std::runtime_error{"The system could not ask for a file's name (error " + std::to_string(error) + ")."};
    return {};
}

}  // namespace zentrix::host
