#include "host/hologram/band_filter.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <span>
#include <vector>

#include "host/fft/fft.h"

namespace zentrix::host {

namespace {

constexpr double pi = std::numbers::pi;
/// Elements of the weights' curve per pixel of the transform: linear interpolation between them is exact to 1e-5.
constexpr double samples_per_pixel = 32;
constexpr double flank_of_radius = 0.12;
constexpr double least_radius = 2;

struct whole_carrier
{
    std::ptrdiff_t x, y;
};

whole_carrier rounded(std::complex<double> carrier)
{
    return {std::lround(carrier.real()), std::lround(carrier.imag())};
}

/// Distances in pixels of the transform along x: those along y are longer or shorter by the ratio of the sides.
double length_along_x(std::complex<double> way, std::ptrdiff_t width, std::ptrdiff_t height)
{
    return std::hypot(way.real(), way.imag() * static_cast<double>(width) / static_cast<double>(height));
}

/// How far the carrier is from the nearest band that is not its own: the centre or the other sideband, which may reach
/// across the edge of the transform.
double distance_to_other_bands(std::complex<double> carrier, std::ptrdiff_t width, std::ptrdiff_t height)
{
    double nearest = length_along_x(carrier, width, height);
    for (const int x : {-1, 0, 1})
        for (const int y : {-1, 0, 1}) {
            const std::complex<double> other{x * static_cast<double>(width), y * static_cast<double>(height)};
            nearest = std::min(nearest, length_along_x(2.0 * carrier - other, width, height));
            if (x != 0 || y != 0) nearest = std::min(nearest, length_along_x(carrier - other, width, height));
        }
    return nearest;
}

double factor_at(double r, const band_filter& filter)
{
    const double radius = filter.radius;
    if (r > radius) return 0;
    switch (filter.shape) {
        case filter_shape::hann: return (1 + std::cos(pi * r / radius)) / 2;
        case filter_shape::gaussian: return std::exp(-4.5 * r * r / (radius * radius));
        default: break;
    }
    const double start = radius - filter.flank;
    return r <= start ? 1 : (1 + std::cos(pi * (r - start) / filter.flank)) / 2;
}

image_ref curve_of(const band_filter& filter)
{
    const auto length = static_cast<std::uint32_t>(std::ceil(filter.radius * samples_per_pixel)) + 2;
    const std::uint32_t sizes[] = {length, 1};
    auto curve = image::create("weights", HOST_ELEMENT_FLOAT32, sizes);
    const std::span values{static_cast<float*>(curve->data()), curve->count()};
    for (std::size_t i = 0; i + 1 < values.size(); ++i)
        values[i] = static_cast<float>(factor_at(static_cast<double>(i) / samples_per_pixel, filter));
    return curve;
}

/// The transform of the hologram without its mean.
std::vector<std::complex<float>> spectrum_of(const image& hologram)
{
    const std::span pixels{static_cast<const float*>(hologram.data()), hologram.count()};
    const double mean = std::accumulate(pixels.begin(), pixels.end(), 0.0) / static_cast<double>(pixels.size());
    std::vector<std::complex<float>> spectrum(pixels.size());
    std::ranges::transform(pixels, spectrum.begin(),
                           [=](float value) { return static_cast<float>(static_cast<double>(value) - mean); });
    forward_fft(spectrum.data(), hologram.size(0), hologram.size(1));
    return spectrum;
}

std::ptrdiff_t wrapped(std::ptrdiff_t index, std::ptrdiff_t size) { return ((index % size) + size) % size; }

/// The size of the wave: a common fraction of both sides, in which the disk fits.
void choose_size(engine& engine, band_filter& filter)
{
    const auto common = std::gcd(filter.hologram_width, filter.hologram_height);
    const double fraction = (2 * filter.radius + 1) / static_cast<double>(filter.hologram_width);
    const auto parts = std::clamp<std::ptrdiff_t>(
        static_cast<std::ptrdiff_t>(std::ceil(fraction * static_cast<double>(common))), 1, common);
    const auto padded = std::get<std::int64_t>(engine.call("ZXPadSize", {std::int64_t{parts}}));
    const auto chosen = std::min<std::ptrdiff_t>(padded, common);
    filter.width = filter.hologram_width / common * chosen;
    filter.height = filter.hologram_height / common * chosen;
}

}  // namespace

std::string_view name_of(filter_shape shape)
{
    return shape == filter_shape::hann ? "hann" : shape == filter_shape::gaussian ? "gaussian" : "disk";
}

filter_shape shape_named(std::string_view name)
{
    for (const auto shape : {filter_shape::hann, filter_shape::gaussian})
        if (name == name_of(shape)) return shape;
    return filter_shape::disk;
}

double band_filter::half_radius() const
{
    switch (shape) {
        case filter_shape::hann: return radius / 2;
        case filter_shape::gaussian: return radius / 3 * std::sqrt(2 * std::numbers::ln2);
        default: return radius - flank / 2;
    }
}

band_filter choose_filter(engine& engine, const image& hologram, std::complex<double> carrier,
                          const band_filter_options& options)
{
    band_filter filter{hologram.size(0), hologram.size(1), hologram.size(0), hologram.size(1), carrier, options.shape};
    const double room = distance_to_other_bands(carrier, filter.hologram_width, filter.hologram_height);
    filter.radius = options.radius.value_or(room / 2);
    if (!(filter.radius < room))
        throw script_error{"The radius reaches the centre of the transform or the other sideband: it must be below " +
                           std::to_string(static_cast<long>(std::ceil(room))) + " pixels."};
    if (filter.radius < least_radius) throw script_error{"The radius is below 2 pixels of the transform."};
    filter.flank = filter.shape == filter_shape::disk ? options.flank.value_or(flank_of_radius * filter.radius) : 0;
    if (!(filter.flank >= 0 && filter.flank <= filter.radius))
        throw script_error{"The flank of the disk is between 0 and the radius."};
    if (!options.full_size) choose_size(engine, filter);
    return filter;
}

image_ref wave_in_band(engine& engine, const image& hologram, const band_filter& filter)
{
    const auto spectrum = spectrum_of(hologram);
    const std::uint32_t sizes[] = {static_cast<std::uint32_t>(filter.width), static_cast<std::uint32_t>(filter.height)};
    auto wave = image::create(hologram.name(), HOST_ELEMENT_COMPLEX64, sizes);
    auto* const cut = static_cast<std::complex<float>*>(wave->data());
    const auto whole = rounded(filter.carrier);
    const auto scale =
        static_cast<float>(static_cast<double>(wave->count()) / static_cast<double>(hologram.count()));  // keeps moduli
    for (std::ptrdiff_t y = 0; y < filter.height; ++y) {
        const auto row = wrapped(y - filter.height / 2 + whole.y + filter.hologram_height / 2, filter.hologram_height);
        for (std::ptrdiff_t x = 0; x < filter.width; ++x) {
            const auto column =
                wrapped(x - filter.width / 2 + whole.x + filter.hologram_width / 2, filter.hologram_width);
            cut[y * filter.width + x] =
                scale * spectrum[static_cast<std::size_t>(row * filter.hologram_width + column)];
        }
    }
    const double ratio = static_cast<double>(filter.hologram_width) / static_cast<double>(filter.hologram_height);
    engine.call("ZXWeight", {wave, curve_of(filter), std::int64_t{filter.width / 2}, std::int64_t{filter.height / 2},
                             samples_per_pixel, samples_per_pixel * ratio, std::int64_t{1}, wave});
    backward_fft(cut, filter.width, filter.height);
    return wave;
}

std::complex<double> remaining_carrier(const band_filter& filter)
{
    const auto whole = rounded(filter.carrier);
    return filter.carrier - std::complex<double>{static_cast<double>(whole.x), static_cast<double>(whole.y)};
}

}  // namespace zentrix::host
