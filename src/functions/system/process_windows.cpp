#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

#include <vector>

#include "binding/text_windows.h"
#include "functions/system/process.h"

namespace qorv::platform {
namespace {

constexpr DWORD creation_flags = CREATE_DEFAULT_ERROR_MODE | NORMAL_PRIORITY_CLASS;
constexpr std::size_t path_room = 261;

/// Starts the command and closes both handles, after the process has ended if `wait` says so.
void run(const std::string& command_line, bool wait)
{
    const std::string ansi = qorv::platform::to_ansi(command_line);
    std::vector<char> copy(ansi.begin(), ansi.end());  // CreateProcess may write into it
    copy.push_back('\0');
    STARTUPINFOA start_up{};
    start_up.cb = sizeof start_up;
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(nullptr, copy.data(), nullptr, nullptr, FALSE, creation_flags, nullptr, nullptr, &start_up,
                        &process))
        return;
    if (wait) WaitForSingleObject(process.hProcess, INFINITE);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

}  // namespace

void start(const std::string& command_line) { run(command_line, false); }

void start_and_wait(const std::string& command_line) { run(command_line, true); }

void open(const std::string& document)
{
    ShellExecuteA(nullptr, nullptr, qorv::platform::to_ansi(document).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

std::string special_directory(int folder, bool create)
{
    const int code = create ? folder | CSIDL_FLAG_CREATE : folder;
    char path[path_room] = {};
    PIDLIST_ABSOLUTE items = nullptr;
    if (SUCCEEDED(SHGetSpecialFolderLocation(nullptr, code, &items))) {
        SHGetPathFromIDListA(items, path);
        CoTaskMemFree(items);
    } else if (FAILED(SHGetFolderPathA(nullptr, code, nullptr, 0, path)))
        return {};
    std::string found{path};
    if (found.empty()) return {};
    if (found.size() < path_room - 1) found += '\\';
    return qorv::platform::to_utf8(found);
}

}  // namespace qorv::platform
