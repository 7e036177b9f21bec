#include "host/hologram/reconstruct.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <span>
#include <string>

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

/// (greatest - least) / (greatest + least) of the fringes, where the wave in the sideband has its median modulus.
double contrast_of(const image& hologram, float median)
{
    const std::span pixels{static_cast<const float*>(hologram.data()), hologram.count()};
    const double mean = std::accumulate(pixels.begin(), pixels.end(), 0.0) / static_cast<double>(pixels.size());
    return mean > 0 ? 2 * static_cast<double>(median) / mean : 0;
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

void require_same_size(const image& hologram, const image& reference)
{
    if (reference.dimensions() != 2) throw script_error{"The reference is one hologram of two dimensions."};
    if (reference.size(0) == hologram.size(0) && reference.size(1) == hologram.size(1)) return;
    throw script_error{"The reference has " + std::to_string(reference.size(0)) + " x " +
                       std::to_string(reference.size(1)) + " pixels, the hologram " + std::to_string(hologram.size(0)) +
                       " x " + std::to_string(hologram.size(1)) + "."};
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

}  // namespace

reconstruction reconstruct(engine& engine, const image_ref& hologram, const image_ref& reference,
                           const hologram_options& options)
{
    std::size_t replaced = 0;
    const auto read_plane = [&](const image_ref& from, std::uint32_t z) {
        auto plane = hologram_plane(from, z);
        if (options.despike) replaced += replace_outliers(engine, plane);
        return plane;
    };
    const auto first = read_plane(hologram, 0);
    if (reference) require_same_size(*hologram, *reference);
    const auto vacuum = reference ? read_plane(reference, 0) : nullptr;
    const auto& with_carrier = vacuum ? vacuum : first;
    const auto band = choose_sideband(engine, with_carrier, options);
    const auto filter = choose_filter(engine, *with_carrier, band.at, options.filter);
    reconstruction done{new_wave(*hologram, filter), report_on(band, filter)};

    image_ref divisor;
    float divisor_median = 0;
    if (vacuum) {
        divisor = wave_in_band(engine, *vacuum, filter);
        divisor_median = median_modulus(pixels_of(*divisor));
        done.report.reference_contrast = contrast_of(*vacuum, divisor_median);
    }
    auto ramp = remaining_carrier(filter);
    const std::size_t count = static_cast<std::size_t>(filter.width) * static_cast<std::size_t>(filter.height);
    for (std::uint32_t z = 0; z < hologram->size(2); ++z) {
        const auto plane = z == 0 ? first : read_plane(hologram, z);
        const auto wave = wave_in_band(engine, *plane, filter);
        const auto pixels = pixels_of(*wave);
        const float median = median_modulus(pixels);
        if (z == 0) done.report.contrast = contrast_of(*plane, median);
        if (divisor)
            done.report.weak = divide(pixels, pixels_of(*divisor), divisor_median);
        else {
            remove_ramp(*wave, ramp);
            if (z == 0) {
                const auto rest = phase_ramp(*wave);
                remove_ramp(*wave, rest);
                ramp += rest;
                set_carrier(done.report, filter.carrier + rest);
            }
            if (median > 0)
                for (auto& pixel : pixels) pixel /= median;
        }
        std::ranges::copy(pixels, pixels_of(*done.wave).begin() + static_cast<std::ptrdiff_t>(z * count));
    }
    done.report.replaced = replaced;
    return done;
}

}  // namespace zentrix::host
