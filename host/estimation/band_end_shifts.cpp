#include "host/estimation/band_end_shifts.h"

#include <cmath>
#include <utility>

namespace zentrix::host {

namespace {

/// Where the derivatives vanish in this part of the band; nothing if they do not nearby, or if the search was stopped.
std::optional<settled_in_band> settle_in(search_run& run, const search_task& task, double part,
                                         const std::vector<unknown>& unknowns, criterion odd, const imaging& from)
{
    band_model band = task.model(part, from, unknowns);
    auto settled = settle(run, band, deciding_by(band, odd), std::vector<double>(unknowns.size()));
    if (!settled) return std::nullopt;
    return settled_in_band{part, std::move(band), std::move(*settled)};
}

imaging imaging_of(const settled_in_band& found) { return found.model.imaging_at(found.point.at); }

/// The unknowns of the second less those of the first. [nm]
std::vector<double> changes(const std::vector<unknown>& unknowns, const imaging& first, const imaging& second)
{
    std::vector<double> nanometres;
    for (const auto& one : unknowns) nanometres.push_back(value_of(second, one) - value_of(first, one));
    return nanometres;
}

}  // namespace

std::optional<settled_in_band> widen_band(search_run& run, const search_task& task, criterion odd,
                                          settled_in_band first)
{
    for (;;) {
        const auto& unknowns = first.model.unknowns();
        const double part = 1.2 * first.part;
        if (part * task.spectrum.signal_resolution > task.spectrum.nyquist()) return first;
        const imaging from = imaging_of(first);
        auto next = settle_in(run, task, part, unknowns, odd, from);
        if (run.was_stopped()) return std::nullopt;
        if (!next) return first;
        const auto moved = first.model.to_variables(changes(unknowns, from, imaging_of(*next)));
        double square = 0, variance = 0;
        for (std::size_t i = 0; i < unknowns.size(); ++i)
            if (!is_odd(unknowns[i])) square += moved[i] * moved[i], variance += first.point.covariance(i, i);
        if (square <= variance) return first;  // also if only odd coefficients are searched
        first = std::move(*next);
    }
}

std::optional<band_end_effect> band_end_shifts(search_run& run, const search_task& task, criterion odd,
                                               const settled_in_band& found)
{
    constexpr double ends[] = {0.95, 0.9};
    constexpr char depends[] = "its extremum depends on where the band ends";
    const imaging lens = imaging_of(found);
    const auto& unknowns = found.model.unknowns();
    const auto even_ones = even_of(unknowns);
    const bool has_even = !even_ones.empty(), has_odd = even_ones.size() < unknowns.size();
    band_end_effect effect;
    for (const double end : ends) {
        const double part = end * found.part;
        auto there = settle_in(run, task, part, unknowns, odd, lens);
        if (run.was_stopped()) return std::nullopt;
        if (!there) {
            (has_odd ? effect.odd_doubt : effect.even_doubt) = depends;
            if (!has_odd || !has_even) return effect;
            there = settle_in(run, task, part, even_ones, odd, lens);
            if (run.was_stopped()) return std::nullopt;
            if (!there) {
                effect.even_doubt = depends;
                return effect;
            }
        }
        effect.shifts.push_back(changes(unknowns, lens, imaging_of(*there)));
        for (double& one : effect.shifts.back()) one /= std::sqrt(std::size(ends));
    }
    return effect;
}

}  // namespace zentrix::host
