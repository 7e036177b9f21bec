#include "host/estimation/amplitude_search.h"

#include <algorithm>
#include <cmath>

#include "host/estimation/amplitude_certainty.h"
#include "host/estimation/amplitude_foci.h"
#include "host/estimation/minimise.h"
#include "host/estimation/sharpness.h"

namespace zentrix::host {

namespace {

using lens::coefficient;

/// Adds a difference of two points to a covariance as one that was seen.
void add_square(matrix& covariance, std::span<const double> a, std::span<const double> b, double weight)
{
    for (std::size_t i = 0; i < a.size(); ++i)
        for (std::size_t j = 0; j < a.size(); ++j) covariance(i, j) += (b[i] - a[i]) * (b[j] - a[j]) * weight;
}

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
        found_ = search_amplitude_foci(run_, task_, unknowns_);
        result_.lens = static_cast<const lens::aberrations&>(best());
        result_.prominence = found_.prominence;
        result_.is_at_end = found_.is_at_end;
        judge();
        return result_;
    } catch (const search_stopped&) {
        return std::nullopt;
    }

  private:
    const imaging& best() const { return found_.best.front().lens; }
    band_model model_up_to(double band) const { return task_.model_up_to(band, {task_.start.lens}, unknowns_); }
    double step() const { return 2 * task_.defocus_step(resolution_); }
    void judge();
    double contrast_in_focus() const;
    void judge_rivals(const band_model& band);
    void judge_maximum(const band_model& band);
    void add_other_bands(const band_model& band, matrix& chi);
    void add_other_criterion(const band_model& band, matrix& chi);

    search_run& run_;
    const search_task& task_;
    double resolution_;
    std::vector<unknown> unknowns_;
    amplitude_foci found_;
    amplitude_solution result_;
};

/// How the foci of the quarters agree, and the covariance by the tiles of the wave.
void amplitude_search::judge()
{
    const band_model band = model_up_to(resolution_);
    std::vector<imaging> found(4);
    const bool goes_on = run_.for_each(found.size(), [&](std::size_t quarter) {
        found[quarter] =
            sharpest_near(run_, band, best(), step(), static_cast<int>(sharpness::first_quarter + quarter));
    });
    if (!goes_on) throw search_stopped{};
    for (const imaging& there : found) {
        const double off = there[coefficient::C1].modulus - best()[coefficient::C1].modulus;
        const auto a1 = there.in_nanometres(coefficient::A1) - best().in_nanometres(coefficient::A1);
        if (std::abs(off) < found_.tolerance && std::abs(a1) < found_.tolerance) ++result_.agreeing;
    }
    result_.contrast_in_focus = contrast_in_focus();
    judge_rivals(band);
    judge_maximum(band);
}

/// In focus, all that an amplitude object scatters changes the modulus; far from focus half of it does.
double amplitude_search::contrast_in_focus() const
{
    constexpr double steps[] = {-40, -20, -10, 10, 20, 40};
    const band_model band = task_.model_up_to(resolution_, best(), {{coefficient::C1}});
    band_evaluator evaluate{band};
    const double noise = band.noise_variance() * band.filled();
    const auto contrast = [&](const imaging& lens) {
        run_.evaluated();
        return evaluate(criterion::modulus_variance, band.variables_of(lens), {}) - noise;
    };
    double elsewhere = 0;
    for (const double steps_away : steps) {
        imaging away = best();
        away[coefficient::C1].modulus += steps_away * step();
        elsewhere += contrast(away) / static_cast<double>(std::size(steps));
    }
    return elsewhere > 0 ? contrast(best()) / elsewhere : 0;
}

/// The sharpest focus may be a wrong one in the same way everywhere, such as for bars of one direction. It then changes
/// with the end of the band, as it does for phase objects.
void amplitude_search::add_other_bands(const band_model& band, matrix& chi)
{
    constexpr double parts[] = {0.95, 0.9};
    const auto at = band.variables_of(best());
    std::vector<imaging> found(std::size(parts));
    const bool goes_on = run_.for_each(found.size(), [&](std::size_t i) {
        const band_model other = model_up_to(parts[i] * resolution_);
        found[i] = sharpest_near(run_, other, best(), step());
    });
    if (!goes_on) throw search_stopped{};
    for (const imaging& there : found)
        add_square(chi, at, band.variables_of(there), 1 / static_cast<double>(found.size()));
}

/// Where the band ends sharply, some astigmatism may weaken the rings along edges and so be sharpest. The modulus of an
/// amplitude object varies most in focus, rings or not.
void amplitude_search::add_other_criterion(const band_model& band, matrix& chi)
{
    band_evaluator evaluate{band};
    const auto at = band.variables_of(best());
    const auto negative_variance = [&](std::span<const double> place, std::span<double> gradient) {
        run_.evaluated();
        const double value = evaluate(criterion::modulus_variance, place, gradient);
        for (double& one : gradient) one = -one;
        return -value;
    };
    const minimum found = descend(negative_variance, at, {2e-3, 0, 100});
    if (found.stopped) throw search_stopped{};
    add_square(chi, at, found.at, 1);
}

/// The uncertainties of the best focus.
void amplitude_search::judge_maximum(const band_model& band)
{
    sharpness sharp{run_, band};
    auto chi = covariance_at_maximum(sharp, band.variables_of(best()));
    result_.is_maximum = chi.has_value();
    if (!chi) return;
    add_other_bands(band, *chi);
    add_other_criterion(band, *chi);
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
            result_.c1_chi = deviation * std::sqrt(squares);
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
    const auto here = sharp.at(band.variables_of(best()), quarters);
    for (std::size_t i = 1; i < found_.best.size(); ++i) {
        const auto other = sharp.at(band.variables_of(found_.best[i].lens), quarters);
        double sum = 0, squares = 0;
        for (std::size_t part = 0; part < here.size(); ++part) {
            const double ahead = here[part] - other[part];
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
