#pragma once

#include <windows.h>

#include <cstdint>

#include "win32/handles.h"

namespace zentrix::host {

/// A bitmap of pixels 0x00RRGGBB, rows from the top, that the program writes and the system draws.
class canvas
{
  public:
    /// Gives the bitmap another size, at least one pixel; its pixels are then undefined. Does nothing if the size is
    /// the same.
    /// Throws  script_error when the system has no memory for it; the size is then 0
    void resize(SIZE size);
    SIZE size() const noexcept { return size_; }

    /// size().cx * size().cy pixels. Waits until the system has drawn them.
    std::uint32_t* pixels() noexcept;
    /// Draws the pixels, not scaled, with their upper left corner at (left, top).
    void draw(HDC to, int left, int top) const noexcept;

  private:
    SIZE size_{};
    std::uint32_t* pixels_ = nullptr;
    win32::unique_bitmap bitmap_;     // selected into memory_
    win32::unique_memory_dc memory_;  // destroyed first
};

}  // namespace zentrix::host
