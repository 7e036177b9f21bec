#include "host/hologram/power_map.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numeric>
#include <span>

#include "host/fft/fft.h"
#include "host/hologram/outliers.h"

namespace zentrix::host {

namespace {

/// A sideband of a specimen covers some pixels, that of a vacuum one; this width is a compromise.
constexpr double smoothing_pixels = 1.2;
float median_of(std::vector<float> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::ptrdiff_t wrapped(std::ptrdiff_t index, std::ptrdiff_t size) { return ((index % size) + size) % size; }

/// The shortest signed way along a periodic axis.
double shortest(std::ptrdiff_t way, std::ptrdiff_t size)
{
    const auto inside = wrapped(way, size);
    return static_cast<double>(std::min(inside, size - inside));
}

}  // namespace

image_ref tapered_without_outliers(engine& engine, const image_ref& hologram)
{
    auto cleaned = hologram->clone();
    replace_outliers(engine, cleaned);
    const std::span pixels{static_cast<const float*>(cleaned->data()), cleaned->count()};
    const double mean = std::accumulate(pixels.begin(), pixels.end(), 0.0) / static_cast<double>(pixels.size());
    engine.call("ZXHanningWindow", {cleaned, mean, 1.0, 0.0, cleaned});
    return cleaned;
}

power_map::power_map(engine& engine, const image_ref& tapered)
    : width_{tapered->size(0)}, height_{tapered->size(1)}, power_(tapered->count())
{
    const auto* const from = static_cast<const float*>(tapered->data());
    std::vector<std::complex<float>> spectrum(from, from + tapered->count());
    forward_fft(spectrum.data(), width_, height_);
    const std::uint32_t sizes[] = {tapered->size(0), tapered->size(1)};
    const auto smoothed = image::create("power", HOST_ELEMENT_FLOAT32, sizes);
    auto* const values = static_cast<float*>(smoothed->data());
    std::ranges::transform(spectrum, values, [](std::complex<float> value) { return std::norm(value); });
    engine.call("ZXGaussianBlur", {smoothed, smoothing_pixels, std::int64_t{3}, smoothed});
    if (!std::ranges::all_of(std::span{values, power_.size()}, [](float power) { return std::isfinite(power); }))
        throw script_error{"No fringes were found: some pixels are too large next to the others."};
    power_.assign(values, values + power_.size());
}

double power_map::operator[](pixel_position at) const noexcept
{
    const auto x = wrapped(at.x + width_ / 2, width_), y = wrapped(at.y + height_ / 2, height_);
    return static_cast<double>(power_[static_cast<std::size_t>(y * width_ + x)]);
}

double power_map::radius(pixel_position at) const noexcept
{
    const auto longer = static_cast<double>(std::max(width_, height_));
    return std::hypot(static_cast<double>(at.x) * longer / static_cast<double>(width_),
                      static_cast<double>(at.y) * longer / static_cast<double>(height_));
}

double power_map::distance(pixel_position one, pixel_position other) const noexcept
{
    const auto longer = static_cast<double>(std::max(width_, height_));
    return std::hypot(shortest(one.x - other.x, width_) * longer / static_cast<double>(width_),
                      shortest(one.y - other.y, height_) * longer / static_cast<double>(height_));
}

double power_map::centre_band() const noexcept
{
    return std::max(8.0, static_cast<double>(std::max(width_, height_)) / 40);
}

std::vector<double> power_map::ring_medians() const
{
    std::vector<std::vector<float>> rings;
    for (std::ptrdiff_t y = -(height_ / 2); y < height_ - height_ / 2; ++y)
        for (std::ptrdiff_t x = -(width_ / 2); x < width_ - width_ / 2; ++x) {
            const auto ring = static_cast<std::size_t>(radius({x, y}));
            if (ring >= rings.size()) rings.resize(ring + 1);
            rings[ring].push_back(static_cast<float>((*this)[{x, y}]));
        }
    std::vector<double> medians;
    for (auto& ring : rings) medians.push_back(ring.empty() ? 0 : static_cast<double>(median_of(std::move(ring))));
    return medians;
}

bool power_map::is_peak(pixel_position at) const noexcept
{
    const auto highest = highest_near(at, 3);
    return highest.x == at.x && highest.y == at.y;
}

pixel_position power_map::highest_near(pixel_position at, std::ptrdiff_t reach) const noexcept
{
    auto highest = at;
    for (std::ptrdiff_t y = at.y - reach; y <= at.y + reach; ++y)
        for (std::ptrdiff_t x = at.x - reach; x <= at.x + reach; ++x)
            if ((*this)[{x, y}] > (*this)[highest]) highest = {x, y};
    return highest;
}

double power_map::mean_along_ray(pixel_position at) const noexcept
{
    const double length = std::hypot(static_cast<double>(at.x), static_cast<double>(at.y));
    double sides[2] = {0, 0};
    constexpr int nearest = 6, farthest = 16;
    for (const int side : {-1, 1})
        for (int steps = nearest; steps <= farthest; ++steps) {
            const double factor = 1 + side * steps / length;
            const pixel_position along{std::lround(static_cast<double>(at.x) * factor),
                                       std::lround(static_cast<double>(at.y) * factor)};
            sides[side < 0 ? 0 : 1] += (*this)[along] / (farthest - nearest + 1);
        }
    return std::max({sides[0], sides[1], 1e-300});
}

}  // namespace zentrix::host
