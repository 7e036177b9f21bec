#include <algorithm>
#include <cmath>

#include "host/estimation/band_model.h"
#include "host/estimation/phase_factor.h"
#include "lens/wave_criteria.h"

namespace zentrix::host {

namespace {

/// Values that are worked on at a time, so that they stay in the cache.
constexpr std::size_t block = 1024;

/// The sum of a[i] * b[i].
double inner_product(const float* a, const float* b, std::size_t count)
{
    constexpr std::size_t lanes = 16;
    float sums[lanes] = {};
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane) sums[lane] += a[i + lane] * b[i + lane];
    double total = 0;
    for (const float sum : sums) total += double{sum};
    for (; i < count; ++i) total += double{a[i] * b[i]};
    return total;
}

}  // namespace

band_evaluator::band_evaluator(const band_model& model)
    : model_{&model},
      transform_{model.width_, model.height_},
      turned_(model.spectrum_.size()),
      wave_(static_cast<std::size_t>(model.width_ * model.height_)),
      slope_(wave_.size()),
      scratch_(std::max(block, model.spectrum_.size()))
{}

/// The spectrum of the band times exp(i chi).
void band_evaluator::turn_spectrum(std::span<const double> variables)
{
    const std::size_t count = turned_.size();
    for (std::size_t first = 0; first < count; first += block) {
        const std::size_t length = std::min(block, count - first);
        float* const chi = scratch_.data();
        std::fill_n(chi, length, 0.0F);
        for (std::size_t j = 0; j < variables.size(); ++j) {
            const float* const basis = model_->basis_.data() + j * count + first;
            const auto factor = static_cast<float>(variables[j]);
            for (std::size_t k = 0; k < length; ++k) chi[k] += factor * basis[k];
        }
        const auto* const from = reinterpret_cast<const float*>(model_->spectrum_.data() + first);
        auto* const to = reinterpret_cast<float*>(turned_.data() + first);
        for (std::size_t k = 0; k < length; ++k) {
            const auto [sine, cosine] = sine_cosine_of(chi[k]);
            const float re = from[2 * k], im = from[2 * k + 1];
            to[2 * k] = re * cosine - im * sine;
            to[2 * k + 1] = re * sine + im * cosine;
        }
    }
}

void band_evaluator::to_wave(std::span<const std::complex<float>> packed)
{
    std::ranges::fill(wave_, std::complex<float>{});
    for (const auto& row : model_->rows_)
        std::copy_n(packed.begin() + row.first, row.count, wave_.begin() + row.y * model_->width_ + row.x);
    transform_.backward(wave_.data());
}

double band_evaluator::derive(criterion what, std::complex<float>* gradient) const
{
    const lens::weighted_wave wave{wave_.data(), model_->weights_.data(), wave_.size()};
    if (what == criterion::modulus_variance) return lens::modulus_variance(wave, gradient);
    const double skewness = lens::phase_skewness(wave, gradient);
    if (skewness < 0 && gradient != nullptr)
        for (std::size_t i = 0; i < wave_.size(); ++i) gradient[i] = -gradient[i];
    return std::abs(skewness);
}

/// From the derivative for each pixel in slope_ to that for each variable: a change of a variable changes the wave by
/// the transform back of i basis times the spectrum, and the transform's adjoint is the transform.
void band_evaluator::project(std::span<double> gradient)
{
    transform_.forward(slope_.data());
    const std::size_t count = turned_.size();
    for (const auto& row : model_->rows_) {
        const auto* const slope = slope_.data() + row.y * model_->width_ + row.x;
        const auto* const turned = turned_.data() + row.first;
        float* const out = scratch_.data() + row.first;
        for (std::ptrdiff_t i = 0; i < row.count; ++i)
            out[i] = turned[i].real() * slope[i].imag() - turned[i].imag() * slope[i].real();
    }
    std::ranges::fill(gradient, 0.0);
    for (std::size_t first = 0; first < count; first += block) {
        const std::size_t length = std::min(block, count - first);
        for (std::size_t j = 0; j < gradient.size(); ++j)
            gradient[j] += inner_product(model_->basis_.data() + j * count + first, scratch_.data() + first, length);
    }
    for (double& one : gradient) one /= static_cast<double>(wave_.size());
}

double band_evaluator::operator()(criterion what, std::span<const double> variables, std::span<double> gradient)
{
    ++evaluations_;
    turn_spectrum(variables);
    to_wave(turned_);
    const double value = derive(what, gradient.empty() ? nullptr : slope_.data());
    if (!gradient.empty()) project(gradient);
    return value;
}

band_evaluator::values band_evaluator::both(std::span<const double> variables, std::span<double> variance_gradient,
                                            std::span<double> skewness_gradient)
{
    ++evaluations_;
    turn_spectrum(variables);
    to_wave(turned_);
    values result{};
    result.variance = derive(criterion::modulus_variance, slope_.data());
    project(variance_gradient);
    result.skewness = derive(criterion::phase_skewness, slope_.data());
    project(skewness_gradient);
    return result;
}

const std::vector<std::complex<float>>& band_evaluator::wave_at(std::span<const double> variables)
{
    turn_spectrum(variables);
    to_wave(turned_);
    return wave_;
}

std::vector<double> band_evaluator::tile_gradients(criterion what, std::span<const double> variables,
                                                   std::ptrdiff_t tiles_x, std::ptrdiff_t tiles_y)
{
    const std::size_t n = variables.size(), count = turned_.size();
    turn_spectrum(variables);
    to_wave(turned_);
    derive(what, slope_.data());
    std::vector<double> result(static_cast<std::size_t>(tiles_x * tiles_y) * n);
    std::vector<std::complex<float>> change(count);
    for (std::size_t j = 0; j < n; ++j) {
        const float* const basis = model_->basis_.data() + j * count;
        for (std::size_t k = 0; k < count; ++k)
            change[k] = {-turned_[k].imag() * basis[k], turned_[k].real() * basis[k]};
        to_wave(change);
        for (std::ptrdiff_t y = 0; y < model_->height_; ++y)
            for (std::ptrdiff_t x = 0; x < model_->width_; ++x) {
                const auto at = static_cast<std::size_t>(y * model_->width_ + x);
                const auto tile = y * tiles_y / model_->height_ * tiles_x + x * tiles_x / model_->width_;
                result[static_cast<std::size_t>(tile) * n + j] +=
                    slope_[at].real() * wave_[at].real() + slope_[at].imag() * wave_[at].imag();
            }
    }
    evaluations_ += n / 2 + 1;
    return result;
}

}  // namespace zentrix::host
