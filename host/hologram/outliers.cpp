#include "host/hologram/outliers.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

namespace zentrix::host {

namespace {

/// Fringes differ from their local median, too; a sine by less than twice its median difference.
constexpr float outlier_multiple = 8;

}  // namespace

std::size_t replace_outliers(engine& engine, const image_ref& hologram)
{
    const auto filtered = object_in<image>(engine.call("ZXMedianFilter", {hologram, std::int64_t{1}, object_ref{}}));
    const std::span pixels{static_cast<float*>(hologram->data()), hologram->count()};
    const std::span medians{static_cast<const float*>(filtered->data()), filtered->count()};
    std::vector<float> differences(pixels.size());
    std::ranges::transform(pixels, medians, differences.begin(), [](float a, float b) { return std::abs(a - b); });
    auto sorted = differences;
    const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    const float limit = outlier_multiple * *middle;
    std::size_t count = 0;
    for (std::size_t i = 0; i < pixels.size(); ++i)
        if (differences[i] > limit) {
            pixels[i] = medians[i];
            ++count;
        }
    return count;
}

}  // namespace zentrix::host
