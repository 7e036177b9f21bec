#include "host/estimation/phase_minima.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include "lens/aberration_basis.h"

namespace zentrix::host {

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

namespace {

/// Starts of C1 so close that one of them is within 1 rad of the truth at the edge of the lowest band; each without
/// astigmatism and with some in four directions.
std::vector<candidate> defocus_starts(const search_task& task, double lowest_band)
{
    std::vector<candidate> starts;
    const double middle = task.start.lens[lens::coefficient::C1].modulus;
    const double step = task.defocus_step(lowest_band);
    constexpr int steps = 12, most = 400;
    const search_range range = task.defocus.value_or(search_range{middle - steps * step, middle + steps * step});
    task.check_range(step, most);
    const int count =
        1 + static_cast<int>(std::clamp(std::ceil((range.highest - range.lowest) / step), 1.0, double{most}));
    for (int i = 0; i < count; ++i) {
        candidate first{{task.start.lens}};
        if (task.is_free(lens::coefficient::C1))
            first.lens[lens::coefficient::C1].modulus = range.lowest + (range.highest - range.lowest) * i / (count - 1);
        starts.push_back(first);
        for (int turn = 0; turn < 4 && task.is_free(lens::coefficient::A1); ++turn) {
            candidate turned = first;
            add_to(turned.lens, {lens::coefficient::A1, turn % 2 == 0 ? unknown::part::real : unknown::part::imaginary},
                   turn < 2 ? 2 * step : -2 * step);
            starts.push_back(turned);
        }
        if (!task.is_free(lens::coefficient::C1)) break;
    }
    return starts;
}

class minima_search
{
  public:
    minima_search(search_run& run, const search_task& task)
        : run_{run},
          task_{task},
          unknowns_{unknowns_of(task.free)},
          even_{even_of(unknowns_)},
          odd_{odd_of(unknowns_)},
          resolution_{task.spectrum.signal_resolution}
    {}

    std::optional<phase_minima> search()
    {
        if (!search_even()) return std::nullopt;
        if (!odd_.empty() && !search_odd()) return std::nullopt;
        return found_;
    }

  private:
    std::vector<double> usual_sizes(const std::vector<unknown>& unknowns) const;
    bool search_even();
    bool search_odd();
    void add_spherical_starts(std::vector<candidate>& minima) const;
    bool grow(const std::vector<unknown>& unknowns, std::vector<candidate>& minima);
    bool propose_odd(const imaging& even);

    search_run& run_;
    const search_task& task_;
    std::vector<unknown> unknowns_, even_, odd_;
    double resolution_;
    phase_minima found_;
};

constexpr double bands[] = {0.33, 0.42, 0.52, 0.63, 0.75, 0.87, 1};

/// These sizes in nanometres.
std::vector<double> minima_search::usual_sizes(const std::vector<unknown>& unknowns) const
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
void minima_search::add_spherical_starts(std::vector<candidate>& minima) const
{
    const unknown spherical{lens::coefficient::C3};
    if (!task_.is_free(spherical.which)) return;
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
bool minima_search::grow(const std::vector<unknown>& unknowns, std::vector<candidate>& minima)
{
    constexpr std::size_t keep[] = {40, 20, 16, 12, 8, 8, 8};
    minima = defocus_starts(task_, bands[0] * resolution_);
    found_.starts = minima.size();
    for (std::size_t i = 0; i < std::size(bands); ++i) {
        // Terms of higher order hardly matter in low bands and would drift.
        constexpr double matters = 0.4;  // rad
        if (i == 1) add_spherical_starts(minima);
        std::vector<unknown> searched;
        for (const auto& one : unknowns)
            if (usual_chi(one.which) * std::pow(bands[i], lens::order_of(one.which)) > matters) searched.push_back(one);
        if (searched.empty()) continue;
        const band_model band = task_.model(bands[i], {task_.start.lens}, searched);
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
bool minima_search::search_even()
{
    run_.begin(0.2);
    const auto& first = even_.empty() ? unknowns_ : even_;
    if (!grow(first, found_.minima)) return false;
    found_.agreeing = found_.minima.front().followers;
    if (odd_.empty() || even_.empty()) return true;
    run_.begin(0.45);
    std::vector<candidate> others;
    if (!grow(unknowns_, others)) return false;
    run_.begin(0.55);
    constexpr std::size_t finalists = 3;
    std::vector<candidate> best;
    for (const auto& list : {found_.minima, others})
        best.insert(best.end(), list.begin(),
                    list.begin() + static_cast<std::ptrdiff_t>(std::min(finalists, list.size())));
    const auto usual = usual_sizes(unknowns_);
    for (const double part : {0.5, 2.0 / 3, 5.0 / 6, 1.0})
        if (!descend_all(run_, task_.model(part, {task_.start.lens}, unknowns_), criterion::modulus_variance, best,
                         {1e-2, 1e-6, 80}, part < 1 ? &usual : nullptr))
            return false;
    found_.minima.insert(found_.minima.end(), others.begin(), others.end());
    found_.minima.insert(found_.minima.end(), best.begin(), best.end());
    std::ranges::stable_sort(found_.minima, {}, &candidate::value);
    return true;
}

/// Odd coefficients by skewness from several starts in several first bands, with the even ones given.
bool minima_search::propose_odd(const imaging& even)
{
    constexpr std::size_t starts = 12;
    constexpr double first_bands[] = {0.5, 0.6, 0.7};
    imaging base = even;
    for (const auto& one : odd_) base[one.which] = task_.start.lens[one.which];
    found_.proposals.clear();
    for (const double part : first_bands) {
        const band_model first = task_.model(part, base, odd_);
        std::mt19937 random{7};  // the same starts in each run
        std::vector<candidate> tried{{base}};
        while (tried.size() < starts) {
            std::vector<double> at(odd_.size());
            for (double& one : at) one = (static_cast<double>(random()) / 4294967296.0 - 0.5) * 4;
            tried.push_back({first.imaging_at(at)});
        }
        if (!descend_all(run_, first, criterion::phase_skewness, tried, {1e-2, 1e-5, 60})) return false;
        join_close(first, tried, 0.3, 4);
        found_.proposals.insert(found_.proposals.end(), tried.begin(), tried.end());
    }
    for (const double part : {5.0 / 6, 1.0}) {
        const band_model next = task_.model(part, base, odd_);
        if (!descend_all(run_, next, criterion::phase_skewness, found_.proposals, {1e-3, 1e-7, 60})) return false;
        join_close(next, found_.proposals, 0.3, 4);
    }
    return true;
}

bool minima_search::search_odd()
{
    run_.begin(0.75);
    if (!propose_odd(found_.minima.front().lens)) return false;
    // Each proposal with the even coefficients that fit it, then with all of them free: a surer minimum if the noise
    // is small.
    run_.begin(0.85);
    const band_model whole = task_.model(1, {task_.start.lens}, unknowns_);
    auto refined = found_.proposals;
    if (!descend_all(run_, whole, criterion::modulus_variance, refined, {1e-3, 1e-7, 100})) return false;
    found_.minima.insert(found_.minima.end(), refined.begin(), refined.end());
    std::ranges::stable_sort(found_.minima, {}, &candidate::value);
    join_close(whole, found_.minima, 0.1, 12);
    return true;
}

}  // namespace

std::optional<phase_minima> search_phase_minima(search_run& run, const search_task& task)
{
    return minima_search{run, task}.search();
}

}  // namespace zentrix::host
