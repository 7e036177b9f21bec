#include "host/estimation/phase_search.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include "host/estimation/envelope_shifts.h"
#include "lens/aberration_basis.h"

namespace zentrix::host {

namespace {

bool is_odd(const unknown& one) { return one.what != unknown::part::contrast && !lens::is_even(one.which); }

/// Minima are different when their aberration functions differ by this. [rad rms]
constexpr double different = 0.5;
/// Standard deviations by which the best minimum has to be better than another one.
constexpr double clear = 4;

/// What a coefficient of a microscope that is far out of trim changes chi by in the whole band. [rad rms]
double usual_chi(lens::coefficient which)
{
    switch (which) {
        case lens::coefficient::C1: return 60;
        case lens::coefficient::C3: return 15;
        case lens::coefficient::A1: return 10;
        case lens::coefficient::B2:
        case lens::coefficient::A2: return 5;
        default: return 2;
    }
}

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
        if (!search_even()) return std::nullopt;
        if (!odd_.empty() && !search_odd()) return std::nullopt;
        if (!decide()) return std::nullopt;
        return result_;
    }

  private:
    band_model model(double part, const imaging& at, const std::vector<unknown>& unknowns) const
    {
        return {task_.spectrum, part * resolution_, task_.start, at, unknowns, task_.margin()};
    }

    std::vector<double> usual_sizes(const std::vector<unknown>& unknowns) const;
    bool search_even();
    bool search_odd();
    void add_spherical_starts(std::vector<candidate>& minima) const;
    bool grow(const std::vector<unknown>& unknowns, std::vector<candidate>& minima);
    bool propose_odd(const imaging& even);
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

    search_run& run_;
    const search_task& task_;
    std::vector<unknown> unknowns_, even_, odd_;
    double resolution_;
    std::vector<candidate> minima_;     ///< of the variance of the modulus in the whole band, best first
    std::vector<candidate> proposals_;  ///< by skewness, for the best of them
    std::vector<std::vector<double>> envelope_shifts_;  ///< of the unknowns [nm]
    phase_solution result_;
};

/// Starts of C1 so close that one of them is within 1 rad of the truth at the edge of the lowest band; each without
/// astigmatism and with some in four directions.
std::vector<candidate> defocus_starts(const search_task& task, double lowest_band)
{
    std::vector<candidate> starts;
    const auto is_free = [&](lens::coefficient which) {
        return std::ranges::find(task.free, which) != task.free.end();
    };
    const double middle = task.start.lens[lens::coefficient::C1].modulus;
    const double step = 1 / (std::numbers::pi * task.start.wavelength_nm * lowest_band * lowest_band);
    constexpr int steps = 12, most = 400;
    const search_range range = task.defocus.value_or(search_range{middle - steps * step, middle + steps * step});
    const int count =
        1 + static_cast<int>(std::clamp(std::ceil((range.highest - range.lowest) / step), 1.0, double{most}));
    for (int i = 0; i < count; ++i) {
        candidate first{{task.start.lens}};
        if (is_free(lens::coefficient::C1))
            first.lens[lens::coefficient::C1].modulus = range.lowest + (range.highest - range.lowest) * i / (count - 1);
        starts.push_back(first);
        for (int turn = 0; turn < 4 && is_free(lens::coefficient::A1); ++turn) {
            candidate turned = first;
            add_to(turned.lens, {lens::coefficient::A1, turn % 2 == 0 ? unknown::part::real : unknown::part::imaginary},
                   turn < 2 ? 2 * step : -2 * step);
            starts.push_back(turned);
        }
        if (!is_free(lens::coefficient::C1)) break;
    }
    return starts;
}

constexpr double bands[] = {0.33, 0.42, 0.52, 0.63, 0.75, 0.87, 1};

