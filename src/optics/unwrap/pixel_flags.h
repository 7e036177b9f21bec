#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace qorv::optics {

/// One byte of flags per pixel, stored in columns because the fill mostly goes down. The index of pixel (x, y) is
/// x * pitch + y; its neighbours are at -pitch, +pitch, -1 and +1. One byte of frame follows each column, and a column
/// of frame is on either side, so that no neighbour needs a test for the edge of the image.
class pixel_flags
{
  public:
    static constexpr std::uint8_t cut = 4, frame = 8, unwrapped = 32;

    pixel_flags(std::int32_t width, std::int32_t height)
        : width_{width},
          height_{height},
          bytes_(static_cast<std::size_t>((std::ptrdiff_t{width} + 2) * pitch() + 2 * spare), frame)
    {
        for (std::int32_t x = 0; x < width; ++x) std::memset(data() + index(x, 0), 0, static_cast<std::size_t>(height));
    }

    std::int32_t width() const noexcept { return width_; }
    std::int32_t height() const noexcept { return height_; }
    std::ptrdiff_t pitch() const noexcept { return std::ptrdiff_t{height_} + 1; }
    std::ptrdiff_t index(std::int32_t x, std::int32_t y) const noexcept { return x * pitch() + y; }

    /// Flags of index 0. One column before it and one after the last pixel are frame.
    std::uint8_t* data() noexcept { return bytes_.data() + spare + pitch(); }
    const std::uint8_t* data() const noexcept { return bytes_.data() + spare + pitch(); }

  private:
    static constexpr std::ptrdiff_t spare = 8;  // words of eight bytes around a pixel or its neighbour stay inside
    std::int32_t width_, height_;
    std::vector<std::uint8_t> bytes_;
};

}  // namespace qorv::optics
