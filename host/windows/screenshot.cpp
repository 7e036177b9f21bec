#include "host/windows/screenshot.h"

#include "win32/handles.h"

namespace zentrix::host {

namespace {

picture copied(HDC from, const RECT& area)
{
    const int width = area.right - area.left, height = area.bottom - area.top;
    picture taken{width, height, 3, {}};
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    const win32::unique_memory_dc memory{CreateCompatibleDC(from)};
    const win32::unique_bitmap bitmap{CreateCompatibleBitmap(from, width, height)};
    {
        const win32::selected_object selected{memory.get(), bitmap.get()};
        BitBlt(memory.get(), 0, 0, width, height, from, area.left, area.top, SRCCOPY);
    }  // GetDIBits requires that the bitmap is not selected
    GetDIBits(from, bitmap.get(), 0, static_cast<UINT>(height), pixels.data(), &info, DIB_RGB_COLORS);
    for (std::size_t i = 0; i < pixels.size(); i += 4)
        for (const std::size_t channel : {2, 1, 0}) taken.bytes.push_back(pixels[i + channel]);
    return taken;
}

}  // namespace

picture picture_of_client(HWND window)
{
    RECT area;
    GetClientRect(window, &area);
    return copied(win32::window_dc{window}.get(), area);
}

picture picture_of_screen(std::initializer_list<HWND> windows)
{
    RECT all{};
    for (const HWND window : windows) {
        RECT area;
        GetWindowRect(window, &area);
        const RECT previous = all;
        UnionRect(&all, &previous, &area);
    }
    return copied(win32::window_dc{nullptr}.get(), all);
}

}  // namespace zentrix::host
