#include "host/estimation/amplitude_search.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/estimation/amplitude_certainty.h"
#include "host/estimation/candidates.h"
#include "host/estimation/sharpness.h"

namespace zentrix::host {

namespace {

using lens::coefficient;

class amplitude_search
{
  public:
    amplitude_search(search_run& run, const search_task& task)
        : run_{run}, task_{task}, resolution_{task.spectrum.edge_resolution}
    {
        for (const auto& one : unknowns_of(task.free))
            if (one.which == coefficient::C1 || one.which == coefficient::A1) unknowns_.push_back(one);
    }

    std::optional<amplitude_solution> search()
    try {
        result_.lens = task_.start.lens;
        result_.resolution = resolution_;
        if (unknowns_.empty()) return result_;
        run_.begin(0.95);
        foci_.push_back({{task_.start.lens}});
        if (unknowns_.front().which == coefficient::C1) scan();
        if (unknowns_.back().which == coefficient::A1) add_line_foci();
        climb();
        judge();
        return result_;
    } catch (const search_stopped&) {
        return std::nullopt;
    }

  private:
    /// C1 that moves chi by 1 rad at the edge of this band. [nm]
    double defocus_step(double band) const { return 1 / (std::numbers::pi * task_.start.wavelength_nm * band * band); }
    band_model model(double band, std::vector<unknown> unknowns) const
    {
        return {task_.spectrum, band, task_.start, {task_.start.lens}, std::move(unknowns), task_.margin()};
    }
    search_range range() const;
    void scan();
    void measure(const band_model& band, std::vector<candidate>& places);
    void add_line_foci();
    void climb();
    void judge();
    void judge_rivals(const band_model& band);
    void judge_maximum(const band_model& band);
    void add_other_bands(const band_model& band, matrix& chi);
    imaging sharpest_near(const band_model& band, const imaging& start, double step, int part) const;

