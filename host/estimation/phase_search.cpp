#include "host/estimation/phase_search.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/estimation/band_end_shifts.h"
#include "host/estimation/envelope_shifts.h"
#include "host/estimation/phase_minima.h"

namespace zentrix::host {

namespace {

/// Minima are different when their aberration functions differ by this. [rad rms]
constexpr double different = 0.5;
/// Standard deviations by which the best minimum has to be better than another one.
constexpr double clear = 4;

class phase_search
{
  public:
    phase_search(search_run& run, const search_task& task) : run_{run}, task_{task}, unknowns_{unknowns_of(task.free)}
    {}

    std::optional<phase_solution> search()
    {
        result_.lens = {task_.start.lens};
        result_.unknowns = unknowns_;
        result_.resolution = task_.spectrum.signal_resolution;
        result_.scattered = task_.spectrum.scattered;
        result_.has_signal = task_.spectrum.has_signal;
        auto found = search_phase_minima(run_, task_);
        if (!found) return std::nullopt;
        minima_ = std::move(found->minima);
        proposals_ = std::move(found->proposals);
        result_.starts = found->starts;
        result_.agreeing = found->agreeing;
        if (!decide()) return std::nullopt;
        return result_;
    }

  private:
    bool decide();
    bool fit_contrast(imaging& best);
    std::optional<stationary_point> settle_by(const band_model& last, criterion odd, const imaging& from);
    /// The criterion of the odd coefficients in the result.
    criterion odd_criterion() const
    {
        return result_.used_skewness ? criterion::phase_skewness : criterion::modulus_variance;
    }
    double odd_uncertainty(const stationary_point& found) const;
    void judge_even(const band_model& last, band_evaluator& evaluate, const std::vector<double>& best);
    void judge_odd(const band_model& last, band_evaluator& evaluate, const stationary_point& chosen,
                   const std::optional<stationary_point>& by_variance);
    bool polish(const band_model& last, const stationary_point& found);
    bool try_other_bands(const settled_in_band& found);

