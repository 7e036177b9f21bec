#include "optics/unwrap/plane_transpose.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace qorv::optics {

namespace {

/// A tile is four cache lines wide and one high: the fastest of the shapes tried.
constexpr std::int32_t tile_columns = 64, tile_rows = 16;

void transpose_full_tile(const float* from, std::ptrdiff_t from_pitch, float* to, std::ptrdiff_t to_pitch) noexcept
{
    // Through a small buffer: rows that are a power of two bytes apart would evict each other from the cache.
    float tile[tile_rows][tile_columns];
    for (std::int32_t y = 0; y < tile_rows; ++y) std::memcpy(tile[y], from + y * from_pitch, sizeof tile[y]);
    for (std::int32_t x = 0; x < tile_columns; ++x)
        for (std::int32_t y = 0; y < tile_rows; ++y) to[x * to_pitch + y] = tile[y][x];
}

}  // namespace

void transpose(const float* from, float* to, std::int32_t width, std::int32_t height) noexcept
{
    for (std::int32_t left = 0; left < width; left += tile_columns)
        for (std::int32_t top = 0; top < height; top += tile_rows) {
            const float* source = from + std::ptrdiff_t{top} * width + left;
            float* target = to + std::ptrdiff_t{left} * height + top;
            const std::int32_t columns = std::min(tile_columns, width - left);
            const std::int32_t rows = std::min(tile_rows, height - top);
            if (columns == tile_columns && rows == tile_rows)
                transpose_full_tile(source, width, target, height);
            else
                for (std::ptrdiff_t x = 0; x < columns; ++x)
                    for (std::ptrdiff_t y = 0; y < rows; ++y) target[x * height + y] = source[y * width + x];
        }
}

}  // namespace qorv::optics
