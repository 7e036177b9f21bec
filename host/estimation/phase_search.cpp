#include "host/estimation/phase_search.h"

#include <algorithm>
#include <cmath>
#include <numbers>

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
    phase_search(search_run& run, const search_task& task)
        : run_{run}, task_{task}, unknowns_{unknowns_of(task.free)}, resolution_{task.spectrum.signal_resolution}
    {
        for (const auto& one : unknowns_) (is_odd(one) ? odd_ : even_).push_back(one);
    }

    std::optional<phase_solution> search()
    {
        result_.lens = {task_.start.lens};
        result_.unknowns = unknowns_;
        result_.resolution = resolution_;
        result_.scattered = task_.spectrum.scattered;
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
    double odd_uncertainty(const stationary_point& found) const;
    void judge_even(const band_model& last, band_evaluator& evaluate, const std::vector<double>& best);
    void judge_odd(const band_model& last, band_evaluator& evaluate, const stationary_point& chosen,
                   const std::optional<stationary_point>& by_variance);
    void report(const band_model& last, const band_model& of, const stationary_point& found);
    void add_rounding(const matrix& to_unknowns);
    bool polish(const band_model& last, const stationary_point& found);
    bool try_other_bands(const imaging& found);
    std::optional<imaging> settled_in(double part, const imaging& from, const std::vector<unknown>& unknowns);

    search_run& run_;
    const search_task& task_;
    std::vector<unknown> unknowns_, even_, odd_;
    double resolution_;
    std::vector<candidate> minima_;            ///< of the variance of the modulus in the whole band, best first
    std::vector<candidate> proposals_;         ///< by skewness, for the best of them
    std::vector<std::vector<double>> shifts_;  ///< of the unknowns by a wrong envelope and by the end of the band [nm]
    phase_solution result_;
};

/// The variance of the modulus for the even variables, and this criterion for the odd ones.
deciding deciding_by(const band_model& model, criterion odd)
{
    deciding decides;
    for (const auto& one : model.unknowns()) decides.push_back(is_odd(one) ? odd : criterion::modulus_variance);
    return decides;
}

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

/// Adds what single precision leaves open, by how the coefficients of waves without noise scatter.
/// to_unknowns  from those variables [nm/rad]
void phase_search::add_rounding(const matrix& to_unknowns)
{
    constexpr double rounding = 2e-7;  // rad
    const matrix squares = to_unknowns * to_unknowns.transposed();
    for (std::size_t i = 0; i < squares.size(); ++i) {
        result_.chi_covariance(i, i) += rounding * rounding;
        for (std::size_t j = 0; j < squares.size(); ++j)
            result_.covariance(i, j) += rounding * rounding * squares(i, j);
    }
}

/// found  of the model `of`; its effect on chi is that in the band of `last`
void phase_search::report(const band_model& last, const band_model& of, const stationary_point& found)
{
    const std::size_t n = unknowns_.size();
    result_.unknowns = unknowns_;
    result_.lens = of.imaging_at(found.at);
    const matrix back = matrix_of(n, [&](const auto& axis) { return of.to_nanometres(axis); });
    const matrix to_chi = matrix_of(n, [&](const auto& axis) { return last.to_variables(axis); });
    result_.covariance = back * found.covariance * back.transposed();
    result_.chi_covariance = to_chi * result_.covariance * to_chi.transposed();
    const matrix to_unknowns = matrix_of(n, [&](const auto& axis) { return last.to_nanometres(axis); });
    add_rounding(to_unknowns);
    result_.chi_of_shifts = matrix{n};
    for (const auto& shift : shifts_) {
        const auto chi = to_chi * shift;
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j < n; ++j) {
                result_.covariance(i, j) += shift[i] * shift[j];
                result_.chi_of_shifts(i, j) += chi[i] * chi[j];
            }
    }
    constexpr double implausible = 5;
    for (std::size_t j = 0; j < n; ++j) {
        double sum = 0;
        for (std::size_t i = 0; i < n; ++i) sum += to_chi(i, j) * to_chi(i, j);
        result_.chi_per_unit.push_back(std::sqrt(sum));
        const bool is_free = unknowns_[j].what != unknown::part::contrast;
        const double change = value_of(result_.lens, unknowns_[j]) - value_of({task_.start.lens}, unknowns_[j]);
        if (is_free && std::abs(change) * std::sqrt(sum) > implausible * usual_chi(unknowns_[j].which))
            result_.even_doubt = "the minimum is farther away than any lens is out of trim";
    }
}

