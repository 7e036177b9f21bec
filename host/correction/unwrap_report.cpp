#include "host/correction/unwrap_report.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <vector>

#include "host/correction/neighbours.h"

namespace zentrix::host {

namespace {

constexpr double pi = std::numbers::pi;

/// The difference of two wrapped phases, wrapped to [-pi, pi].
double wrapped(double difference)
{
    if (difference > pi) return difference - 2 * pi;
    return difference < -pi ? difference + 2 * pi : difference;
}

/// A wrapped phase and its result.
struct comparison
{
    std::span<const float> phase, unwrapped;
    std::size_t width;

    bool is_known(std::size_t i) const { return std::isfinite(phase[i]); }

    bool is_cut(std::size_t i, std::size_t j) const
    {
        const double expected = wrapped(double{phase[j]} - phase[i]);
        return std::abs(double{unwrapped[j]} - unwrapped[i] - expected) > pi;
    }

    /// Calls each(neighbour, whether there is a cut) for the neighbours of a pixel that are not left out.
    template <class Each>
    void for_each_known_neighbour(std::size_t i, Each each) const
    {
        for_each_neighbour(i, width, phase.size(), [&](std::size_t j) {
            if (is_known(j)) each(j, is_cut(i, j));
        });
    }

    /// +1, -1 or 0 for the loop whose upper left pixel is `i`.
    int residue(std::size_t i) const
    {
        const std::size_t loop[] = {i, i + 1, i + 1 + width, i + width, i};
        double sum = 0;
        for (int side = 0; side < 4; ++side) sum += wrapped(double{phase[loop[side + 1]]} - phase[loop[side]]);
        return sum > pi ? 1 : sum < -pi ? -1 : 0;  // false also for sums that are not a number
    }
};

void count_residues(const comparison& plane, unwrap_report& report)
{
    for (std::size_t i = 0; i + plane.width < plane.phase.size(); ++i) {
        if (i % plane.width + 1 == plane.width) continue;
        const int charge = plane.residue(i);
        if (charge > 0) ++report.positive_residues;
        if (charge < 0) ++report.negative_residues;
    }
}

/// Labels the regions in the order of their first pixels, from 0; pixels left out get -1. Returns the sizes.
std::vector<std::size_t> label_regions(const comparison& plane, std::span<std::int32_t> labels)
{
    std::vector<std::size_t> sizes, waiting;
    std::ranges::fill(labels, -1);
    for (std::size_t first = 0; first < labels.size(); ++first) {
        if (labels[first] >= 0 || !plane.is_known(first)) continue;
        const auto label = static_cast<std::int32_t>(sizes.size());
        sizes.push_back(0);
        labels[first] = label;
        waiting.assign(1, first);
        while (!waiting.empty()) {
            const std::size_t i = waiting.back();
            waiting.pop_back();
            ++sizes.back();
            plane.for_each_known_neighbour(i, [&](std::size_t j, bool cut) {
                if (cut || labels[j] >= 0) return;
                labels[j] = label;
                waiting.push_back(j);
            });
        }
    }
    return sizes;
}

/// Renumbers the regions by size, from 1. Returns their sizes in the new order, preceded by that of the pixels left out.
std::vector<std::size_t> sort_by_size(const std::vector<std::size_t>& sizes, std::span<std::int32_t> labels)
{
    std::vector<std::int32_t> order(sizes.size()), new_label(sizes.size());
    std::iota(order.begin(), order.end(), 0);
    std::ranges::stable_sort(order, std::ranges::greater{}, [&](std::int32_t label) { return sizes[label]; });
    std::vector<std::size_t> sorted{labels.size()};
    for (const std::int32_t label : order) {
        new_label[label] = static_cast<std::int32_t>(sorted.size());
        sorted.push_back(sizes[label]);
        sorted[0] -= sizes[label];
    }
    for (std::int32_t& label : labels) label = label < 0 ? 0 : new_label[label];
    return sorted;
}

}  // namespace

unwrap_report report_on_unwrapping(std::span<const float> phase, std::span<const float> unwrapped, std::uint32_t width,
                                   std::span<std::int32_t> labels)
{
    const comparison plane{phase, unwrapped, width};
    unwrap_report report;
    count_residues(plane, report);
    const auto sizes = sort_by_size(label_regions(plane, labels), labels);
    report.left_out = sizes[0];
    report.regions = sizes.size() - 1;

    std::vector<bool> borders_on_larger(sizes.size()), has_turns(sizes.size());
    for (std::size_t i = 0; i < phase.size(); ++i) {
        if (!plane.is_known(i)) continue;
        const std::int32_t label = labels[i];
        if (std::abs(double{unwrapped[i]} - phase[i]) > pi) has_turns[label] = true;
        bool at_cut = false;
        plane.for_each_known_neighbour(i, [&](std::size_t j, bool cut) {
            at_cut |= cut;
            if (cut && labels[j] < label) borders_on_larger[label] = true;
        });
        if (at_cut) ++report.cut_pixels;
    }
    for (std::size_t label = 1; label < sizes.size(); ++label)
        if (borders_on_larger[label] && !has_turns[label]) report.unreached += sizes[label];
    return report;
}

}  // namespace zentrix::host
