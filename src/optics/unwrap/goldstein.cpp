#include "optics/unwrap/goldstein.h"

#include "image/errors.h"
#include "optics/unwrap/branch_cuts.h"
#include "optics/unwrap/flood_fill.h"
#include "optics/unwrap/plane_transpose.h"

#include <limits>
#include <memory>
#include <stdexcept>

namespace qorv::optics {

void unwrap_goldstein(const float* phase, float* result, std::int32_t width, std::int32_t height,
                      std::int32_t box_limit, void* scratch)
{
    dm::require(phase && result && scratch && width >= 1 && height >= 1, dm::errors::parameters_invalid);
    const std::uint64_t indices = (std::uint64_t(width) + 2) * (std::uint64_t(height) + 1);
    if (indices > std::numeric_limits<std::uint32_t>::max()) throw std::length_error{too_long};

    pixel_flags flags{width, height};
    {
        residue_map residues = find_residues(phase, width, height);
        place_branch_cuts(residues, box_limit, flags);
    }
    // The result's memory serves first as the phase in columns; the scratch takes the result in columns.
    const auto stack = std::make_unique_for_overwrite<std::uint32_t[]>(static_cast<std::size_t>(width) * height);
    float* const wrapped = result;
    float* const unwrapped = static_cast<float*>(scratch);
    transpose(phase, wrapped, width, height);
    fill_regions(wrapped, unwrapped, flags, stack.get());
    fill_cuts(wrapped, unwrapped, flags);
    transpose(unwrapped, result, height, width);
}

}  // namespace qorv::optics
