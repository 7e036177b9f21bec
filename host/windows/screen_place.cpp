#include "host/windows/screen_place.h"

#include <algorithm>

#include "win32/handles.h"

namespace zentrix::host {

namespace {

constexpr int gap = 12;  // between windows [pixels at 96 dots per inch]

RECT work_area_at(POINT corner)
{
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromPoint(corner, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

}  // namespace

int screen_pixels(int length)
{
    // The program declares that it knows the resolution of the system, which is the same for all its windows.
    static const int dots_per_inch = GetDeviceCaps(win32::window_dc{nullptr}.get(), LOGPIXELSY);
    return MulDiv(length, dots_per_inch, 96);
}

void place_on_screen(HWND window, POINT corner)
{
    RECT own{};
    GetWindowRect(window, &own);
    const RECT area = work_area_at(corner);
    const LONG rightmost = std::max(area.left, area.right - (own.right - own.left));
    const LONG lowest = std::max(area.top, area.bottom - (own.bottom - own.top));
    SetWindowPos(window, nullptr, std::clamp(corner.x, area.left, rightmost), std::clamp(corner.y, area.top, lowest), 0,
                 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void place_next_to(HWND window, HWND other)
{
    RECT there{};
    GetWindowRect(other, &there);
    place_on_screen(window, {there.right + screen_pixels(gap), there.top});
}

}  // namespace zentrix::host
