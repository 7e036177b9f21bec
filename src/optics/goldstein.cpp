#include "optics/goldstein.h"

#include "image/errors.h"
#include "optics/branch_cuts.h"
#include "optics/flood_fill.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace qorv::optics {

namespace {

/// Rows taken together in a transposition: as many as the smallest cache keeps apart when rows lie a power of two bytes
/// apart.
constexpr std::int32_t band = 8;

/// Between rows and the columns that `pixel_flags` indexes; `put(row_element, column_element)` copies either way.
template <class Rows, class Columns, class Put>
void for_each_transposed(Rows* rows, Columns* columns, const pixel_flags& shape, Put put)
{
    const std::ptrdiff_t width = shape.width();
    for (std::int32_t y = 0; y < shape.height(); y += band) {
        const std::int32_t count = std::min(band, shape.height() - y);
        Rows* row = rows + y * width;
        Columns* column = columns + y;
        if (count == band)
            for (std::ptrdiff_t x = 0; x < width; ++x, ++row, column += shape.pitch())
                for (std::int32_t k = 0; k < band; ++k) put(row[k * width], column[k]);
        else
            for (std::ptrdiff_t x = 0; x < width; ++x, ++row, column += shape.pitch())
                for (std::int32_t k = 0; k < count; ++k) put(row[k * width], column[k]);
    }
}

}  // namespace

void unwrap_goldstein(const float* phase, float* result, std::int32_t width, std::int32_t height,
                      std::int32_t box_limit, std::uint32_t* scratch)
{
    dm::require(phase && result && scratch && width >= 1 && height >= 1, dm::errors::parameters_invalid);
    const std::uint64_t indices = (std::uint64_t(width) + 2) * (std::uint64_t(height) + 1);
    if (indices > std::numeric_limits<std::uint32_t>::max()) throw std::length_error{too_long};

    pixel_flags flags{width, height};
    {
        residue_map residues = find_residues(phase, width, height);
        place_branch_cuts(residues, box_limit, flags);
    }
    const auto elements = static_cast<std::size_t>(width * flags.pitch());
    const auto wrapped = std::make_unique_for_overwrite<float[]>(elements);
    const auto unwrapped = std::make_unique_for_overwrite<float[]>(elements);
    for_each_transposed(phase, wrapped.get(), flags, [](const float& row, float& column) { column = row; });
    fill_regions(wrapped.get(), unwrapped.get(), flags, scratch);
    fill_cuts(wrapped.get(), unwrapped.get(), flags);
    for_each_transposed(result, unwrapped.get(), flags, [](float& row, const float& column) { row = column; });
}

}  // namespace qorv::optics
