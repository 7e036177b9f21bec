#include "functions/transpose/transpose.h"

#include <emmintrin.h>
#include <algorithm>
#include <cstring>

/// Rows along x are read and written as long stretches: planes often lie a power of two apart, where single elements
/// would evict each other from the cache before their line is used up.
namespace qorv::functions {

namespace {

/// Elements of `bytes` from the low halves of both, in turns. Elements of 16 bytes have no turn to take.
template <std::size_t bytes>
__m128i interleave_low(__m128i a, __m128i b)
{
    if constexpr (bytes == 1)
        return _mm_unpacklo_epi8(a, b);
    else if constexpr (bytes == 2)
        return _mm_unpacklo_epi16(a, b);
    else if constexpr (bytes == 4)
        return _mm_unpacklo_epi32(a, b);
    else
        return _mm_unpacklo_epi64(a, b);
}

template <std::size_t bytes>
__m128i interleave_high(__m128i a, __m128i b)
{
    if constexpr (bytes == 1)
        return _mm_unpackhi_epi8(a, b);
    else if constexpr (bytes == 2)
        return _mm_unpackhi_epi16(a, b);
    else if constexpr (bytes == 4)
        return _mm_unpackhi_epi32(a, b);
    else
        return _mm_unpackhi_epi64(a, b);
}

/// Planes of elements, 2 to a power of `bytes`, turned through blocks of a few KB.
template <std::size_t bytes>
class block_transposer
{
    static constexpr std::ptrdiff_t size = bytes;
    static constexpr std::ptrdiff_t lanes = 16 / size;  // elements in a vector, vectors in a register square
    static constexpr std::ptrdiff_t side = bytes == 1 ? 128 : bytes <= 4 ? 64 : 256 / size;  // 4 to 16 KB
    static constexpr std::ptrdiff_t pitch = side * size;
    using block = std::byte[side * pitch];

  public:
    static void copy(const voxels& from, const voxels& to)
    {
        alignas(64) block stage;
        for (std::ptrdiff_t z = 0; z < from.sizes[2]; z += side)
            for (std::ptrdiff_t y = 0; y < from.sizes[1]; ++y)
                for (std::ptrdiff_t x = 0; x < from.sizes[0]; x += side) {  // innermost: reads on along the same rows
                    const std::ptrdiff_t width = std::min(side, from.sizes[0] - x);
                    const std::ptrdiff_t depth = std::min(side, from.sizes[2] - z);
                    read(at(from, x, y, z), from.strides[2], width, depth, stage);
                    write(stage, at(to, z, y, x), to.strides[2], width, depth);
                }
    }

    static void exchange(const voxels& volume)
    {
        alignas(64) block stage, mirrored;
        const std::ptrdiff_t n = volume.sizes[0], step = volume.strides[2];
        for (std::ptrdiff_t z = 0; z < n; z += side)
            for (std::ptrdiff_t y = 0; y < volume.sizes[1]; ++y)
                for (std::ptrdiff_t x = 0; x <= z; x += side) {
                    const std::ptrdiff_t width = std::min(side, n - x), depth = std::min(side, n - z);
                    read(at(volume, x, y, z), step, width, depth, stage);
                    read(at(volume, z, y, x), step, depth, width, mirrored);
                    write(stage, at(volume, z, y, x), step, width, depth);
                    write(mirrored, at(volume, x, y, z), step, depth, width);
                }
    }

  private:
    static std::byte* at(const voxels& volume, std::ptrdiff_t x, std::ptrdiff_t y, std::ptrdiff_t z)
    {
        return volume.data + x * volume.strides[0] + y * volume.strides[1] + z * volume.strides[2];
    }

