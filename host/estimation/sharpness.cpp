#include "host/estimation/sharpness.h"

#include <cmath>

#include "lens/wave_criteria.h"

namespace zentrix::host {

namespace {

std::vector<float> weights_of(const band_model& model, int part)
{
    std::vector<float> weights{model.weights().begin(), model.weights().end()};
    if (part == sharpness::whole) return weights;
    const int column = (part - sharpness::first_quarter) % 2, row = (part - sharpness::first_quarter) / 2;
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

}  // namespace

sharpness::sharpness(search_run& run, const band_model& model) : run_{&run}, model_{&model}, evaluate_{model}
{
    for (int part = whole; part < areas; ++part) weights_.push_back(weights_of(model, part));
}

std::vector<double> sharpness::at(std::span<const double> variables, std::span<const int> of)
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

std::vector<double> sharpness::influences(std::span<const double> variables, std::ptrdiff_t tiles)
{
    run_->evaluated();
    const auto& wave = evaluate_.wave_at(variables);
    const auto width = static_cast<std::size_t>(model_->width()), height = static_cast<std::size_t>(model_->height());
    const auto slopes = lens::slopes_of_modulus(wave.data(), width, height);
    const auto count = static_cast<std::size_t>(tiles);
    struct sums
    {
        double weight = 0, first = 0, second = 0;
    };
    std::vector<sums> parts(count * count);
    sums all;
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x) {
            const double weight = weights_[whole][y * width + x], slope = slopes[y * width + x];
            sums& part = parts[y * count / height * count + x * count / width];
            for (sums* const sum : {&part, &all}) {
                sum->weight += weight;
                sum->first += weight * slope;
                sum->second += weight * slope * slope;
            }
        }
    // T = (deviation / mean)^(1/2) of the first two moments
    const double mean = all.first, variance = all.second - mean * mean;
    std::vector<double> result;
    if (!(mean > 0) || !(variance > 0)) return std::vector<double>(parts.size());
    const double value = std::sqrt(std::sqrt(variance) / mean);
    const double by_second = value / (4 * variance), by_first = -value * (mean / (2 * variance) + 1 / (2 * mean));
    for (const sums& part : parts)
        result.push_back(by_first * (part.first - part.weight * all.first) +
                         by_second * (part.second - part.weight * all.second));
    return result;
}

imaging sharpest_near(search_run& run, const band_model& band, const imaging& start, double step, int part)
{
    constexpr search_limits limits{2e-3, 0, 100};
    std::vector<double> first_step;
    for (std::size_t i = 0; i < band.variables(); ++i) {
        std::vector<double> axis(band.variables());
        axis[i] = step;
        first_step.push_back(std::abs(band.to_variables(axis)[i]));
    }
    sharpness sharp{run, band};
    const auto function = [&](std::span<const double> at, std::span<double>) { return -sharp(at, part); };
    const minimum best = descend_without_gradient(function, band.variables_of(start), first_step, limits);
    if (best.stopped) throw search_stopped{};
    return band.imaging_at(best.at);
}

}  // namespace zentrix::host
