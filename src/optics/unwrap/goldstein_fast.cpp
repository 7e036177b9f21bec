#include "optics/unwrap/branch_cuts.h"
#include "optics/unwrap/flood_fill.h"
#include "optics/unwrap/goldstein.h"
#include "optics/unwrap/plane_transpose.h"

#include <memory>

// Without intrinsics: what is fast are bit masks of residues, flags in bytes, and loops that the compiler vectorises.

namespace qorv::optics {

void unwrap_goldstein_fast(const float* phase, float* result, std::int32_t width, std::int32_t height,
                           std::int32_t box_limit, void* scratch)
{
    pixel_flags flags{width, height};
    {
        residue_map residues = find_residues(phase, width, height);
        place_branch_cuts(residues, box_limit, flags);
    }
    const auto stack = std::make_unique_for_overwrite<std::uint32_t[]>(static_cast<std::size_t>(width) * height);
    // The fill works on columns: the phase's are kept in the result's memory, the result's in the scratch memory.
    float* const wrapped = result;
    float* const unwrapped = static_cast<float*>(scratch);
    transpose(phase, wrapped, width, height);
    fill_regions(wrapped, unwrapped, flags, stack.get());
    fill_cuts(wrapped, unwrapped, flags);
    transpose(unwrapped, result, height, width);
}

}  // namespace qorv::optics
