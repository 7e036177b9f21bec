#pragma once

#include <xsimd/xsimd.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "functions/transpose/transpose.h"
#include "image/lanes_simd.h"

/// Long stretches of rows along x are read and written: planes are often a power of two bytes apart, where single
/// elements would evict each other from the cache before the rest of their line is used.
namespace qorv::functions {
namespace blocks {

/// Lanes of `bytes`; elements of 16 bytes are two lanes.
template <std::size_t bytes>
using lane_of = std::conditional_t<
    bytes == 1, std::uint8_t,
    std::conditional_t<bytes == 2, std::uint16_t, std::conditional_t<bytes == 4, std::uint32_t, std::uint64_t>>>;

/// Exchanges x and z through blocks of a few KB. Elements of 1, 2, 4, 8 or 16 bytes.
template <class Arch, std::size_t bytes>
class block_transposer
{
    using lane = lane_of<bytes>;
    using vec = xsimd::batch<lane, Arch>;
    static constexpr std::ptrdiff_t size = bytes;
    static constexpr std::ptrdiff_t side_of_square = vec::size * sizeof(lane) / bytes;       // elements in a vector
    static constexpr std::ptrdiff_t side = bytes == 1 ? 128 : bytes <= 4 ? 64 : 256 / size;  // block of 4 to 16 KB
    static constexpr std::ptrdiff_t pitch = side * size;
    using block = std::byte[side * pitch];

  public:
    static void copy(const voxels& from, const voxels& to)
    {
        alignas(64) block stage;
        for (std::ptrdiff_t z = 0; z < from.sizes[2]; z += side)
            for (std::ptrdiff_t y = 0; y < from.sizes[1]; ++y)
                for (std::ptrdiff_t x = 0; x < from.sizes[0]; x += side) {  // innermost: rows are read in order
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
        constexpr std::ptrdiff_t n = side_of_square;
        const std::ptrdiff_t whole_width = width / n * n, whole_depth = depth / n * n;
        for (std::ptrdiff_t z = 0; z < whole_depth; z += n)
            for (std::ptrdiff_t x = 0; x < whole_width; x += n)
                transpose_square(from + z * step + x * size, step, to + x * pitch + z * size);
        for (std::ptrdiff_t z = 0; z < depth; ++z)
            for (std::ptrdiff_t x = z < whole_depth ? whole_width : 0; x < width; ++x)
                std::memcpy(to + x * pitch + z * size, from + z * step + x * size, bytes);
    }

    static void transpose_square(const std::byte* from, std::ptrdiff_t step, std::byte* to)
    {
        vec square[side_of_square];
        for (std::ptrdiff_t i = 0; i < side_of_square; ++i)
            square[i] = vec::load_unaligned(reinterpret_cast<const lane*>(from + i * step));
        dm::simd::transpose<bytes / sizeof(lane)>(square);
        for (std::ptrdiff_t i = 0; i < side_of_square; ++i)
            square[i].store_aligned(reinterpret_cast<lane*>(to + i * pitch));
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

template <class Arch, std::size_t bytes>
void transpose_xz(const voxels& from, const voxels& to)
{
    if (from.data == to.data)
        block_transposer<Arch, bytes>::exchange(to);
    else
        block_transposer<Arch, bytes>::copy(from, to);
}

/// Whole rows move; a few of each plane at a time, because they are neighbours in memory.
template <class Arch>
void transpose_yz(const voxels& from, const voxels& to, std::ptrdiff_t row_bytes)
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

}  // namespace blocks

template <class Arch>
void transpose_simd(const voxels& from, const voxels& to, std::size_t element_bytes, transposition which)
{
    const auto size = static_cast<std::ptrdiff_t>(element_bytes);
    const bool contiguous_rows = from.strides[0] == size && to.strides[0] == size;
    if (!contiguous_rows) return transpose_plain(from, to, element_bytes, which);
    if (which == transposition::yz) return blocks::transpose_yz<Arch>(from, to, size * to.sizes[0]);
    switch (element_bytes) {
        case 1: return blocks::transpose_xz<Arch, 1>(from, to);
        case 2: return blocks::transpose_xz<Arch, 2>(from, to);
        case 4: return blocks::transpose_xz<Arch, 4>(from, to);
        case 8: return blocks::transpose_xz<Arch, 8>(from, to);
        case 16: return blocks::transpose_xz<Arch, 16>(from, to);
        default: return transpose_plain(from, to, element_bytes, which);
    }
}

}  // namespace qorv::functions
