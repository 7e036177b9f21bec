#include "host/correction/unwrap_plane.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "host/correction/phase_gaps.h"

namespace zentrix::host {

std::size_t unwrap_plane(engine& engine, const image_ref& phase, std::int32_t box)
{
    const std::span pixels{static_cast<float*>(phase->data()), phase->count()};
    std::vector<float> with_gaps;
    std::size_t gaps = 0;
    if (!std::ranges::all_of(pixels, [](float value) { return std::isfinite(value); })) {
        with_gaps.assign(pixels.begin(), pixels.end());
        gaps = fill_gaps(pixels, phase->size(0));
    }
    const auto result = object_in<image>(engine.call("ZXGoldstain", {phase, std::int64_t{box}}));
    std::copy_n(static_cast<const float*>(result->data()), pixels.size(), pixels.begin());
    if (gaps > 0) restore_gaps(with_gaps, pixels, phase->size(0));
    return gaps;
}

}  // namespace zentrix::host
