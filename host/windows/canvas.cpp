#include "host/windows/canvas.h"

#include "host/objects/value.h"

namespace zentrix::host {

void canvas::resize(SIZE size)
{
    if (size.cx == size_.cx && size.cy == size_.cy) return;
    size_ = {};
    memory_.reset();
    bitmap_.reset();
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, size.cx, -size.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* pixels = nullptr;
    memory_.reset(CreateCompatibleDC(nullptr));
    bitmap_.reset(CreateDIBSection(memory_.get(), &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    if (!memory_ || !bitmap_) throw script_error{"The system has no memory for the window's picture."};
    SelectObject(memory_.get(), bitmap_.get());
    pixels_ = static_cast<std::uint32_t*>(pixels);
    size_ = size;
}

std::uint32_t* canvas::pixels() noexcept
{
    GdiFlush();
    return pixels_;
}

void canvas::draw(HDC to, int left, int top) const noexcept
{
    BitBlt(to, left, top, size_.cx, size_.cy, memory_.get(), 0, 0, SRCCOPY);
}

}  // namespace zentrix::host
