#include "host/hologram/reconstruct.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <span>
#include <string>

#include "host/fft/finite.h"
#include "host/hologram/hologram_plane.h"
#include "host/hologram/outliers.h"
#include "host/hologram/phase_ramp.h"

namespace zentrix::host {

namespace {

/// Of the median modulus of the reference.
constexpr float weak_fraction = 0.1F;

using wave_pixels = std::span<std::complex<float>>;

wave_pixels pixels_of(image& wave) { return {static_cast<std::complex<float>*>(wave.data()), wave.count()}; }

float median_modulus(wave_pixels wave)
{
    std::vector<float> moduli(wave.size());
    std::ranges::transform(wave, moduli.begin(), [](std::complex<float> value) { return std::abs(value); });
    const auto middle = moduli.begin() + static_cast<std::ptrdiff_t>(moduli.size() / 2);
    std::nth_element(moduli.begin(), middle, moduli.end());
    return *middle;
}

/// (greatest - least) / (greatest + least) of the fringes, where the wave in the sideband has its median modulus. None
/// if they are stronger than the mean, which pixels that count electrons cannot have.
std::optional<double> contrast_of(const image& hologram, float median)
{
    const std::span pixels{static_cast<const float*>(hologram.data()), hologram.count()};
    const double mean = std::accumulate(pixels.begin(), pixels.end(), 0.0) / static_cast<double>(pixels.size());
    const double strength = 2 * static_cast<double>(median);
    return strength <= mean && mean > 0 ? std::optional{strength / mean} : std::nullopt;
}

/// Divides by the wave of the reference. Returns the number of pixels where it is weak.
std::size_t divide(wave_pixels wave, wave_pixels reference, float median)
{
    const float least = weak_fraction * weak_fraction * median * median;
    std::size_t weak = 0;
    for (std::size_t i = 0; i < wave.size(); ++i) {
        const float power = std::norm(reference[i]);
        if (power < least) ++weak;
        wave[i] *= std::conj(reference[i]) / std::max(power, least);
    }
    return weak;
}

/// Multiplies by 2^exponent.
void multiply(wave_pixels wave, int exponent)
{
    constexpr int largest = 60;  // with the values that are not scaled, the product is below 10^38
    if (std::abs(exponent) > largest)
        throw script_error{"The values of hologram and reference differ by a factor of more than 10^18."};
    if (exponent == 0) return;
    const float factor = std::ldexp(1.0F, exponent);
    for (auto& pixel : wave) pixel *= factor;
}

void require_finite(const image& wave)
{
    if (!all_finite(static_cast<const std::complex<float>*>(wave.data()), static_cast<std::ptrdiff_t>(wave.count())))
        throw script_error{"The wave is not finite: some pixels are too large next to the others."};
}

void require_same_size(const image& hologram, const band_filter& reference)
{
    if (reference.hologram_width == hologram.size(0) && reference.hologram_height == hologram.size(1)) return;
    throw script_error{"The reference has " + std::to_string(reference.hologram_width) + " x " +
                       std::to_string(reference.hologram_height) + " pixels, the hologram " +
                       std::to_string(hologram.size(0)) + " x " + std::to_string(hologram.size(1)) + "."};
}

sideband choose_sideband(engine& engine, const image_ref& plane, const hologram_options& options)
{
    if (options.at) return sideband_at(engine, plane, *options.at);
    auto found = find_sideband(engine, plane);
    if (options.which == sideband_choice::upper) found.at = -found.at;
    return found;
}

/// Sets the position of the carrier and what follows from it.
void set_carrier(hologram_report& report, std::complex<double> at)
{
    auto& filter = report.filter;
    report.band.at = filter.carrier = at;
    const double x = filter.carrier.real() / static_cast<double>(filter.hologram_width);
    const double y = filter.carrier.imag() / static_cast<double>(filter.hologram_height);
    report.spacing_pixels = 1 / std::hypot(x, y);
    report.angle_degrees = std::atan2(-y, x) * 180 / std::numbers::pi;
}

hologram_report report_on(const sideband& band, const band_filter& filter)
{
    hologram_report report;
    report.band = band;
    report.filter = filter;
    report.resolution_pixels = static_cast<double>(filter.hologram_width) / filter.half_radius();
    set_carrier(report, filter.carrier);
    return report;
}

/// The scale of a wave that covers the same field with fewer pixels.
calibration scale_of_wave(const image& hologram, const band_filter& filter)
{
    auto scale = hologram.scale();
    scale.axes[0].step *= static_cast<double>(filter.hologram_width) / static_cast<double>(filter.width);
    scale.axes[1].step *= static_cast<double>(filter.hologram_height) / static_cast<double>(filter.height);
    return scale;
}

image_ref new_wave(const image& hologram, const band_filter& filter)
{
    const std::uint32_t sizes[] = {static_cast<std::uint32_t>(filter.width), static_cast<std::uint32_t>(filter.height),
                                   hologram.size(2)};
    auto wave = image::create(hologram.name(), HOST_ELEMENT_COMPLEX64, std::span{sizes, hologram.dimensions()});
    wave->set_scale(scale_of_wave(hologram, filter));
    return wave;
}

/// Plane z, without outliers if these are to be replaced; `replaced` counts them.
hologram_values read_plane(engine& engine, const image_ref& from, std::uint32_t z, const char* what, bool despike,
                           std::size_t& replaced)
{
    auto plane = hologram_plane(from, z, what);
    if (despike) replaced += replace_outliers(engine, plane.image);
    return plane;
}

/// Removes the slope that is left when the carrier is known to a fraction of a pixel only. Returns it.
std::complex<double> remove_rest(image& wave, hologram_report& report)
{
    const auto rest = phase_ramp(wave);
    remove_ramp(wave, rest);
    set_carrier(report, report.filter.carrier + rest);
    return rest;
}

}  // namespace

vacuum_wave reconstruct_vacuum(engine& engine, const image_ref& reference, const hologram_options& options)
{
    if (reference->dimensions() != 2) throw script_error{"The reference is one hologram of two dimensions."};
    vacuum_wave vacuum;
    const auto [plane, exponent] = read_plane(engine, reference, 0, "reference", options.despike, vacuum.replaced);
    vacuum.exponent = exponent;
    vacuum.band = choose_sideband(engine, plane, options);
    vacuum.filter = choose_filter(engine, *plane, vacuum.band.at, options.filter);
    vacuum.wave = wave_in_band(engine, *plane, vacuum.filter);
    require_finite(*vacuum.wave);
    vacuum.median_modulus = median_modulus(pixels_of(*vacuum.wave));
    vacuum.contrast = contrast_of(*plane, vacuum.median_modulus);
    return vacuum;
}

reconstruction reconstruct(engine& engine, const image_ref& hologram, const vacuum_wave* vacuum,
                           const hologram_options& options)
{
    std::size_t replaced = vacuum ? vacuum->replaced : 0;
    const auto plane_at = [&](std::uint32_t z) {
        return read_plane(engine, hologram, z, "hologram", options.despike, replaced);
    };
    const auto first = plane_at(0);
    if (vacuum) require_same_size(*hologram, vacuum->filter);
    const auto band = vacuum ? vacuum->band : choose_sideband(engine, first.image, options);
    const auto filter = vacuum ? vacuum->filter : choose_filter(engine, *first.image, band.at, options.filter);
    reconstruction done{new_wave(*hologram, filter), report_on(band, filter)};
    auto& report = done.report;
    if (vacuum) report.reference_contrast = vacuum->contrast;

    auto ramp = remaining_carrier(filter);
    const auto count = filter.width * filter.height;
    for (std::uint32_t z = 0; z < hologram->size(2); ++z) {
        const auto [plane, exponent] = z == 0 ? first : plane_at(z);
        const auto wave = wave_in_band(engine, *plane, filter);
        require_finite(*wave);
        const auto pixels = pixels_of(*wave);
        const float median = median_modulus(pixels);
        if (z == 0) report.contrast = contrast_of(*plane, median);
        if (vacuum) {
            report.weak = divide(pixels, pixels_of(*vacuum->wave), vacuum->median_modulus);
            multiply(pixels, exponent - vacuum->exponent);
        } else {
            remove_ramp(*wave, ramp);
            if (z == 0) ramp += remove_rest(*wave, report);
            if (median > 0)
                for (auto& pixel : pixels) pixel /= median;
        }
        std::ranges::copy(pixels, pixels_of(*done.wave).begin() + std::ptrdiff_t{z} * count);
    }
    report.replaced = replaced;
    return done;
}

}  // namespace zentrix::host
