#include "host/estimation/estimate.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <stdexcept>

#include "host/estimation/amplitude_search.h"
#include "host/estimation/phase_search.h"
#include "host/estimation/search_run.h"
#include "host/estimation/wave_spectrum.h"
#include "lens/aberration_basis.h"

namespace zentrix::host {

namespace {

void require(bool holds, const std::string& text)
{
    if (!holds) throw std::invalid_argument{text};
}

pixel_region checked_region(const image& wave, const estimate_options& options)
{
    constexpr std::ptrdiff_t least = 64;
    const std::ptrdiff_t width = wave.size(0), height = wave.size(1);
    const pixel_region at = options.region.value_or(pixel_region{0, 0, width, height});
    require(
        at.x >= 0 && at.y >= 0 && at.width > 0 && at.height > 0 && at.x <= width - at.width &&
            at.y <= height - at.height,
        "The region is not within the wave of " + std::to_string(width) + " x " + std::to_string(height) + " pixels.");
    require(at.width >= least && at.height >= least, "An estimate needs at least 64 x 64 pixels.");
    return at;
}

void check(const image& wave, const lens::optics& setup, const estimate_options& options)
{
    require(wave.code() == HOST_ELEMENT_COMPLEX64 && wave.dimensions() == 2,
            "The wave is not complex in two dimensions.");
    lens::arguments_for(setup, static_cast<int>(wave.size(0)), static_cast<int>(wave.size(1)), lens::direction::remove);
    require(!options.free.empty(), "No coefficient is free.");
    for (const auto which : options.free)
        require(std::ranges::count(options.free, which) == 1,
                std::string{lens::traits(which).name} + " is free twice.");
    if (options.defocus)
        require(std::isfinite(options.defocus->lowest) && std::isfinite(options.defocus->highest) &&
                    options.defocus->lowest < options.defocus->highest,
                "The range of C1 is empty.");
}

/// Largest uncertainties with which a coefficient counts as determined: of chi from all of them together, and from one
/// alone. The second is larger, because neighbours such as C1 and C3 make up for each other. [rad rms]
constexpr double largest_together = 0.055, largest_alone = 0.35;
/// The same of chi from all of them together with what a wrong envelope and the end of the band add.
constexpr double largest_with_shifts = 0.1;
/// The same for an amplitude object, from C1 and A1 together.
constexpr double largest_of_focus = 0.2;
/// Noise of a pixel from which on a wave is refused.
constexpr double largest_noise = 0.38;
/// Share of the modulus' variance that a phase object leaves.
constexpr double largest_misfit = 0.05;

std::string doubt_of_noise(double noise)
{
    return noise > largest_noise ? "the noise is " + std::to_string(std::lround(100 * noise)) + " % of the mean modulus"
                                 : "";
}

std::string doubt_of_all(const estimate& result, const phase_solution& found)
{
    if (auto doubt = doubt_of_noise(result.noise); !doubt.empty()) return doubt;
    constexpr double least_scattered = 1e-5;
    if (found.scattered < least_scattered) return "the wave is constant";
    if (found.misfit > largest_misfit)
        return "the modulus varies at every focus: the object does not change the phase only";
    return found.even_doubt;
}

/// The sum of the variances of the odd or even variables.
double variance_of(const phase_solution& found, const matrix& covariance, bool odd)
{
    double sum = 0;
    for (std::size_t i = 0; i < found.unknowns.size(); ++i)
        if (!lens::is_even(found.unknowns[i].which) == odd && covariance.size() > i) sum += covariance(i, i);
    return sum;
}

void fill_coefficient(estimated_coefficient& one, const phase_solution& found, const std::string& doubt)
{
    const auto& about = lens::traits(one.which);
    one.reason = doubt;
    double variance = 0, components = 0, largest_chi = 0;
    for (std::size_t i = 0; i < found.unknowns.size() && i < found.covariance.size(); ++i) {
        if (found.unknowns[i].which != one.which || found.unknowns[i].what == unknown::part::contrast) continue;
        variance += found.covariance(i, i);
        ++components;
        largest_chi = std::max(largest_chi, std::sqrt(found.covariance(i, i)) * found.chi_per_unit[i]);
    }
    if (components == 0) return;
    one.uncertainty = std::sqrt(variance / components) / about.nanometres;
    if (one.reason.empty() && !(largest_chi < largest_alone)) one.reason = "the criterion hardly depends on it";
    const lens::polar& value = found.lens[one.which];
    if (about.symmetry != 0)
        one.angle_uncertainty =
            std::min(180.0, std::atan2(one.uncertainty, std::abs(value.modulus)) * 180 / std::numbers::pi);
    one.found = value;
    one.determined = one.reason.empty();
    if (one.determined) one.value = value;
}

void fill(estimate& result, const phase_solution& found)
{
    result.object = specimen_kind::phase;
    result.criterion = found.used_skewness
                           ? "least variance of the modulus; B2, A2 and other odd ones: greatest skewness of the phase"
                           : "least variance of the modulus";
    result.resolution = found.resolution;
    result.starts = found.starts;
    result.agreeing = found.agreeing;
    std::string doubt = doubt_of_all(result, found), odd_doubt = found.odd_doubt;
    double even = variance_of(found, found.chi_covariance, false), odd = variance_of(found, found.chi_covariance, true);
    constexpr char flat[] = "the criterion hardly depends on it",
                   shifted[] = "it depends on the envelope or on where the band ends";
    if (doubt.empty() && !(std::sqrt(even) < largest_together)) doubt = flat;
    if (odd_doubt.empty() && !(std::sqrt(even + odd) < largest_together)) odd_doubt = flat;
    even += variance_of(found, found.chi_of_shifts, false);
    odd += variance_of(found, found.chi_of_shifts, true);
    if (doubt.empty() && !(std::sqrt(even) < largest_with_shifts)) doubt = shifted;
    if (odd_doubt.empty() && !(std::sqrt(even + odd) < largest_with_shifts)) odd_doubt = shifted;
    for (auto& one : result.coefficients) {
        const bool is_odd = !lens::is_even(one.which);
        fill_coefficient(one, found, !doubt.empty() ? doubt : is_odd ? odd_doubt : "");
        if (one.determined) result.setup.lens[one.which] = one.value;
    }
    result.chi_uncertainty = std::sqrt(even + (odd_doubt.empty() ? odd : 0));
}

constexpr char hardly[] = "the sharpness hardly depends on it";

/// Why an amplitude object's focus is not determined.
std::string doubt_of_focus(const estimate& result, const amplitude_solution& found)
{
    constexpr double least_prominence = 1.05;
    if (auto doubt = doubt_of_noise(result.noise); !doubt.empty()) return doubt;
    if (found.is_at_end) return "the sharpest focus is at the end of the range";
    if (found.prominence < least_prominence) return "no focus is clearly sharper than others";
    if (!found.is_maximum) return "the sharpness has no maximum";
    if (found.has_rival) return "another focus is as sharp";
    if (found.agreeing < 4) return "parts of the wave are sharpest at different foci";
    if (!(found.chi_uncertainty < largest_of_focus)) return hardly;
    return "";
}

/// Returns whether anything is determined.
bool fill(estimate& result, const lens::optics& setup, const amplitude_solution& found)
{
    result.object = specimen_kind::amplitude;
    result.criterion = "greatest sharpness: Tamura's coefficient of the gradient of the modulus";
    result.resolution = found.resolution;
    result.starts = 4;  // quarters
    result.agreeing = found.agreeing;
    result.chi_uncertainty = found.chi_uncertainty;
    result.setup = setup;
    const std::string doubt = doubt_of_focus(result, found);
    for (auto& one : result.coefficients) {
        const bool is_focus = one.which == lens::coefficient::C1, is_astigmatism = one.which == lens::coefficient::A1;
        one.value = setup.lens[one.which];
        one.found = found.lens[one.which];
        one.uncertainty = is_focus         ? found.c1_uncertainty
                          : is_astigmatism ? std::sqrt(std::norm(found.a1_uncertainty) / 2)
                                           : 0;
        one.angle_uncertainty =
            is_astigmatism ? std::min(180.0, std::atan2(one.uncertainty, one.found.modulus) * 180 / std::numbers::pi)
                           : 0;
        one.reason = doubt;
        if (!is_focus && !is_astigmatism) one.reason = "the sharpness of an amplitude object shows C1 and A1 only";
        if (one.reason.empty() && is_astigmatism && !(found.a1_chi < largest_with_shifts)) one.reason = hardly;
        one.determined = one.reason.empty();
        if (one.determined) result.setup.lens[one.which] = one.value = one.found;
    }
    return result.any_determined();
}

void mark_stopped(estimate& result, const lens::optics& setup)
{
    result.stopped = true;
    result.setup = setup;
    for (auto& one : result.coefficients) {
        one.value = setup.lens[one.which];
        one.determined = false;
        one.reason = "the search was stopped";
    }
}

/// Returns false if the search was stopped.
bool search(estimate& result, search_run& run, const search_task& task, specimen_kind object)
{
    if (object != specimen_kind::amplitude) {
        const auto found = search_phase_object(run, task);
        if (!found) return false;
        fill(result, *found);
        if (object == specimen_kind::phase || found->misfit <= largest_misfit) return true;
    }
    const auto found = search_amplitude_object(run, task);
    if (!found) return false;
    estimate focus = result;
    if (fill(focus, task.start, *found) || object == specimen_kind::amplitude) result = focus;
    return true;
}

}  // namespace

bool estimate::any_determined() const { return std::ranges::any_of(coefficients, &estimated_coefficient::determined); }

estimate estimate_aberrations(const image& wave, const lens::optics& setup, const estimate_options& options,
                              const estimate_progress& progress)
{
    const auto start = std::chrono::steady_clock::now();
    check(wave, setup, options);
    const pixel_region region = checked_region(wave, options);
    const wave_spectrum spectrum = spectrum_of(wave, region, setup.pixel_nm);
    search_run run{progress, options.threads, setup};

    estimate result;
    result.setup = setup;
    auto sorted = options.free;
    std::ranges::sort(sorted);
    for (const auto which : sorted) {
        estimated_coefficient one{};
        one.which = which;
        one.value = setup.lens[which];
        result.coefficients.push_back(one);
    }
    result.noise = spectrum.noise;
    const search_task task{spectrum, setup, sorted, options.defocus, options.widths_are_known};
    try {
        if (!search(result, run, task, options.object)) mark_stopped(result, setup);
    } catch (const std::invalid_argument& problem) {
        throw std::invalid_argument{"The search comes to impossible coefficients (" + std::string{problem.what()} +
                                    ") Check the units of wavelength, pixel size and range: nm."};
    }
    if (progress && !result.stopped) progress(1, result.setup);
    result.evaluations = run.evaluations();
    result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return result;
}

}  // namespace zentrix::host
