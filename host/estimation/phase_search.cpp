#include "host/estimation/phase_search.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include "lens/aberration_basis.h"

namespace zentrix::host {

namespace {

bool is_odd(const unknown& one) { return !lens::is_even(one.which); }

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
        result_.setup = task_.start;
        result_.unknowns = unknowns_;
        result_.resolution = resolution_;
        if (!search_even()) return std::nullopt;
        if (!odd_.empty() && !search_odd()) return std::nullopt;
        if (!decide()) return std::nullopt;
        return result_;
    }

  private:
    band_model model(double part, const lens::aberrations& base, const std::vector<unknown>& unknowns) const
    {
        lens::optics setup = task_.start;
        setup.lens = base;
        return {task_.spectrum, part * resolution_, setup, unknowns, task_.margin()};
    }

    bool search_even();
    bool search_odd();
    bool propose_odd(const lens::aberrations& even);
    bool decide();
    std::optional<stationary_point> settle_by(const band_model& last, criterion odd, const lens::aberrations& from);
    double odd_uncertainty(const stationary_point& found) const;
    void judge_even(const band_model& last, band_evaluator& evaluate, const std::vector<double>& best);
    void judge_odd(const band_model& last, band_evaluator& evaluate, const stationary_point& chosen,
                   const std::optional<stationary_point>& by_variance);
    void report(const band_model& last, const stationary_point& found);

    search_run& run_;
    const search_task& task_;
    std::vector<unknown> unknowns_, even_, odd_;
    double resolution_;
    std::vector<candidate> minima_;     ///< of the variance of the modulus in the whole band, best first
    std::vector<candidate> proposals_;  ///< by skewness, for the best of them
    phase_solution result_;
};

/// Starts of C1 so close that one of them is within 1 rad of the truth at the edge of the lowest band.
std::vector<candidate> defocus_starts(const search_task& task, double lowest_band)
{
    std::vector<candidate> starts;
    const double middle = task.start.lens[lens::coefficient::C1].modulus;
    candidate first{task.start.lens};
    if (std::ranges::find(task.free, lens::coefficient::C1) == task.free.end()) return {first};
    const double step = 1 / (std::numbers::pi * task.start.wavelength_nm * lowest_band * lowest_band);
    constexpr int steps = 12, most = 400;
    const search_range range = task.defocus.value_or(search_range{middle - steps * step, middle + steps * step});
    const int count =
        1 + static_cast<int>(std::clamp(std::ceil((range.highest - range.lowest) / step), 1.0, double{most}));
    for (int i = 0; i < count; ++i) {
        first.lens[lens::coefficient::C1].modulus = range.lowest + (range.highest - range.lowest) * i / (count - 1);
        starts.push_back(first);
    }
    return starts;
}

constexpr double bands[] = {1.0 / 3, 0.5, 2.0 / 3, 5.0 / 6, 1};

bool phase_search::search_even()
{
    constexpr std::size_t keep[] = {400, 12, 8, 6, 6};
    minima_ = defocus_starts(task_, bands[0] * resolution_);
    result_.starts = minima_.size();
    for (std::size_t i = 0; i < std::size(bands); ++i) {
        run_.begin(0.1 * static_cast<double>(i + 1));
        const band_model band = model(bands[i], task_.start.lens, unknowns_);
        if (!descend_all(run_, band, criterion::modulus_variance, minima_, {1e-3, 1e-6, 100})) return false;
        join_close(band, minima_, 0.2, keep[i]);
        lens::optics shown = task_.start;
        shown.lens = minima_.front().lens;
        run_.show(shown);
    }
    result_.agreeing = minima_.front().followers;
    return true;
}