    /// Reads `depth` rows of `width` elements, `step` bytes apart, as `width` rows of the block.
    static void read(const std::byte* from, std::ptrdiff_t step, std::ptrdiff_t width, std::ptrdiff_t depth, block& to)
    {
        const std::ptrdiff_t whole_width = width / lanes * lanes, whole_depth = depth / lanes * lanes;
        for (std::ptrdiff_t z = 0; z < whole_depth; z += lanes)
            for (std::ptrdiff_t x = 0; x < whole_width; x += lanes)
                turn_square(from + z * step + x * size, step, to + x * pitch + z * size);
        for (std::ptrdiff_t z = 0; z < depth; ++z)
            for (std::ptrdiff_t x = z < whole_depth ? whole_width : 0; x < width; ++x)
                std::memcpy(to + x * pitch + z * size, from + z * step + x * size, bytes);
    }

    /// Transposes one square in registers. Each round interleaves the first half of the vectors with the second, which
    /// moves one bit of an element's position from its vector's index to its place in the vector.
    static void turn_square(const std::byte* from, std::ptrdiff_t step, std::byte* to)
    {
        __m128i square[lanes];
        for (std::ptrdiff_t i = 0; i < lanes; ++i)
            square[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i * step));
        for (std::ptrdiff_t round = 1; round < lanes; round *= 2) {
            __m128i next[lanes];
            for (std::ptrdiff_t i = 0; i < lanes / 2; ++i) {
                next[2 * i] = interleave_low<bytes>(square[i], square[i + lanes / 2]);
                next[2 * i + 1] = interleave_high<bytes>(square[i], square[i + lanes / 2]);
            }
            for (std::ptrdiff_t i = 0; i < lanes; ++i) square[i] = next[i];
        }
        for (std::ptrdiff_t i = 0; i < lanes; ++i)
            _mm_store_si128(reinterpret_cast<__m128i*>(to + i * pitch), square[i]);
    }

    static void write(const block& from, std::byte* to, std::ptrdiff_t step, std::ptrdiff_t rows, std::ptrdiff_t length)
    {
        if (length == side)  // the usual length as a constant
            for (std::ptrdiff_t i = 0; i < rows; ++i) std::memcpy(to + i * step, from + i * pitch, pitch);
        else
            for (std::ptrdiff_t i = 0; i < rows; ++i)
                std::memcpy(to + i * step, from + i * pitch, static_cast<std::size_t>(length * size));
    }
};

template <std::size_t bytes>
void transpose_blocks(const voxels& from, const voxels& to)
{
    if (from.data == to.data)
        block_transposer<bytes>::exchange(to);
    else
        block_transposer<bytes>::copy(from, to);
}

/// Whole rows move; a few of each plane at a time, which lie in neighbouring memory.
void transpose_rows(const voxels& from, const voxels& to, std::ptrdiff_t row_bytes)
{
    constexpr std::ptrdiff_t together = 8;
    const auto row = [](const voxels& volume, std::ptrdiff_t y, std::ptrdiff_t z) {
        return volume.data + y * volume.strides[1] + z * volume.strides[2];
    };
    for (std::ptrdiff_t first = 0; first < to.sizes[2]; first += together)
        for (std::ptrdiff_t y = 0; y < to.sizes[1]; ++y)
            for (std::ptrdiff_t z = first; z < std::min(first + together, to.sizes[2]); ++z) {
                std::byte *source = row(from, z, y), *result = row(to, y, z);
                if (from.data != to.data)
                    std::memcpy(result, source, static_cast<std::size_t>(row_bytes));
                else if (y < z)
                    std::swap_ranges(result, result + row_bytes, source);
            }
}

}  // namespace

void transpose_sse(const voxels& from, const voxels& to, std::size_t element_bytes, transposition which)
{
    const auto size = static_cast<std::ptrdiff_t>(element_bytes);
    const bool contiguous_rows = from.strides[0] == size && to.strides[0] == size;
    if (!contiguous_rows) return transpose_plain(from, to, element_bytes, which);
    if (which == transposition::yz) return transpose_rows(from, to, size * to.sizes[0]);
    switch (element_bytes) {
        case 1: return transpose_blocks<1>(from, to);
        case 2: return transpose_blocks<2>(from, to);
        case 4: return transpose_blocks<4>(from, to);
        case 8: return transpose_blocks<8>(from, to);
        case 16: return transpose_blocks<16>(from, to);
        default: return transpose_plain(from, to, element_bytes, which);
    }
}

}  // namespace qorv::functions
