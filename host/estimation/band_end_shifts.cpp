#include "host/estimation/band_end_shifts.h"

#include <cmath>

namespace zentrix::host {

namespace {

/// Where the derivatives vanish in this part of the band.
std::optional<imaging> settled_in(search_run& run, const search_task& task, double part,
                                  const std::vector<unknown>& unknowns, criterion odd, const imaging& from)
{
    const band_model band = task.model(part, from, unknowns);
    const auto settled = settle(run, band, deciding_by(band, odd), std::vector<double>(unknowns.size()));
    if (!settled) return std::nullopt;
    return band.imaging_at(settled->at);
}

}  // namespace

std::optional<band_end_effect> band_end_shifts(search_run& run, const search_task& task,
                                               const std::vector<unknown>& unknowns, criterion odd,
                                               const imaging& found)
{
    constexpr double parts[] = {0.95, 0.9};
    constexpr char depends[] = "its extremum depends on where the band ends";
    const auto even_ones = even_of(unknowns);
    const bool has_even = !even_ones.empty(), has_odd = even_ones.size() < unknowns.size();
    band_end_effect effect;
    for (const double part : parts) {
        auto there = settled_in(run, task, part, unknowns, odd, found);
        if (run.was_stopped()) return std::nullopt;
        if (!there) {
            (has_odd ? effect.odd_doubt : effect.even_doubt) = depends;
            if (!has_odd || !has_even) return effect;
            there = settled_in(run, task, part, even_ones, odd, found);
            if (run.was_stopped()) return std::nullopt;
            if (!there) {
                effect.even_doubt = depends;
                return effect;
            }
        }
        std::vector<double> shift;
        for (const auto& one : unknowns)
            shift.push_back((value_of(*there, one) - value_of(found, one)) / std::sqrt(std::size(parts)));
        effect.shifts.push_back(shift);
    }
    return effect;
}

}  // namespace zentrix::host
