#include "host/estimation/certainty.h"

#include <algorithm>
#include <cmath>

#include "host/estimation/search_task.h"

namespace zentrix::host {

namespace {

constexpr std::ptrdiff_t tiles = 8;  // along each axis

struct derivatives
{
    std::vector<double> first;  ///< of the deciding criteria
    matrix second;
    double variance, skewness;
};

/// The derivatives at a point, the second ones by central differences.
derivatives derive(search_run& run, band_evaluator& evaluate, const deciding& decides, const std::vector<double>& at)
{
    const std::size_t n = at.size();
    std::vector<double> variance(n), skewness(n);
    const bool needs_skewness = std::ranges::find(decides, criterion::phase_skewness) != decides.end();
    const auto gradient_at = [&](const std::vector<double>& place) {
        run.evaluated();
        band_evaluator::values values{};
        if (needs_skewness)
            values = evaluate.both(place, variance, skewness);
        else
            values.variance = evaluate(criterion::modulus_variance, place, variance);
        std::vector<double> chosen(n);
        for (std::size_t i = 0; i < n; ++i)
            chosen[i] = decides[i] == criterion::modulus_variance ? variance[i] : -skewness[i];
        return std::pair{chosen, values};
    };
    constexpr double step = 0.01;  // rad
    derivatives result{{}, matrix{n}, 0, 0};
    for (std::size_t j = 0; j < n; ++j) {
        auto place = at;
        place[j] = at[j] + step;
        const auto ahead = gradient_at(place).first;
        place[j] = at[j] - step;
        const auto behind = gradient_at(place).first;
        for (std::size_t i = 0; i < n; ++i) result.second(i, j) = (ahead[i] - behind[i]) / (2 * step);
    }
    const auto [first, values] = gradient_at(at);
    result.first = first;
    result.variance = values.variance;
    result.skewness = values.skewness;
    return result;
}

/// The covariance of the first derivatives from their scatter over the tiles.
matrix scatter(band_evaluator& evaluate, const deciding& decides, const std::vector<double>& at)
{
    const std::size_t n = at.size(), count = tiles * tiles;
    const auto of_variance = evaluate.tile_gradients(criterion::modulus_variance, at, tiles, tiles);
    const bool needs_skewness = std::ranges::find(decides, criterion::phase_skewness) != decides.end();
    const auto of_skewness =
        needs_skewness ? evaluate.tile_gradients(criterion::phase_skewness, at, tiles, tiles) : of_variance;
    matrix sum{n};
    for (std::size_t t = 0; t < count; ++t)
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j < n; ++j) {
                const auto part = [&](std::size_t k) {
                    return decides[k] == criterion::modulus_variance ? of_variance[t * n + k] : -of_skewness[t * n + k];
                };
                sum(i, j) += part(i) * part(j);
            }
    const double few = static_cast<double>(count) / static_cast<double>(count - n);  // the variables were fitted
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j) sum(i, j) *= few;
    return sum;
}

}  // namespace

deciding deciding_by(const band_model& model, criterion odd)
{
    deciding decides;
    for (const auto& one : model.unknowns()) decides.push_back(is_odd(one) ? odd : criterion::modulus_variance);
    return decides;
}

std::optional<stationary_point> settle(search_run& run, const band_model& model, const deciding& decides,
                                       std::vector<double> start)
try {
    band_evaluator evaluate{model};
    const std::size_t n = start.size();
    std::vector<double> at = start;
    constexpr int most_steps = 4;
    for (int step = 0; step < most_steps; ++step) {
        const derivatives here = derive(run, evaluate, decides, at);
        const auto inverse = inverse_of(here.second);
        if (!inverse) return std::nullopt;
        const auto move = *inverse * here.first;
        double length = 0, away = 0;
        for (std::size_t i = 0; i < n; ++i) {
            at[i] -= move[i];
            length += move[i] * move[i];
            away += (at[i] - start[i]) * (at[i] - start[i]);
        }
        if (!(away < 1)) return std::nullopt;
        if (length > 1e-4 && step + 1 < most_steps) continue;
        if (length > 1e-2) return std::nullopt;
        stationary_point result{at,
                                *inverse * scatter(evaluate, decides, at) * inverse->transposed(),
                                *inverse,
                                {},
                                here.variance,
                                here.skewness};
        for (std::size_t i = 0; i < n; ++i) result.is_extremum.push_back(here.second(i, i) > 0);
        return result;
    }
    return std::nullopt;
} catch (const search_stopped&) {
    return std::nullopt;
}

double superiority(band_evaluator& evaluate, const band_model& model, std::span<const double> a,
                   std::span<const double> b)
{
    // Small tiles, but larger than what one pixel of the object is blurred to by wrong coefficients.
    const std::ptrdiff_t across = std::clamp<std::ptrdiff_t>(std::min(model.width(), model.height()) / 12, 4, 16);
    const auto variances = [&](std::span<const double> at) {
        const auto& wave = evaluate.wave_at(at);
        const auto& weights = model.weights();
        double mean = 0;
        for (std::size_t i = 0; i < wave.size(); ++i) mean += double{weights[i]} * std::abs(wave[i]);
        std::vector<double> sums(static_cast<std::size_t>(across * across));
        for (std::ptrdiff_t y = 0; y < model.height(); ++y)
            for (std::ptrdiff_t x = 0; x < model.width(); ++x) {
                const auto i = static_cast<std::size_t>(y * model.width() + x);
                const double off = std::abs(wave[i]) / mean - 1;
                sums[static_cast<std::size_t>(y * across / model.height() * across + x * across / model.width())] +=
                    double{weights[i]} * off * off;
            }
        return sums;
    };
    const auto at_a = variances(a), at_b = variances(b);
    double sum = 0, squares = 0, count = 0;
    for (std::size_t t = 0; t < at_a.size(); ++t) {
        if (at_a[t] == 0 && at_b[t] == 0) continue;  // in the margin
        const double difference = at_b[t] - at_a[t];
        sum += difference;
        squares += difference * difference;
        ++count;
    }
    const double spread = squares - sum * sum / std::max(count, 1.0);
    return spread > 0 ? sum / std::sqrt(spread) : 0;
}

}  // namespace zentrix::host
