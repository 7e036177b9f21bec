#include "host/estimation/amplitude_foci.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/estimation/sharpness.h"

namespace zentrix::host {

namespace {

using lens::coefficient;

class focus_search
{
  public:
    focus_search(search_run& run, const search_task& task, const std::vector<unknown>& unknowns)
        : run_{run}, task_{task}, unknowns_{unknowns}, resolution_{task.spectrum.edge_resolution}
    {}

    amplitude_foci search()
    {
        found_.best.push_back({{task_.start.lens}});
        if (finds_defocus()) scan();
        if (unknowns_.back().which == coefficient::A1) add_line_foci();
        climb();
        return found_;
    }

  private:
    bool finds_defocus() const { return unknowns_.front().which == coefficient::C1; }
    band_model model(double band, const std::vector<unknown>& unknowns) const
    {
        return task_.model_up_to(band, {task_.start.lens}, unknowns);
    }
    search_range range() const;
    void scan();
    void measure(const band_model& band, std::vector<candidate>& places);
    void add_line_foci();
    void climb();
    void show_best();

    search_run& run_;
    const search_task& task_;
    const std::vector<unknown>& unknowns_;
    double resolution_;
    amplitude_foci found_;
};

/// By default up to the defocus that spreads the highest frequency over half of the wave.
search_range focus_search::range() const
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
void focus_search::scan()
{
    constexpr int most = 4000;
    constexpr std::size_t keep = 3;
    const double band = bands[0] * resolution_;
    const search_range within = range();
    const band_model low = model(band, {{coefficient::C1}});
    const double step = task_.defocus_step(band);
    task_.check_range(step, most);
    const int count = std::max(static_cast<int>((within.highest - within.lowest) / step), 2) + 1;
    found_.best.assign(static_cast<std::size_t>(count), {{task_.start.lens}});
    for (int i = 0; i < count; ++i)
        found_.best[static_cast<std::size_t>(i)].lens[coefficient::C1].modulus =
            within.lowest + (within.highest - within.lowest) * i / (count - 1);
    measure(low, found_.best);
    std::vector<candidate> peaks;
    for (std::size_t i = 0; i < found_.best.size(); ++i) {
        const bool is_peak = (i == 0 || found_.best[i].value <= found_.best[i - 1].value) &&
                             (i + 1 == found_.best.size() || found_.best[i].value <= found_.best[i + 1].value);
        if (is_peak) peaks.push_back(found_.best[i]);
    }
    std::ranges::stable_sort(found_.best, {}, &candidate::value);
    std::ranges::stable_sort(peaks, {}, &candidate::value);
    found_.prominence = found_.best.front().value / found_.best[found_.best.size() / 2].value;
    if (peaks.size() > keep) peaks.resize(keep);
    found_.best = std::move(peaks);
    show_best();
}

/// The sharpness of each of them, on all threads.
void focus_search::measure(const band_model& band, std::vector<candidate>& places)
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
void focus_search::add_line_foci()
{
    constexpr double sizes[] = {1, 2, 3, 4, 6, 8, 10, 12};
    constexpr int directions = 12;
    constexpr std::size_t keep = 12;
    const double step = task_.defocus_step(bands[0] * resolution_);
    const bool moves = finds_defocus();
    std::vector<candidate> more = found_.best;
    for (const candidate& focus : found_.best)
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
    found_.best = std::move(more);
}

/// Takes the foci to the nearest maxima, in growing bands.
void focus_search::climb()
{
    constexpr std::size_t keep[] = {6, 4, 3};
    for (std::size_t i = 0; i < std::size(bands); ++i) {
        const band_model band = model(bands[i] * resolution_, unknowns_);
        const double step = task_.defocus_step(bands[i] * resolution_);
        const bool goes_on = run_.for_each(found_.best.size(), [&](std::size_t item) {
            found_.best[item].lens = sharpest_near(run_, band, found_.best[item].lens, step);
        });
        if (!goes_on) throw search_stopped{};
        measure(band, found_.best);
        std::ranges::stable_sort(found_.best, {}, &candidate::value);
        join_close(band, found_.best, 0.5, keep[i]);
        show_best();
    }
    found_.tolerance = 2 * task_.defocus_step(bands[0] * resolution_);
    const search_range all = range();
    const double c1 = found_.best.front().lens[coefficient::C1].modulus, margin = found_.tolerance / 2;
    if (finds_defocus()) found_.is_at_end = c1 < all.lowest + margin || c1 > all.highest - margin;
}

void focus_search::show_best()
{
    lens::optics shown = task_.start;
    shown.lens = static_cast<const lens::aberrations&>(found_.best.front().lens);
    run_.show(shown);
}

}  // namespace

amplitude_foci search_amplitude_foci(search_run& run, const search_task& task, const std::vector<unknown>& unknowns)
{
    return focus_search{run, task, unknowns}.search();
}

}  // namespace zentrix::host
