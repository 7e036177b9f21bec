#include "host/estimation/estimate.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <stdexcept>

#include "host/estimation/amplitude_search.h"
#include "host/estimation/phase_search.h"
#include "host/estimation/search_run.h"
#include "host/estimation/verdict.h"
#include "host/estimation/wave_spectrum.h"

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
        judge(result, *found);
        if (object == specimen_kind::phase || changes_phase_only(*found)) return true;
    }
    const auto found = search_amplitude_object(run, task);
    if (!found) return false;
    estimate focus = result;
    judge(focus, task.start, *found);
    if (focus.any_determined() || object == specimen_kind::amplitude) result = focus;
    return true;
}

}  // namespace

std::string_view name_of(specimen_kind kind)
{
    return kind == specimen_kind::phase ? "phase" : kind == specimen_kind::amplitude ? "amplitude" : "auto";
}

specimen_kind specimen_named(std::string_view name)
{
    for (const auto kind : {specimen_kind::phase, specimen_kind::amplitude})
        if (name == name_of(kind)) return kind;
    return specimen_kind::automatic;
}

bool estimate::all_determined() const { return std::ranges::all_of(coefficients, &estimated_coefficient::determined); }
bool estimate::any_determined() const { return std::ranges::any_of(coefficients, &estimated_coefficient::determined); }

estimate estimate_aberrations(const image& wave, const lens::optics& setup, const estimate_options& options,
                              const estimate_progress& progress)
{
    const auto start = std::chrono::steady_clock::now();
    check(wave, setup, options);
    const pixel_region region = checked_region(wave, options);
    const wave_spectrum spectrum = spectrum_of(wave, region, setup.pixel_nm);
    search_run run{progress, options.threads, setup, options.stop};

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
    } catch (const range_too_wide&) {
        throw;
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
