#include "host/estimation/envelope_shifts.h"

#include <cmath>
#include <numbers>

namespace zentrix::host {

namespace {

/// Widths that may be the true ones, and the factor from the shift that they cause to one standard deviation.
struct possible_envelope
{
    lens::coherence spread;
    double factor;
};

std::vector<possible_envelope> possible_envelopes(const search_task& task, double resolution)
{
    const lens::coherence& given = task.start.spread;
    std::vector<possible_envelope> list;
    if (task.widths_are_known) {
        constexpr double wrong = 1.1;
        for (double lens::coherence::*const width :
             {&lens::coherence::focus_spread_nm, &lens::coherence::convergence_mrad, &lens::coherence::vibration_nm}) {
            if (given.*width == 0) continue;
            list.push_back({given, 1});
            list.back().spread.*width *= wrong;
        }
        return list;
    }
    // The shift is computed for half the exponent, where it is still proportional to it.
    constexpr double exponent = 0.5;
    const double focus = std::numbers::pi * task.start.wavelength_nm * resolution * resolution;
    const double vibration = std::numbers::pi * resolution;
    list.push_back({given, 1 / exponent});
    list.back().spread.focus_spread_nm = std::hypot(given.focus_spread_nm, std::sqrt(2 * exponent) / focus);
    list.push_back({given, 1 / exponent});
    list.back().spread.vibration_nm = std::hypot(given.vibration_nm, std::sqrt(exponent / 2) / vibration);
    return list;
}

/// The derivatives of the criteria that decide. [1/rad]
std::vector<double> gradient_at(search_run& run, const band_model& model, const deciding& decides,
                                std::span<const double> at)
{
    run.evaluated();
    std::vector<double> variance(at.size()), skewness(at.size());
    band_evaluator{model}.both(at, variance, skewness);
    for (std::size_t i = 0; i < at.size(); ++i)
        if (decides[i] == criterion::phase_skewness) variance[i] = -skewness[i];
    return variance;
}

}  // namespace

std::vector<std::vector<double>> envelope_shifts(search_run& run, const search_task& task, const band_model& model,
                                                 const deciding& decides, const stationary_point& found)
{
    const auto here = gradient_at(run, model, decides, found.at);
    std::vector<std::vector<double>> shifts;
    for (const auto& [spread, factor] : possible_envelopes(task, model.resolution())) {
        lens::optics other = task.start;
        other.spread = spread;
        const band_model damped{
            task.spectrum,    model.resolution(), other, model.imaging_at(std::vector<double>(model.variables())),
            model.unknowns(), task.margin()};
        auto slope = gradient_at(run, damped, decides, found.at);
        for (std::size_t i = 0; i < slope.size(); ++i) slope[i] = factor * (here[i] - slope[i]);
        shifts.push_back(found.inverse * slope);
    }
    return shifts;
}

}  // namespace zentrix::host
