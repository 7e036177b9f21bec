#include "host/estimation/candidates.h"

#include <algorithm>
#include <cmath>

namespace zentrix::host {

namespace {

/// The value times the factor that holds the unknowns near plausible sizes; changes the gradient accordingly.
double hold(const band_model& model, const std::vector<double>& usual, std::span<const double> at, double value,
            std::span<double> gradient)
{
    constexpr double strength = 1e-3;
    const auto& unknowns = model.unknowns();
    const imaging lens = model.imaging_at(at);
    double sum = 0;
    std::vector<double> slopes(unknowns.size());
    for (std::size_t i = 0; i < unknowns.size(); ++i) {
        const double size = value_of(lens, unknowns[i]) / usual[i];
        sum += size * size;
        slopes[i] = 2 * size / usual[i];
    }
    const double factor = 1 + strength * sum;
    const auto along = model.along_variables(slopes);
    for (std::size_t i = 0; i < gradient.size(); ++i) gradient[i] = gradient[i] * factor + value * strength * along[i];
    return value * factor;
}

}  // namespace

bool descend_all(search_run& run, const band_model& model, criterion what, std::vector<candidate>& candidates,
                 const search_limits& limits, const std::vector<double>* usual)
{
    const bool goes_on = run.for_each(candidates.size(), [&](std::size_t item) {
        band_evaluator evaluate{model};
        const auto function = [&](std::span<const double> at, std::span<double> gradient) {
            run.evaluated();
            const double value = evaluate(what, at, gradient);
            if (what == criterion::modulus_variance)
                return usual != nullptr ? hold(model, *usual, at, value, gradient) : value;
            for (double& one : gradient) one = -one;
            return -value;
        };
        candidate& one = candidates[item];
        const minimum found = descend(function, model.variables_of(one.lens), limits);
        if (found.stopped) return;
        one.lens = model.imaging_at(found.at);
        one.value = found.value;
    });
    if (goes_on) std::ranges::stable_sort(candidates, {}, &candidate::value);
    return goes_on;
}

void join_close(const band_model& model, std::vector<candidate>& candidates, double distance, std::size_t most)
{
    std::vector<candidate> kept;
    std::vector<std::vector<double>> places;
    for (const candidate& one : candidates) {
        const auto place = model.variables_of(one.lens);
        const auto same = std::ranges::find_if(places, [&](const std::vector<double>& other) {
            double sum = 0;
            for (std::size_t i = 0; i < place.size(); ++i) sum += (place[i] - other[i]) * (place[i] - other[i]);
            return std::sqrt(sum) < distance;
        });
        if (same != places.end())
            kept[static_cast<std::size_t>(same - places.begin())].followers += one.followers;
        else if (kept.size() < most) {
            kept.push_back(one);
            places.push_back(place);
        }
    }
    candidates = std::move(kept);
}

}  // namespace zentrix::host
