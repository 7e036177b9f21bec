#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace qorv::optics {

/// One bit per pixel, in rows of bytes. Up to 57 bits of a row are read at once, from any column on.
class bit_plane
{
  public:
    bit_plane(std::int32_t width, std::int32_t height)
        : pitch_{(width + 7) / 8 + std::ptrdiff_t{sizeof(std::uint64_t)}},
          bytes_(static_cast<std::size_t>(pitch_ * height))
    {}

    bool test(std::int32_t x, std::int32_t y) const noexcept { return byte(x, y) >> (x & 7) & 1; }
    void set(std::int32_t x, std::int32_t y) noexcept { bytes_[at(x, y)] |= bit(x); }
    void clear(std::int32_t x, std::int32_t y) noexcept { bytes_[at(x, y)] &= static_cast<std::uint8_t>(~bit(x)); }

    /// Bits x to x + 56 of a row, bit x lowest. Bits past the end of the row are unspecified.
    std::uint64_t bits_from(std::int32_t x, std::int32_t y) const noexcept
    {
        static_assert(std::endian::native == std::endian::little);
        std::uint64_t word;
        std::memcpy(&word, &bytes_[at(x, y)], sizeof word);  // rows are padded for this
        return word >> (x & 7);
    }

    /// Calls visit(x) for each set bit of a row from `first` to `last`, in ascending order, until it returns true. It
    /// may change the bit that it is called for. Returns whether a call returned true.
    template <class Visit>
    bool any_of(std::int32_t y, std::int32_t first, std::int32_t last, Visit&& visit) const
    {
        for (std::int32_t x = first; x <= last; x += chunk)
            for (std::uint64_t found = stretch(x, y, last); found != 0; found &= found - 1)
                if (visit(x + std::countr_zero(found))) return true;
        return false;
    }

    /// At most `chunk` bits of a row, from x on and up to `last`.
    std::uint64_t stretch(std::int32_t x, std::int32_t y, std::int32_t last) const noexcept
    {
        const std::int32_t count = last - x + 1;
        return bits_from(x, y) & (~std::uint64_t{0} >> (64 - (count < chunk ? count : chunk)));
    }

    std::uint8_t* row(std::int32_t y) noexcept { return bytes_.data() + y * pitch_; }

    static constexpr std::int32_t chunk = 57;

  private:
    std::size_t at(std::int32_t x, std::int32_t y) const noexcept
    {
        return static_cast<std::size_t>(y * pitch_ + (x >> 3));
    }
    std::uint8_t byte(std::int32_t x, std::int32_t y) const noexcept { return bytes_[at(x, y)]; }
    static std::uint8_t bit(std::int32_t x) noexcept { return static_cast<std::uint8_t>(1u << (x & 7)); }

    std::ptrdiff_t pitch_;
    std::vector<std::uint8_t> bytes_;
};

}  // namespace qorv::optics