/// These sizes in nanometres.
std::vector<double> phase_search::usual_sizes(const std::vector<unknown>& unknowns) const
{
    std::vector<double> sizes;
    for (const auto& one : unknowns) {
        // The rms over a disc of a term of order n that is 1 at its edge: 1 / sqrt(n + 1), and with an angle that over
        // sqrt(2).
        const double edge = 2 * std::numbers::pi / task_.start.wavelength_nm *
                            std::abs(lens::aberration_term(one.which, task_.start.wavelength_nm * resolution_));
        const double turns = lens::traits(one.which).symmetry != 0 ? 2 : 1;
        const double chi = edge / std::sqrt((lens::order_of(one.which) + 1) * turns);
        sizes.push_back(usual_chi(one.which) / chi);
    }
    return sizes;
}

/// Adds starts with spherical aberration, which the lowest band hardly shows, to the best minima.
void phase_search::add_spherical_starts(std::vector<candidate>& minima) const
{
    const unknown spherical{lens::coefficient::C3};
    if (std::ranges::find(task_.free, spherical.which) == task_.free.end()) return;
    constexpr double edge_chi = 2.5, band = bands[1];  // rad at the edge of the second band
    constexpr std::size_t most = 10;
    const double chi_per_nanometre =
        2 * std::numbers::pi / task_.start.wavelength_nm *
        std::abs(lens::aberration_term(spherical.which, task_.start.wavelength_nm * band * resolution_));
    const std::size_t count = std::min(minima.size(), most);
    for (std::size_t i = 0; i < count; ++i)
        for (const double sign : {-1.0, 1.0}) {
            candidate more = minima[i];
            more.followers = 0;
            add_to(more.lens, spherical, sign * edge_chi / chi_per_nanometre);
            minima.push_back(more);
        }
}

/// Minima of the variance of the modulus in the whole band, best first, by growing bands from many starts.
bool phase_search::grow(const std::vector<unknown>& unknowns, std::vector<candidate>& minima)
{
    constexpr std::size_t keep[] = {40, 20, 16, 12, 8, 8, 8};
    minima = defocus_starts(task_, bands[0] * resolution_);
    result_.starts = minima.size();
    for (std::size_t i = 0; i < std::size(bands); ++i) {
        // Terms of higher order hardly matter in low bands and would drift.
        constexpr double matters = 0.4;  // rad
        if (i == 1) add_spherical_starts(minima);
        std::vector<unknown> searched;
        for (const auto& one : unknowns)
            if (usual_chi(one.which) * std::pow(bands[i], lens::order_of(one.which)) > matters) searched.push_back(one);
        if (searched.empty()) continue;
        const band_model band = model(bands[i], {task_.start.lens}, searched);
        const auto usual = usual_sizes(searched);
        if (!descend_all(run_, band, criterion::modulus_variance, minima, {1e-2, 1e-5, 60}, &usual)) return false;
        join_close(band, minima, 0.2, keep[i]);
        lens::optics shown = task_.start;
        shown.lens = static_cast<const lens::aberrations&>(minima.front().lens);
        run_.show(shown);
    }
    return true;
}

/// The odd coefficients disturb the search for the even ones by a strong object if they are left out, and by noise if
/// they are not. So both is done, and the best minima of both compete.
bool phase_search::search_even()
{
    run_.begin(0.2);
    const auto& first = even_.empty() ? unknowns_ : even_;
    if (!grow(first, minima_)) return false;
    result_.agreeing = minima_.front().followers;
    if (odd_.empty() || even_.empty()) return true;
    run_.begin(0.45);
    std::vector<candidate> others;
    if (!grow(unknowns_, others)) return false;
    run_.begin(0.55);
    constexpr std::size_t finalists = 3;
    std::vector<candidate> best;
    for (const auto& list : {minima_, others})
        best.insert(best.end(), list.begin(),
                    list.begin() + static_cast<std::ptrdiff_t>(std::min(finalists, list.size())));
    const auto usual = usual_sizes(unknowns_);
    for (const double part : {0.5, 2.0 / 3, 5.0 / 6, 1.0})
        if (!descend_all(run_, model(part, {task_.start.lens}, unknowns_), criterion::modulus_variance, best,
                         {1e-2, 1e-6, 80}, part < 1 ? &usual : nullptr))
            return false;
    minima_.insert(minima_.end(), others.begin(), others.end());
    minima_.insert(minima_.end(), best.begin(), best.end());
    std::ranges::stable_sort(minima_, {}, &candidate::value);
    return true;
}

