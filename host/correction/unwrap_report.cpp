#include "host/correction/unwrap_report.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <numbers>
#include <vector>

#include "host/parallel/for_each_row.h"

namespace zentrix::host {

namespace {

/// What is known of two neighbours. Small, because several passes read the pairs of all pixels.
struct pair
{
    bool known : 1 = false;     ///< neither is left out
    bool cut : 1 = false;       ///< the difference in the result is not the wrapped one
    std::int8_t turns : 2 = 0;  ///< turns that wrap the difference of the phases, if known
};

struct pairs
{
    pair right, down;  ///< the pixel with its right and its lower neighbour
};
static_assert(sizeof(pairs) == 2);

/// Without branches, because noise is hard to predict.
inline pair compare(float phase, float next_phase, float unwrapped, float next_unwrapped)
{
    constexpr double pi = std::numbers::pi;
    const bool known = std::isfinite(phase) && std::isfinite(next_phase);
    const double difference = double{next_phase} - phase;
    const int turns = (difference < -pi) - (difference > pi);
    const double wrapped = difference + 2 * pi * turns;
    const bool cut = std::abs(double{next_unwrapped} - unwrapped - wrapped) > pi;
    return {known, known && cut, static_cast<std::int8_t>(turns)};
}

struct comparison
{
    std::vector<pairs> all;
    bool is_whole = true;  ///< no pair is cut, and no pixel is left out
};

comparison compare_neighbours(std::span<const float> phase, std::span<const float> unwrapped, std::size_t width)
{
    comparison found{std::vector<pairs>(phase.size())};
    std::atomic<bool> is_whole = true;
    const auto count = static_cast<std::ptrdiff_t>(phase.size()), rows = count / static_cast<std::ptrdiff_t>(width);
    for_each_row(rows, threads_for(count), [&](std::size_t, std::size_t y) {
        const std::size_t row = y * width;
        const bool has_down = row + width < phase.size();
        bool row_is_whole = true;
        for (std::size_t i = row; i < row + width; ++i) {
            pairs& both = found.all[i];
            if (i + 1 < row + width) both.right = compare(phase[i], phase[i + 1], unwrapped[i], unwrapped[i + 1]);
            if (has_down) both.down = compare(phase[i], phase[i + width], unwrapped[i], unwrapped[i + width]);
            row_is_whole = row_is_whole && std::isfinite(phase[i]) && !both.right.cut && !both.down.cut;
        }
        if (!row_is_whole) is_whole = false;
    });
    found.is_whole = is_whole;
    return found;
}

/// The differences themselves cancel around a loop; the turns that wrap them remain.
void count_residues(std::span<const pairs> all, std::size_t width, unwrap_report& report)
{
    std::atomic<std::size_t> all_positive = 0, all_negative = 0;
    const auto count = static_cast<std::ptrdiff_t>(all.size()), rows = count / static_cast<std::ptrdiff_t>(width);
    for_each_row(rows - 1, threads_for(count), [&](std::size_t, std::size_t y) {
        std::size_t positive = 0, negative = 0;
        for (std::size_t i = y * width; i + 1 < (y + 1) * width; ++i) {
            const pair &top = all[i].right, &right = all[i + 1].down, &bottom = all[i + width].right;
            const pair& left = all[i].down;
            if (!top.known || !right.known || !bottom.known || !left.known) continue;
            const int turns = top.turns + right.turns - bottom.turns - left.turns;
            positive += turns > 0;
            negative += turns < 0;
        }
        all_positive += positive;
        all_negative += negative;
    });
    report.positive_residues = all_positive;
    report.negative_residues = all_negative;
}

/// Numbers of regions, some of which turn out to be the same.
class region_numbers
{
  public:
    std::int32_t add()
    {
        parents_.push_back(static_cast<std::int32_t>(parents_.size()));
        return parents_.back();
    }

    /// The smallest number of the region.
    std::int32_t first(std::int32_t number)
    {
        while (parents_[number] != number) number = parents_[number] = parents_[parents_[number]];
        return number;
    }

    void join(std::int32_t a, std::int32_t b)
    {
        a = first(a);
        b = first(b);
        parents_[std::max(a, b)] = std::min(a, b);
    }

