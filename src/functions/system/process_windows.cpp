#include "functions/system/process.h"

#include <windows.h>

#include <shellapi.h>  // after windows.h

#include <vector>

#include "binding/text_windows.h"
#include "win32/handles.h"

namespace qorv::platform {
namespace {

constexpr DWORD creation_flags = CREATE_DEFAULT_ERROR_MODE | NORMAL_PRIORITY_CLASS;

/// Starts the command and waits for its end if requested.
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
    const win32::unique_kernel_object running{process.hProcess}, thread{process.hThread};
    if (wait) WaitForSingleObject(running.get(), INFINITE);
}

}  // namespace

void start(const std::string& command_line) { run(command_line, false); }

void start_and_wait(const std::string& command_line) { run(command_line, true); }

void open(const std::string& document)
{
    ShellExecuteA(nullptr, nullptr, qorv::platform::to_ansi(document).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

}  // namespace qorv::platform
