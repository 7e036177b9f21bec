#include "host/windows/screenshot.h"

namespace zentrix::host {

namespace {

picture copied(HDC from, const RECT& area)
{
    const int width = area.right - area.left, height = area.bottom - area.top;
    picture taken{width, height, 3, {}};
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    const HDC memory = CreateCompatibleDC(from);
    const HBITMAP bitmap = CreateCompatibleBitmap(from, width, height);
    const HGDIOBJ former = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, from, area.left, area.top, SRCCOPY);
    SelectObject(memory, former);
    GetDIBits(from, bitmap, 0, static_cast<UINT>(height), pixels.data(), &info, DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(memory);
    for (std::size_t i = 0; i < pixels.size(); i += 4)
        for (const std::size_t channel : {2, 1, 0}) taken.bytes.push_back(pixels[i + channel]);
    return taken;
}

}  // namespace

picture picture_of_client(HWND window)
{
    RECT area;
    GetClientRect(window, &area);
    const HDC from = GetDC(window);
    auto taken = copied(from, area);
    ReleaseDC(window, from);
    return taken;
}

picture picture_of_screen(std::initializer_list<HWND> windows)
{
    RECT all{};
    for (const HWND window : windows) {
        RECT area;
        GetWindowRect(window, &area);
        const RECT former = all;
        UnionRect(&all, &former, &area);
    }
    const HDC from = GetDC(nullptr);
    auto taken = copied(from, all);
    ReleaseDC(nullptr, from);
    return taken;
}

}  // namespace zentrix::host
