#include "host/windows/disabled_windows.h"

namespace zentrix::host {

disabled_windows::disabled_windows()
{
    const auto add = [](HWND window, LPARAM list) -> BOOL {
        if (IsWindowVisible(window) && IsWindowEnabled(window))
            reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        return TRUE;
    };
    EnumThreadWindows(GetCurrentThreadId(), add, reinterpret_cast<LPARAM>(&windows_));
    for (const HWND window : windows_) EnableWindow(window, FALSE);
}

disabled_windows::~disabled_windows()
{
    for (const HWND window : windows_) EnableWindow(window, TRUE);
    if (active_ && IsWindowVisible(active_)) SetActiveWindow(active_);
}

}  // namespace zentrix::host
