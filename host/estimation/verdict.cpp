#include "host/estimation/verdict.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "lens/aberration_basis.h"

namespace zentrix::host {

namespace {

/// Largest uncertainties with which a coefficient counts as determined: of chi from all of them together, and from one
/// alone. The second is larger, because neighbours such as C1 and C3 make up for each other. [rad rms]
constexpr double largest_together = 0.055, largest_alone = 0.35;
/// The same of chi from all of them together with what a wrong envelope and the end of the band add.
constexpr double largest_with_shifts = 0.1;
/// The same for an amplitude object, from C1 alone, and for A1 from both.
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
    if (!found.even_doubt.empty()) return found.even_doubt;
    return found.has_signal ? "" : "the spectrum has hardly any signal above its noise";
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

constexpr char hardly[] = "the sharpness hardly depends on it";

/// Why an amplitude object's focus is not determined.
std::string doubt_of_focus(const estimate& result, const amplitude_solution& found)
{
    constexpr double least_prominence = 1.05, least_contrast = 1.3;
    if (auto doubt = doubt_of_noise(result.noise); !doubt.empty()) return doubt;
    if (found.is_at_end) return "the sharpest focus is at the end of the range";
    if (found.prominence < least_prominence) return "no focus is clearly sharper than others";
    if (!found.is_maximum) return "the sharpness has no maximum";
    if (found.contrast_in_focus < least_contrast)
        return "the modulus does not vary more in focus than elsewhere: the object does not change the amplitude only";
    if (found.has_rival) return "another focus is as sharp";
    if (found.agreeing < 4) return "parts of the wave are sharpest at different foci";
    if (!(found.c1_chi < largest_of_focus)) return hardly;
    return "";
}

}  // namespace

bool changes_phase_only(const phase_solution& found) { return found.misfit <= largest_misfit; }

void judge(estimate& result, const phase_solution& found)
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

void judge(estimate& result, const lens::optics& setup, const amplitude_solution& found)
{
    result.object = specimen_kind::amplitude;
    result.criterion = "greatest sharpness: Tamura's coefficient of the gradient of the modulus";
    result.resolution = found.resolution;
    result.starts = 4;  // quarters
    result.agreeing = found.agreeing;
    const bool knows_astigmatism = found.a1_chi < largest_with_shifts && found.chi_uncertainty < largest_of_focus;
    result.chi_uncertainty = knows_astigmatism ? found.chi_uncertainty : found.c1_chi;
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
        if (one.reason.empty() && is_astigmatism && !knows_astigmatism) one.reason = hardly;
        one.determined = one.reason.empty();
        if (one.determined) result.setup.lens[one.which] = one.value = one.found;
    }
}

}  // namespace zentrix::host
