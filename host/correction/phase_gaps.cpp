#include "host/correction/phase_gaps.h"

#include <cmath>
#include <numbers>
#include <vector>

namespace zentrix::host {

namespace {

/// Calls each(index) for the four neighbours of a pixel that are inside the image.
template <class Each>
void for_each_neighbour(std::size_t at, std::size_t width, std::size_t count, Each each)
{
    const std::size_t x = at % width;
    if (x > 0) each(at - 1);
    if (x + 1 < width) each(at + 1);
    if (at >= width) each(at - width);
    if (at + width < count) each(at + width);
}

/// The multiple of 2 pi that is nearest to a difference of phases.
double full_turns(double difference)
{
    constexpr double turn = 2 * std::numbers::pi;
    return turn * std::round(difference / turn);
}

}  // namespace

std::size_t fill_gaps(std::span<float> phase, std::uint32_t width)
{
    std::size_t gaps = 0;
    std::vector<std::size_t> rim;  // known pixels with a neighbour in a gap, which take turns to fill it
    for (std::size_t i = 0; i < phase.size(); ++i) {
        if (std::isfinite(phase[i])) continue;
        ++gaps;
        for_each_neighbour(i, width, phase.size(), [&](std::size_t j) {
            if (std::isfinite(phase[j])) rim.push_back(j);
        });
    }
    for (std::size_t k = 0; k < rim.size(); ++k)
        for_each_neighbour(rim[k], width, phase.size(), [&](std::size_t j) {
            if (std::isfinite(phase[j])) return;
            phase[j] = phase[rim[k]];
            rim.push_back(j);
        });
    return gaps;
}

void restore_gaps(std::span<const float> phase, std::span<float> unwrapped, std::uint32_t width)
{
    std::vector<bool> done(phase.size());
    std::vector<std::size_t> area;
    for (std::size_t first = 0; first < phase.size(); ++first) {
        if (!std::isfinite(phase[first])) unwrapped[first] = phase[first];
        if (done[first] || !std::isfinite(phase[first])) continue;
        area.assign(1, first);
        done[first] = true;
        for (std::size_t k = 0; k < area.size(); ++k)
            for_each_neighbour(area[k], width, phase.size(), [&](std::size_t j) {
                if (done[j] || !std::isfinite(phase[j])) return;
                done[j] = true;
                area.push_back(j);
            });
        const double shift = full_turns(double{unwrapped[first]} - phase[first]);
        if (shift == 0) continue;
        for (const std::size_t i : area) unwrapped[i] = static_cast<float>(unwrapped[i] - shift);
    }
}

}  // namespace zentrix::host