    search_run& run_;
    const search_task& task_;
    std::vector<unknown> unknowns_;
    std::vector<candidate> minima_;            ///< of the variance of the modulus in the whole band, best first
    std::vector<candidate> proposals_;         ///< by skewness, for the best of them
    std::vector<std::vector<double>> shifts_;  ///< of the unknowns by a wrong envelope and by the end of the band [nm]
    phase_solution result_;
};

std::optional<stationary_point> phase_search::settle_by(const band_model& last, criterion odd, const imaging& from)
{
    return settle(run_, last, deciding_by(last, odd), last.variables_of(from));
}

/// Standard deviation of what the odd coefficients contribute to chi. [rad rms]
double phase_search::odd_uncertainty(const stationary_point& found) const
{
    double sum = 0;
    for (std::size_t i = 0; i < unknowns_.size(); ++i)
        if (is_odd(unknowns_[i])) sum += found.is_extremum[i] ? found.covariance(i, i) : 1e6;
    return std::sqrt(sum);
}

/// The difference of two points in the even or odd variables. [rad rms]
double distance(const std::vector<unknown>& unknowns, std::span<const double> a, std::span<const double> b, bool odd)
{
    double sum = 0;
    for (std::size_t i = 0; i < unknowns.size(); ++i)
        if (is_odd(unknowns[i]) == odd) sum += (a[i] - b[i]) * (a[i] - b[i]);
    return std::sqrt(sum);
}

void phase_search::judge_even(const band_model& last, band_evaluator& evaluate, const std::vector<double>& best)
{
    for (const candidate& other : minima_) {
        const auto at = last.variables_of(other.lens);
        if (distance(unknowns_, at, best, false) < different) continue;
        if (superiority(evaluate, last, best, at) < clear)
            result_.even_doubt = "another minimum is as good within the noise";
    }
}

void phase_search::judge_odd(const band_model& last, band_evaluator& evaluate, const stationary_point& chosen,
                             const std::optional<stationary_point>& by_variance)
{
    if (!result_.used_skewness) {
        for (const candidate& other : minima_) {
            const auto at = last.variables_of(other.lens);
            if (distance(unknowns_, at, chosen.at, true) > different &&
                superiority(evaluate, last, chosen.at, at) < clear)
                result_.odd_doubt = "another minimum is as good within the noise";
        }
        return;
    }
    if (by_variance && superiority(evaluate, last, by_variance->at, chosen.at) > clear)
        result_.odd_doubt = "the greatest skewness of the phase raises the variance of the modulus";
    for (const candidate& other : proposals_) {
        auto at = last.variables_of(other.lens);
        if (distance(unknowns_, at, chosen.at, true) < different) continue;
        if (-other.value > 0.95 * chosen.skewness && superiority(evaluate, last, chosen.at, at) < clear)
            result_.odd_doubt = "another maximum of the skewness is as high";
    }
}

/// Adds what the end of the band changes. Returns false if the search was stopped.
bool phase_search::try_other_bands(const settled_in_band& found)
{
    const auto effect = band_end_shifts(run_, task_, odd_criterion(), found);
    if (!effect) return false;
    shifts_.insert(shifts_.end(), effect->shifts.begin(), effect->shifts.end());
    if (!effect->even_doubt.empty()) result_.even_doubt = effect->even_doubt;
    if (!effect->odd_doubt.empty()) result_.odd_doubt = effect->odd_doubt;
    return true;
}

/// Without noise, the whole spectrum is exact where a band is not: an object that changes the phase only does so with
/// all its frequencies.
bool phase_search::polish(const band_model& last, const stationary_point& found)
{
    const auto& spectrum = task_.spectrum;
    if (spectrum.noise > 0.005 || !spectrum.edges_meet) return false;
    const band_model whole = task_.model(std::numbers::sqrt2 * spectrum.nyquist() / spectrum.signal_resolution,
                                         last.imaging_at(found.at), unknowns_);
    std::vector<candidate> polished{{last.imaging_at(found.at)}};
    if (!descend_all(run_, whole, criterion::modulus_variance, polished, {1e-9, 0, 100})) return false;
    const band_model at_end = task_.model(std::numbers::sqrt2 * spectrum.nyquist() / spectrum.signal_resolution,
                                          polished.front().lens, unknowns_);
    const auto settled = settle_by(at_end, criterion::modulus_variance, polished.front().lens);
    if (!settled) return false;
    double before = 0, after = 0;
    for (std::size_t i = 0; i < unknowns_.size(); ++i) {
        before += found.covariance(i, i);
        after += settled->covariance(i, i);
    }
    if (after >= before) return false;
    result_.used_skewness = false;
    // A modulus that is constant leaves no room for an envelope.
    constexpr double exact = 1e-6;
    if (settled->variance < exact * spectrum.scattered * spectrum.scattered) shifts_.clear();
    describe(result_, task_, last, at_end, *settled, shifts_);
    return true;
}

bool phase_search::decide()
{
    run_.begin(1);
    imaging best = minima_.front().lens;
    if (!fit_contrast(best)) return false;
    const band_model last = task_.model(1, best, unknowns_);
    band_evaluator evaluate{last};
    const auto by_variance = settle_by(last, criterion::modulus_variance, best);
    std::optional<stationary_point> chosen = by_variance;
    // Of the proposals that the variance of the modulus does not exclude, the one with the greatest skewness.
    for (const candidate& one : proposals_) {
        imaging there = one.lens;
        for (const auto& even : even_of(unknowns_)) there[even.which] = best[even.which];
        there.contrast = best.contrast;
        const auto by_skewness = settle_by(last, criterion::phase_skewness, there);
        if (run_.was_stopped()) return false;
        if (!by_skewness) continue;
        if (by_variance && superiority(evaluate, last, by_variance->at, by_skewness->at) > clear) continue;
        if (!chosen || odd_uncertainty(*by_skewness) < odd_uncertainty(*chosen)) {
            chosen = by_skewness;
            result_.used_skewness = true;
        }
        break;
    }
    if (run_.was_stopped()) return false;
    const double noise = last.noise_variance() * last.filled();
    const double scattered = task_.spectrum.scattered * task_.spectrum.scattered / 2;
    const double variance = chosen ? chosen->variance : minima_.front().value;
    result_.misfit = scattered > 0 ? (variance - noise) / scattered : 1;
    if (!chosen) {
        result_.even_doubt = result_.odd_doubt = "the minimum has no curvature";
        return true;
    }
    judge_even(last, evaluate, chosen->at);
    judge_odd(last, evaluate, *chosen, by_variance);
    const auto shifts = envelope_shifts(run_, task_, last, deciding_by(last, odd_criterion()), *chosen);
    for (const auto& shift : shifts) shifts_.push_back(last.to_nanometres(shift));
    if (polish(last, *chosen)) return true;
    const auto settled = widen_band(run_, task_, odd_criterion(), {1, last, *chosen});
    if (!settled || !try_other_bands(*settled)) return false;
    describe(result_, task_, last, settled->model, settled->point, shifts_);
    return !run_.was_stopped();
}

/// Adds the contrast to the unknowns if the variance of the modulus is clearly smaller with it.
bool phase_search::fit_contrast(imaging& best)
{
    auto more = unknowns_;
    more.push_back({lens::coefficient::C1, unknown::part::contrast});
    const band_model wider = task_.model(1, best, more);
    std::vector<candidate> with{{best}};
    if (!descend_all(run_, wider, criterion::modulus_variance, with, {1e-3, 1e-7, 150})) return false;
    band_evaluator evaluate{wider};
    const auto at = wider.variables_of(with.front().lens);
    const double s = superiority(evaluate, wider, at, std::vector<double>(more.size()));
    if (s < clear) return true;
    best = with.front().lens;
    unknowns_ = more;
    return true;
}

}  // namespace

std::optional<phase_solution> search_phase_object(search_run& run, const search_task& task)
{
    return phase_search{run, task}.search();
}

}  // namespace zentrix::host
