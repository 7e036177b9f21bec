#include "host/hologram/phase_ramp.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace zentrix::host {

namespace {

constexpr double turn = 2 * std::numbers::pi;

const std::complex<float>& pixel_at(const image& wave, std::uint32_t x, std::uint32_t y)
{
    return static_cast<const std::complex<float>*>(wave.data())[std::size_t{y} * wave.size(0) + x];
}

/// The median phase difference of pixels that are (step_x, step_y) apart [rad].
double median_difference(const image& wave, std::uint32_t step_x, std::uint32_t step_y)
{
    std::vector<float> differences;
    for (std::uint32_t y = 0; y + step_y < wave.size(1); ++y)
        for (std::uint32_t x = 0; x + step_x < wave.size(0); ++x)
            differences.push_back(std::arg(pixel_at(wave, x + step_x, y + step_y) * std::conj(pixel_at(wave, x, y))));
    const auto middle = differences.begin() + static_cast<std::ptrdiff_t>(differences.size() / 2);
    std::nth_element(differences.begin(), middle, differences.end());
    return static_cast<double>(*middle);
}

std::uint32_t eighth_of(std::uint32_t size) { return std::max<std::uint32_t>(size / 8, 1); }

}  // namespace

std::complex<double> phase_ramp(const image& wave)
{
    const auto width = wave.size(0), height = wave.size(1);
    const auto step_x = eighth_of(width), step_y = eighth_of(height);
    return {median_difference(wave, step_x, 0) / turn * width / step_x,
            median_difference(wave, 0, step_y) / turn * height / step_y};
}

void remove_ramp(image& wave, std::complex<double> periods)
{
    auto* pixel = static_cast<std::complex<float>*>(wave.data());
    for (std::uint32_t y = 0; y < wave.size(1); ++y)
        for (std::uint32_t x = 0; x < wave.size(0); ++x, ++pixel) {
            const double turns = periods.real() * x / wave.size(0) + periods.imag() * y / wave.size(1);
            *pixel *= std::complex<float>{std::polar(1.0, -turn * turns)};
        }
}

}  // namespace zentrix::host