/// Odd coefficients by skewness from several starts in several first bands, with the even ones given.
bool phase_search::propose_odd(const lens::aberrations& even)
{
    constexpr std::size_t starts = 12;
    constexpr double first_bands[] = {0.5, 0.6, 0.7};
    lens::aberrations base = even;
    for (const auto& one : odd_) base[one.which] = task_.start.lens[one.which];
    proposals_.clear();
    for (const double part : first_bands) {
        const band_model first = model(part, base, odd_);
        std::mt19937 random{7};  // the same starts in each run
        std::vector<candidate> tried{{base}};
        while (tried.size() < starts) {
            std::vector<double> at(odd_.size());
            for (double& one : at) one = (static_cast<double>(random()) / 4294967296.0 - 0.5) * 4;
            tried.push_back({first.optics_at(at).lens});
        }
        if (!descend_all(run_, first, criterion::phase_skewness, tried, {1e-2, 1e-5, 60})) return false;
        join_close(first, tried, 0.3, 4);
        proposals_.insert(proposals_.end(), tried.begin(), tried.end());
    }
    for (const double part : {5.0 / 6, 1.0}) {
        const band_model next = model(part, base, odd_);
        if (!descend_all(run_, next, criterion::phase_skewness, proposals_, {1e-3, 1e-7, 60})) return false;
        join_close(next, proposals_, 0.3, 4);
    }
    return true;
}

bool phase_search::search_odd()
{
    run_.begin(0.75);
    if (!propose_odd(minima_.front().lens)) return false;
    // Each proposal with the even coefficients that fit it, then with all of them free: a surer minimum if the noise
    // is small.
    run_.begin(0.85);
    const band_model whole = model(1, task_.start.lens, unknowns_);
    auto refined = proposals_;
    if (!descend_all(run_, whole, criterion::modulus_variance, refined, {1e-3, 1e-7, 100})) return false;
    minima_.insert(minima_.end(), refined.begin(), refined.end());
    std::ranges::stable_sort(minima_, {}, &candidate::value);
    join_close(whole, minima_, 0.1, 12);
    return true;
}

std::optional<stationary_point> phase_search::settle_by(const band_model& last, criterion odd,
                                                        const lens::aberrations& from)
{
    deciding decides;
    for (const auto& one : last.unknowns()) decides.push_back(is_odd(one) ? odd : criterion::modulus_variance);
    return settle(run_, last, decides, last.variables_of(from));
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

void phase_search::report(const band_model& last, const stationary_point& found)
{
    result_.setup = last.optics_at(found.at);
    result_.chi_covariance = found.covariance;
    const std::size_t n = unknowns_.size();
    matrix back{n};  // from variables to nanometres
    for (std::size_t j = 0; j < n; ++j) {
        std::vector<double> axis(n);
        axis[j] = 1;
        const auto nanometres = last.to_nanometres(axis);
        for (std::size_t i = 0; i < n; ++i) back(i, j) = nanometres[i];
        const auto variables = last.to_variables(axis);
        double sum = 0;
        for (const double one : variables) sum += one * one;
        result_.chi_per_unit.push_back(std::sqrt(sum));
    }
    result_.covariance = back * found.covariance * back.transposed();
}

bool phase_search::decide()
{
    run_.begin(1);
    const band_model last = model(1, minima_.front().lens, unknowns_);
    band_evaluator evaluate{last};
    const auto by_variance = settle_by(last, criterion::modulus_variance, minima_.front().lens);
    std::optional<stationary_point> chosen = by_variance;
    // Of the proposals that the variance of the modulus does not exclude, the one with the greatest skewness.
    if (!odd_.empty())
        for (const candidate& one : proposals_) {
            const auto by_skewness = settle_by(last, criterion::phase_skewness, one.lens);
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
    if (!chosen) {
        result_.even_doubt = result_.odd_doubt = "the minimum has no curvature";
        return true;
    }
    judge_even(last, evaluate, chosen->at);
    judge_odd(last, evaluate, *chosen, by_variance);
    const double noise = last.noise_variance() * last.filled();
    const double scattered = task_.spectrum.scattered * task_.spectrum.scattered / 2;
    result_.misfit = scattered > 0 ? (chosen->variance - noise) / scattered : 1;
    report(last, *chosen);
    return true;
}

}  // namespace

std::optional<phase_solution> search_phase_object(search_run& run, const search_task& task)
{
    return phase_search{run, task}.search();
}

}  // namespace zentrix::host