/// Where the derivatives vanish in this part of the band, with the criteria of the result.
std::optional<imaging> phase_search::settled_in(double part, const imaging& from, const std::vector<unknown>& unknowns)
{
    const band_model band = task_.model(part, from, unknowns);
    const auto odd = result_.used_skewness ? criterion::phase_skewness : criterion::modulus_variance;
    const auto settled = settle(run_, band, deciding_by(band, odd), std::vector<double>(unknowns.size()));
    if (!settled) return std::nullopt;
    return band.imaging_at(settled->at);
}

/// A phase object whose spectrum is cut off is not quite one any more: its modulus varies, and its phase may be
/// sharpest at wrong coefficients. All tiles of a crystal have the same such error, so that their scatter does not show
/// it. It changes with the end of the band, and what it changes by over the last tenth of the band counts as a standard
/// deviation.
/// Returns false if the search was stopped
bool phase_search::try_other_bands(const imaging& found)
{
    constexpr double parts[] = {0.95, 0.9};
    for (const double part : parts) {
        auto there = settled_in(part, found, unknowns_);
        if (run_.was_stopped()) return false;
        if (!there) {
            (odd_.empty() ? result_.even_doubt : result_.odd_doubt) = "its extremum depends on where the band ends";
            if (odd_.empty() || even_.empty()) return true;
            there = settled_in(part, found, even_);
            if (!there) {
                result_.even_doubt = result_.odd_doubt;
                return !run_.was_stopped();
            }
        }
        std::vector<double> shift;
        for (const auto& one : unknowns_)
            shift.push_back((value_of(*there, one) - value_of(found, one)) / std::sqrt(std::size(parts)));
        shifts_.push_back(shift);
    }
    return true;
}

/// Without noise, the whole spectrum is exact where a band is not: an object that changes the phase only does so with
/// all its frequencies.
bool phase_search::polish(const band_model& last, const stationary_point& found)
{
    const auto& spectrum = task_.spectrum;
    if (spectrum.noise > 0.005 || !spectrum.edges_meet) return false;
    const band_model whole =
        task_.model(std::numbers::sqrt2 * spectrum.nyquist() / resolution_, last.imaging_at(found.at), unknowns_);
    std::vector<candidate> polished{{last.imaging_at(found.at)}};
    if (!descend_all(run_, whole, criterion::modulus_variance, polished, {1e-9, 0, 100})) return false;
    const band_model at_end =
        task_.model(std::numbers::sqrt2 * spectrum.nyquist() / resolution_, polished.front().lens, unknowns_);
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
    report(last, at_end, *settled);
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
    if (!odd_.empty())
        for (const candidate& one : proposals_) {
            imaging there = one.lens;
            for (const auto& even : even_) there[even.which] = best[even.which];
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
    const auto shifts = host::envelope_shifts(
        run_, task_, last,
        deciding_by(last, result_.used_skewness ? criterion::phase_skewness : criterion::modulus_variance), *chosen);
    for (const auto& shift : shifts) shifts_.push_back(last.to_nanometres(shift));
    if (polish(last, *chosen)) return true;
    if (!try_other_bands(last.imaging_at(chosen->at))) return false;
    report(last, last, *chosen);
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
    even_.push_back(more.back());
    return true;
}

}  // namespace

std::optional<phase_solution> search_phase_object(search_run& run, const search_task& task)
{
    return phase_search{run, task}.search();
}

}  // namespace zentrix::host