/// Odd coefficients by skewness from several starts in several first bands, with the even ones given.
bool phase_search::propose_odd(const imaging& even)
{
    constexpr std::size_t starts = 12;
    constexpr double first_bands[] = {0.5, 0.6, 0.7};
    imaging base = even;
    for (const auto& one : odd_) base[one.which] = task_.start.lens[one.which];
    proposals_.clear();
    for (const double part : first_bands) {
        const band_model first = model(part, base, odd_);
        std::mt19937 random{7};  // the same starts in each run
        std::vector<candidate> tried{{base}};
        while (tried.size() < starts) {
            std::vector<double> at(odd_.size());
            for (double& one : at) one = (static_cast<double>(random()) / 4294967296.0 - 0.5) * 4;
            tried.push_back({first.imaging_at(at)});
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
    const band_model whole = model(1, {task_.start.lens}, unknowns_);
    auto refined = proposals_;
    if (!descend_all(run_, whole, criterion::modulus_variance, refined, {1e-3, 1e-7, 100})) return false;
    minima_.insert(minima_.end(), refined.begin(), refined.end());
    std::ranges::stable_sort(minima_, {}, &candidate::value);
    join_close(whole, minima_, 0.1, 12);
    return true;
}

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

/// The matrix whose columns are what a unit of each variable (or unknown) is in the other.
template <class Convert>
matrix conversion(std::size_t size, const Convert& convert)
{
    matrix result{size};
    for (std::size_t j = 0; j < size; ++j) {
        std::vector<double> axis(size);
        axis[j] = 1;
        const auto column = convert(axis);
        for (std::size_t i = 0; i < size; ++i) result(i, j) = column[i];
    }
    return result;
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
    const matrix back = conversion(n, [&](const auto& axis) { return of.to_nanometres(axis); });
    const matrix to_chi = conversion(n, [&](const auto& axis) { return last.to_variables(axis); });
    result_.covariance = back * found.covariance * back.transposed();
    result_.chi_covariance = to_chi * result_.covariance * to_chi.transposed();
    const matrix to_unknowns = conversion(n, [&](const auto& axis) { return last.to_nanometres(axis); });
    add_rounding(to_unknowns);
    result_.chi_of_envelope = matrix{n};
    for (const auto& shift : envelope_shifts_) {
        const auto chi = to_chi * shift;
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j < n; ++j) {
                result_.covariance(i, j) += shift[i] * shift[j];
                result_.chi_of_envelope(i, j) += chi[i] * chi[j];
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

/// Without noise, the whole spectrum is exact where a band is not: an object that changes the phase only does so with
/// all its frequencies.
bool phase_search::polish(const band_model& last, const stationary_point& found)
{
    const auto& spectrum = task_.spectrum;
    if (spectrum.noise > 0.005 || !spectrum.edges_meet) return false;
    const band_model whole =
        model(std::numbers::sqrt2 * spectrum.nyquist() / resolution_, last.imaging_at(found.at), unknowns_);
    std::vector<candidate> polished{{last.imaging_at(found.at)}};
    if (!descend_all(run_, whole, criterion::modulus_variance, polished, {1e-9, 0, 100})) return false;
    const band_model at_end =
        model(std::numbers::sqrt2 * spectrum.nyquist() / resolution_, polished.front().lens, unknowns_);
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
    if (settled->variance < exact * spectrum.scattered * spectrum.scattered) envelope_shifts_.clear();
    report(last, at_end, *settled);
    return true;
}

bool phase_search::decide()
{
    run_.begin(1);
    imaging best = minima_.front().lens;
    if (!fit_contrast(best)) return false;
    const band_model last = model(1, best, unknowns_);
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
    for (const auto& shift : shifts) envelope_shifts_.push_back(last.to_nanometres(shift));
    if (!polish(last, *chosen)) report(last, last, *chosen);
    return !run_.was_stopped();
}

/// Adds the contrast to the unknowns if the variance of the modulus is clearly smaller with it.
bool phase_search::fit_contrast(imaging& best)
{
    auto more = unknowns_;
    more.push_back({lens::coefficient::C1, unknown::part::contrast});
    const band_model wider = model(1, best, more);
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
