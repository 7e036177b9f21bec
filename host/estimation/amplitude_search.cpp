#include "host/estimation/amplitude_search.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "lens/wave_criteria.h"

namespace zentrix::host {

namespace {

using lens::coefficient;

/// Sharpness as a function of the variables of a model, of the whole wave or of one of its quarters.
class sharpness
{
  public:
    enum area
    {
        whole,
        first_quarter,
        areas = first_quarter + 4
    };

    sharpness(search_run& run, const band_model& model) : run_{&run}, model_{&model}, evaluate_{model}
    {
        for (int part = whole; part < areas; ++part) weights_.push_back(weights_of(model, part));
    }

    double operator()(std::span<const double> variables, int part = whole)
    {
        return at(variables, std::span{&part, 1})[0];
    }

    /// For several areas; costs one transform.
    std::vector<double> at(std::span<const double> variables, std::span<const int> of)
    {
        run_->evaluated();
        const auto& wave = evaluate_.wave_at(variables);
        std::vector<double> result;
        for (const int part : of)
            result.push_back(lens::tamura_of_gradient(
                {wave.data(), weights_[static_cast<std::size_t>(part)].data(), wave.size()},
                static_cast<std::size_t>(model_->width()), static_cast<std::size_t>(model_->height())));
        return result;
    }

  private:
    static std::vector<float> weights_of(const band_model& model, int part)
    {
        std::vector<float> weights{model.weights().begin(), model.weights().end()};
        if (part == whole) return weights;
        const int column = (part - first_quarter) % 2, row = (part - first_quarter) / 2;
        double sum = 0;
        for (std::ptrdiff_t y = 0; y < model.height(); ++y)
            for (std::ptrdiff_t x = 0; x < model.width(); ++x) {
                float& weight = weights[static_cast<std::size_t>(y * model.width() + x)];
                if (2 * x / model.width() != column || 2 * y / model.height() != row) weight = 0;
                sum += double{weight};
            }
        for (float& weight : weights) weight = static_cast<float>(weight / sum);
        return weights;
    }

    search_run* run_;
    const band_model* model_;
    band_evaluator evaluate_;
    std::vector<std::vector<float>> weights_;
};

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
        if (unknowns_.front().which == coefficient::C1) scan();
        refine();
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
    void refine();
    void judge(const band_model& band, const std::vector<imaging>& found);

    search_run& run_;
    const search_task& task_;
    double resolution_;
    std::vector<unknown> unknowns_;
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

/// The sharpest C1 in a band of a third, then nearby in bands of two thirds and the whole.
void amplitude_search::scan()
{
    constexpr double bands[] = {1.0 / 3, 2.0 / 3, 1};
    constexpr int most = 400, around = 6;
    search_range within = range();
    const search_range all = within;
    for (const double part : bands) {
        const band_model band = model(part * resolution_, {{coefficient::C1}});
        const double step = std::max(defocus_step(part * resolution_), (within.highest - within.lowest) / most);
        const int count = std::max(static_cast<int>((within.highest - within.lowest) / step), 2) + 1;
        std::vector<double> places, values(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            places.push_back(within.lowest + (within.highest - within.lowest) * i / (count - 1));
        const std::size_t chunks = 16;
        const bool goes_on = run_.for_each(chunks, [&](std::size_t chunk) {
            sharpness sharp{run_, band};
            for (std::size_t i = chunk; i < places.size(); i += chunks) {
                imaging lens{task_.start.lens};
                lens[coefficient::C1].modulus = places[i];
                values[i] = sharp(band.variables_of(lens));
            }
        });
        if (!goes_on) throw search_stopped{};
        const auto best = static_cast<std::size_t>(std::ranges::max_element(values) - values.begin());
        result_.lens[coefficient::C1].modulus = places[best];
        lens::optics shown = task_.start;
        shown.lens = result_.lens;
        run_.show(shown);
        if (part == bands[0]) {
            result_.is_at_end = best < 2 || best + 2 >= places.size();
            auto sorted = values;
            std::ranges::sort(sorted);
            result_.prominence = sorted.back() / sorted[sorted.size() / 2];
            result_.tolerance = 2 * step;
        }
        within = {std::max(places[best] - around * step, all.lowest),
                  std::min(places[best] + around * step, all.highest)};
        within.highest = std::max(within.highest, within.lowest + step);
    }
}

/// All unknowns together, for the whole wave and for its quarters, whose scatter is the uncertainty.
void amplitude_search::refine()
{
    const band_model band = model(resolution_, unknowns_);
    if (result_.tolerance == 0) result_.tolerance = 2 * defocus_step(resolution_ / 3);
    imaging start{result_.lens};
    const auto from = band.variables_of(start);
    const double step = 2 * defocus_step(resolution_);
    std::vector<double> first_step;
    for (std::size_t i = 0; i < unknowns_.size(); ++i) {
        std::vector<double> axis(unknowns_.size());
        axis[i] = step;
        first_step.push_back(std::abs(band.to_variables(axis)[i]));
    }
    std::vector<imaging> found(sharpness::areas);
    const bool goes_on = run_.for_each(found.size(), [&](std::size_t part) {
        sharpness sharp{run_, band};
        const auto function = [&](std::span<const double> at, std::span<double>) {
            return -sharp(at, static_cast<int>(part));
        };
        const minimum best = descend_without_gradient(function, from, first_step, {1e-2, 0, 80});
        found[part] = band.imaging_at(best.at);
    });
    if (!goes_on) throw search_stopped{};
    result_.lens = found[sharpness::whole];
    judge(band, found);
}

/// The uncertainties by the quarters of the wave, and how many of these agree.
void amplitude_search::judge(const band_model& band, const std::vector<imaging>& found)
{
    const auto at = band.variables_of({result_.lens});
    double chi = 0;
    for (std::size_t part = sharpness::first_quarter; part < found.size(); ++part) {
        const auto there = band.variables_of(found[part]);
        for (std::size_t i = 0; i < at.size(); ++i) chi += (there[i] - at[i]) * (there[i] - at[i]);
    }
    double c1 = 0, real = 0, imaginary = 0;
    const auto centre = result_.lens.in_nanometres(coefficient::A1);
    for (std::size_t part = sharpness::first_quarter; part < found.size(); ++part) {
        const double off = found[part][coefficient::C1].modulus - result_.lens[coefficient::C1].modulus;
        const auto a1 = found[part].in_nanometres(coefficient::A1) - centre;
        if (std::abs(off) < result_.tolerance && std::abs(a1) < result_.tolerance) ++result_.agreeing;
        c1 += off * off;
        real += a1.real() * a1.real();
        imaginary += a1.imag() * a1.imag();
    }
    // The mean of four values that scatter by s is sure to s / 2; their scatter itself is known to a third only, which
    // widens the interval of 68 % by a fifth (Student's t with three degrees of freedom).
    const auto deviation = [](double squares) { return 1.2 * std::sqrt(squares / 3) / 2; };
    result_.c1_uncertainty = deviation(c1);
    result_.a1_uncertainty = {deviation(real), deviation(imaginary)};
    result_.chi_uncertainty = deviation(chi);
}

}  // namespace

std::optional<amplitude_solution> search_amplitude_object(search_run& run, const search_task& task)
{
    return amplitude_search{run, task}.search();
}

}  // namespace zentrix::host