    std::size_t count() const { return parents_.size(); }

  private:
    std::vector<std::int32_t> parents_;
};

/// Labels the regions, from 0 with gaps in the numbers; pixels left out get -1. Returns the sizes, some 0.
std::vector<std::size_t> label_regions(std::span<const float> phase, std::span<const pairs> all, std::size_t width,
                                       std::span<std::int32_t> labels)
{
    region_numbers numbers;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        const bool from_left = i % width > 0 && all[i - 1].right.known && !all[i - 1].right.cut;
        const bool from_above = i >= width && all[i - width].down.known && !all[i - width].down.cut;
        if (!std::isfinite(phase[i]))
            labels[i] = -1;
        else if (from_left)
            labels[i] = labels[i - 1];
        else
            labels[i] = from_above ? labels[i - width] : numbers.add();
        if (from_left && from_above && labels[i] != labels[i - width]) numbers.join(labels[i], labels[i - width]);
    }
    std::vector<std::size_t> sizes(numbers.count());
    for (std::int32_t& label : labels)
        if (label >= 0) ++sizes[label = numbers.first(label)];
    return sizes;
}

/// Renumbers the regions by size, from 1. Returns the sizes by label, beginning with the number of pixels left out.
std::vector<std::size_t> sort_by_size(const std::vector<std::size_t>& sizes, std::span<std::int32_t> labels)
{
    std::vector<std::int32_t> order, new_label(sizes.size());
    for (std::size_t label = 0; label < sizes.size(); ++label)
        if (sizes[label] > 0) order.push_back(static_cast<std::int32_t>(label));
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

/// Marks pixels at cuts with 1; all are 0 before. Returns their number.
std::size_t mark_cut_pixels(std::span<const pairs> all, std::size_t width, std::span<std::uint8_t> at_cut)
{
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i].right.cut) at_cut[i] = at_cut[i + 1] = 1;
        if (all[i].down.cut) at_cut[i] = at_cut[i + width] = 1;
    }
    return static_cast<std::size_t>(std::ranges::count(at_cut, 1));
}

/// Pixels of regions with a cut to a larger region, all of whose pixels have their wrapped value.
std::size_t count_unreached(std::span<const float> phase, std::span<const float> unwrapped, std::span<const pairs> all,
                            std::size_t width, std::span<const std::int32_t> labels,
                            const std::vector<std::size_t>& sizes)
{
    std::vector<bool> borders_on_larger(sizes.size()), has_turns(sizes.size());
    const auto mark_smaller = [&](std::int32_t a, std::int32_t b) {
        if (a != b) borders_on_larger[std::max(a, b)] = true;
    };
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (std::abs(double{unwrapped[i]} - phase[i]) > std::numbers::pi) has_turns[labels[i]] = true;
        if (all[i].right.cut) mark_smaller(labels[i], labels[i + 1]);
        if (all[i].down.cut) mark_smaller(labels[i], labels[i + width]);
    }
    std::size_t count = 0;
    for (std::size_t label = 2; label < sizes.size(); ++label)
        if (borders_on_larger[label] && !has_turns[label]) count += sizes[label];
    return count;
}

}  // namespace

unwrap_report report_on_unwrapping(std::span<const float> phase, std::span<const float> unwrapped, std::uint32_t width,
                                   std::span<std::int32_t> labels, std::span<std::uint8_t> cuts)
{
    std::ranges::fill(cuts, 0);
    const auto [all, is_whole] = compare_neighbours(phase, unwrapped, width);
    unwrap_report report;
    count_residues(all, width, report);
    if (is_whole && !all.empty()) {
        std::ranges::fill(labels, 1);
        report.regions = 1;
        return report;
    }
    const auto sizes = sort_by_size(label_regions(phase, all, width, labels), labels);
    std::vector<std::uint8_t> own_cuts(cuts.empty() ? all.size() : 0);
    report.cut_pixels = mark_cut_pixels(all, width, cuts.empty() ? own_cuts : cuts);
    report.regions = sizes.size() - 1;
    report.unreached = count_unreached(phase, unwrapped, all, width, labels, sizes);
    report.left_out = sizes[0];
    return report;
}

}  // namespace zentrix::host
