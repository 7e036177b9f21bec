#pragma once

#include <emmintrin.h>

#include <bit>
#include <cstdint>
#include <vector>

namespace qorv::functions {

/// A set of ranks, a byte for each possible one, with a finger at a block of 64 of them: as a window slides, its middle
/// moves little, and so does the finger.
class rank_window
{
  public:
    /// For ranks 0 .. count - 1; empty.
    explicit rank_window(std::size_t count) : present_((count + block_size) & ~(block_size - 1)) {}

    void add(std::uint32_t rank)
    {
        present_[rank] = 1;
        below_ += rank < begin_;
    }
    void remove(std::uint32_t rank)
    {
        present_[rank] = 0;
        below_ -= rank < begin_;
    }

    /// The rank in the set that has `index` smaller ones in the set; the set has more than `index`.
    std::uint32_t at(std::uint32_t index)
    {
        while (below_ > index) {
            begin_ -= block_size;
            below_ -= in_block();
        }
        for (std::uint32_t count = in_block(); below_ + count <= index; count = in_block()) {
            below_ += count;
            begin_ += block_size;
        }
        std::uint64_t set = bits_of_block();
        for (std::uint32_t i = below_; i < index; ++i) set &= set - 1;
        return begin_ + static_cast<std::uint32_t>(std::countr_zero(set));
    }

  private:
    static constexpr std::uint32_t block_size = 64;

    __m128i quarter(std::uint32_t i) const
    {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(present_.data() + begin_) + i);
    }
    std::uint32_t in_block() const
    {
        const __m128i pairs = _mm_add_epi8(_mm_add_epi8(quarter(0), quarter(1)), _mm_add_epi8(quarter(2), quarter(3)));
        const __m128i halves = _mm_sad_epu8(pairs, _mm_setzero_si128());
        return static_cast<std::uint32_t>(_mm_cvtsi128_si32(halves) + _mm_extract_epi16(halves, 4));
    }
    std::uint64_t bits_of_block() const
    {
        std::uint64_t bits = 0;
        for (std::uint32_t i = 4; i-- > 0;)
            bits = bits << 16 | static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_slli_epi16(quarter(i), 7)));
        return bits;
    }

    std::vector<std::uint8_t> present_;
    std::uint32_t begin_ = 0;  ///< first rank of the finger's block
    std::uint32_t below_ = 0;  ///< ranks in the set below begin_
};

}  // namespace qorv::functions