    search_run& run_;
    const search_task& task_;
    double resolution_;
    std::vector<unknown> unknowns_;
    std::vector<candidate> foci_;  ///< best first; their values are the negative sharpness
    amplitude_solution result_;
};

/// By default up to the defocus that spreads the highest frequency over half of the wave.
search_range amplitude_search::range() const
{
    if (task_.defocus) return *task_.defocus;
    const double extent =
        static_cast<double>(std::min(task_.spectrum.width, task_.spectrum.height)) * task_.spectrum.pixel_nm;
    const double reach = extent / (2 * task_.start.wavelength_nm * resolution_);
    const double middle = task_.start.lens[coefficient::C1].modulus;
    return {middle - reach, middle + reach};
}

/// Bands of the search, parts of the resolution.
constexpr double bands[] = {1.0 / 3, 2.0 / 3, 1};

/// The sharpest values of C1 in the lowest band.
void amplitude_search::scan()
{
    constexpr int most = 400;
    constexpr std::size_t keep = 3;
    const double band = bands[0] * resolution_;
    const search_range within = range();
    const band_model low = model(band, {{coefficient::C1}});
    const double step = std::max(defocus_step(band), (within.highest - within.lowest) / most);
    const int count = std::max(static_cast<int>((within.highest - within.lowest) / step), 2) + 1;
    foci_.assign(static_cast<std::size_t>(count), {{task_.start.lens}});
    for (int i = 0; i < count; ++i)
        foci_[static_cast<std::size_t>(i)].lens[coefficient::C1].modulus =
            within.lowest + (within.highest - within.lowest) * i / (count - 1);
    measure(low, foci_);
    std::vector<candidate> peaks;
    for (std::size_t i = 0; i < foci_.size(); ++i) {
        const bool is_peak = (i == 0 || foci_[i].value <= foci_[i - 1].value) &&
                             (i + 1 == foci_.size() || foci_[i].value <= foci_[i + 1].value);
        if (is_peak) peaks.push_back(foci_[i]);
    }
    std::ranges::stable_sort(foci_, {}, &candidate::value);
    std::ranges::stable_sort(peaks, {}, &candidate::value);
    result_.prominence = foci_.front().value / foci_[foci_.size() / 2].value;
    if (peaks.size() > keep) peaks.resize(keep);
    foci_ = std::move(peaks);
    lens::optics shown = task_.start;
    shown.lens = static_cast<const lens::aberrations&>(foci_.front().lens);
    run_.show(shown);
}

/// The sharpness of each of them, on all threads.
void amplitude_search::measure(const band_model& band, std::vector<candidate>& places)
{
    constexpr std::size_t chunks = 16;
    const bool goes_on = run_.for_each(chunks, [&](std::size_t chunk) {
        sharpness sharp{run_, band};
        for (std::size_t i = chunk; i < places.size(); i += chunks)
            places[i].value = -sharp(band.variables_of(places[i].lens));
    });
    if (!goes_on) throw search_stopped{};
}

/// With astigmatism, the sharpest defocus may be one where edges of one direction only are in focus. This is a maximum
/// in all unknowns, too, but a wrong one. So starts are added that keep this direction in focus and bring the others
/// there, and starts with astigmatism only, for defoci between both.
void amplitude_search::add_line_foci()
{
    constexpr double sizes[] = {1, 2, 3, 4, 6, 8, 10, 12};
    constexpr int directions = 12;
    constexpr std::size_t keep = 12;
    const double step = defocus_step(bands[0] * resolution_);
    const bool moves = unknowns_.front().which == coefficient::C1;
    std::vector<candidate> more = foci_;
    for (const candidate& focus : foci_)
        for (const double size : sizes)
            for (int turn = 0; turn < directions; ++turn)
                for (const double change : {0.0, -size * step, size * step}) {
                    if (change != 0 && !moves) continue;
                    const auto a1 = std::polar(size * step, 2 * std::numbers::pi * turn / directions);
                    candidate next = focus;
                    next.lens[coefficient::C1].modulus += change;
                    add_to(next.lens, {coefficient::A1, unknown::part::real}, a1.real());
                    add_to(next.lens, {coefficient::A1, unknown::part::imaginary}, a1.imag());
                    more.push_back(next);
                }
    const band_model low = model(bands[0] * resolution_, unknowns_);
    measure(low, more);
    std::ranges::stable_sort(more, {}, &candidate::value);
    join_close(low, more, 0.7, keep);
    foci_ = std::move(more);
}

/// The maximum near a start. step  of C1 and A1 to begin with [nm]
imaging amplitude_search::sharpest_near(const band_model& band, const imaging& start, double step, int part) const
{
    constexpr search_limits limits{2e-3, 0, 100};
    std::vector<double> first_step;
    for (std::size_t i = 0; i < unknowns_.size(); ++i) {
        std::vector<double> axis(unknowns_.size());
        axis[i] = step;
        first_step.push_back(std::abs(band.to_variables(axis)[i]));
    }
    sharpness sharp{run_, band};
    const auto function = [&](std::span<const double> at, std::span<double>) { return -sharp(at, part); };
    const minimum best = descend_without_gradient(function, band.variables_of(start), first_step, limits);
    if (best.stopped) throw search_stopped{};
    return band.imaging_at(best.at);
}

/// Takes the foci to the nearest maxima, in growing bands.
void amplitude_search::climb()
{
    constexpr std::size_t keep[] = {6, 4, 3};
    for (std::size_t i = 0; i < std::size(bands); ++i) {
        const band_model band = model(bands[i] * resolution_, unknowns_);
        const double step = defocus_step(bands[i] * resolution_);
        const bool goes_on = run_.for_each(foci_.size(), [&](std::size_t item) {
            foci_[item].lens = sharpest_near(band, foci_[item].lens, step, sharpness::whole);
        });
        if (!goes_on) throw search_stopped{};
        measure(band, foci_);
        std::ranges::stable_sort(foci_, {}, &candidate::value);
        join_close(band, foci_, 0.5, keep[i]);
        lens::optics shown = task_.start;
        shown.lens = static_cast<const lens::aberrations&>(foci_.front().lens);
        run_.show(shown);
    }
    result_.lens = static_cast<const lens::aberrations&>(foci_.front().lens);
    result_.tolerance = 2 * defocus_step(bands[0] * resolution_);
    const search_range all = range();
    const double c1 = result_.lens[coefficient::C1].modulus, margin = result_.tolerance / 2;
    if (unknowns_.front().which == coefficient::C1)
        result_.is_at_end = c1 < all.lowest + margin || c1 > all.highest - margin;
}

/// How the foci of the quarters agree, and the covariance by the tiles of the wave.
void amplitude_search::judge()
{
    const band_model band = model(resolution_, unknowns_);
    std::vector<imaging> found(4);
    const bool goes_on = run_.for_each(found.size(), [&](std::size_t quarter) {
        found[quarter] = sharpest_near(band, foci_.front().lens, 2 * defocus_step(resolution_),
                                       static_cast<int>(sharpness::first_quarter + quarter));
    });
    if (!goes_on) throw search_stopped{};
    const imaging& best = foci_.front().lens;
    for (const imaging& there : found) {
        const double off = there[coefficient::C1].modulus - best[coefficient::C1].modulus;
        const auto a1 = there.in_nanometres(coefficient::A1) - best.in_nanometres(coefficient::A1);
        if (std::abs(off) < result_.tolerance && std::abs(a1) < result_.tolerance) ++result_.agreeing;
    }
    judge_rivals(band);
    judge_maximum(band);
}

/// The sharpest focus may be a wrong one in the same way everywhere, such as for bars of one direction. It then changes
/// with the end of the band, as it does for phase objects.
void amplitude_search::add_other_bands(const band_model& band, matrix& chi)
{
    constexpr double parts[] = {0.95, 0.9};
    const imaging& best = foci_.front().lens;
    const auto at = band.variables_of(best);
    std::vector<imaging> found(std::size(parts));
    const bool goes_on = run_.for_each(found.size(), [&](std::size_t i) {
        const band_model other = model(parts[i] * resolution_, unknowns_);
        found[i] = sharpest_near(other, best, 2 * defocus_step(resolution_), sharpness::whole);
    });
    if (!goes_on) throw search_stopped{};
    for (const imaging& there : found) {
        const auto place = band.variables_of(there);
        for (std::size_t i = 0; i < at.size(); ++i)
            for (std::size_t j = 0; j < at.size(); ++j)
                chi(i, j) += (place[i] - at[i]) * (place[j] - at[j]) / static_cast<double>(found.size());
    }
}

/// The uncertainties of the best focus.
void amplitude_search::judge_maximum(const band_model& band)
{
    sharpness sharp{run_, band};
    auto chi = covariance_at_maximum(sharp, band.variables_of(foci_.front().lens));
    result_.is_maximum = chi.has_value();
    if (!chi) return;
    add_other_bands(band, *chi);
    constexpr double left_open = 2e-3;  // by the search [rad]
    const std::size_t n = unknowns_.size();
    double sum = 0;
    for (std::size_t i = 0; i < n; ++i) sum += (*chi)(i, i) += left_open * left_open;
    result_.chi_uncertainty = std::sqrt(sum);
    const matrix back = matrix_of(n, [&](const auto& axis) { return band.to_nanometres(axis); });
    const matrix forth = matrix_of(n, [&](const auto& axis) { return band.to_variables(axis); });
    const matrix covariance = back * *chi * back.transposed();
    for (std::size_t k = 0; k < n; ++k) {
        const double deviation = std::sqrt(covariance(k, k));
        double squares = 0;
        for (std::size_t i = 0; i < n; ++i) squares += forth(i, k) * forth(i, k);
        if (unknowns_[k].which == coefficient::C1) {
            result_.c1_uncertainty = deviation;
            continue;
        }
        result_.a1_chi = std::max(result_.a1_chi, deviation * std::sqrt(squares));
        if (unknowns_[k].what == unknown::part::real)
            result_.a1_uncertainty.real(deviation);
        else
            result_.a1_uncertainty.imag(deviation);
    }
}

/// Whether the best focus is sharper than the others in all quarters, by Student's t: a mean of four differences is
/// positive with a probability of 99 % from 4.5 of its standard deviations on.
void amplitude_search::judge_rivals(const band_model& band)
{
    constexpr double clear = 4.5;
    constexpr int quarters[] = {sharpness::first_quarter, sharpness::first_quarter + 1, sharpness::first_quarter + 2,
                                sharpness::first_quarter + 3};
    sharpness sharp{run_, band};
    const auto best = sharp.at(band.variables_of(foci_.front().lens), quarters);
    for (std::size_t i = 1; i < foci_.size(); ++i) {
        const auto other = sharp.at(band.variables_of(foci_[i].lens), quarters);
        double sum = 0, squares = 0;
        for (std::size_t part = 0; part < best.size(); ++part) {
            const double ahead = best[part] - other[part];
            sum += ahead / 4;
            squares += ahead * ahead;
        }
        const double deviation = std::sqrt(std::max(squares - 4 * sum * sum, 0.0) / 3) / 2;
        if (!(sum > clear * deviation)) result_.has_rival = true;
    }
}

}  // namespace

std::optional<amplitude_solution> search_amplitude_object(search_run& run, const search_task& task)
{
    return amplitude_search{run, task}.search();
}

}  // namespace zentrix::host
