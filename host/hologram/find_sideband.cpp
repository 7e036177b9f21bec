#include "host/hologram/find_sideband.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>
#include <string>
#include <vector>

#include "host/fft/fft.h"
#include "host/hologram/carrier.h"
#include "host/hologram/power_map.h"

namespace zentrix::host {

namespace {

constexpr std::uint32_t least_size = 32;

struct candidate
{
    pixel_position at;  ///< from the centre
    double score;       ///< power over that of the surroundings
};

/// Whether `at` is in the half of the transform whose sidebands are returned.
bool in_returned_half(pixel_position at) { return at.y > 0 || (at.y == 0 && at.x > 0); }

/// The peaks outside the centre band, highest over the median of their ring first.
std::vector<candidate> peaks_over_rings(const power_map& power)
{
    const auto medians = power.ring_medians();
    const double inner = power.centre_band();
    std::vector<candidate> peaks;
    for (std::ptrdiff_t y = 0; y < power.height() / 2 - 1; ++y)
        for (std::ptrdiff_t x = -(power.width() / 2) + 2; x < power.width() / 2 - 1; ++x) {
            const pixel_position at{x, y};
            if (!in_returned_half(at) || power.radius(at) < inner || !power.is_peak(at)) continue;
            const double floor = medians[static_cast<std::size_t>(power.radius(at))];
            if (floor > 0) peaks.push_back({at, power[at] / floor});
        }
    std::ranges::sort(peaks, std::greater{}, &candidate::score);
    if (peaks.size() > 200) peaks.resize(200);
    return peaks;
}

double score_along_ray(const power_map& power, pixel_position at) { return power[at] / power.mean_along_ray(at); }

/// The peaks of a transform, highest over all their surroundings first.
std::vector<candidate> peaks_of(const power_map& power)
{
    auto peaks = peaks_over_rings(power);
    for (auto& peak : peaks) peak.score = std::min(peak.score, score_along_ray(power, peak.at));
    std::ranges::sort(peaks, std::greater{}, &candidate::score);
    return peaks;
}

/// Whether a peak is part of a sideband: near it, or near its second harmonic, which a camera that is not linear makes.
bool belongs_to(const power_map& power, pixel_position peak, pixel_position main)
{
    const double reach = std::max(power.radius(main) / 2, 8.0);
    return power.distance(peak, main) < reach || power.distance(peak, {-main.x, -main.y}) < reach ||
           power.distance(peak, {2 * main.x, 2 * main.y}) < reach ||
           power.distance(peak, {-2 * main.x, -2 * main.y}) < reach;
}

void require_size(const image& hologram)
{
    if (hologram.size(0) < least_size || hologram.size(1) < least_size)
        throw script_error{"A hologram has at least 32 x 32 pixels, not " + std::to_string(hologram.size(0)) + " x " +
                           std::to_string(hologram.size(1)) + "."};
}

/// A number with one digit after the point.
/// Rounded down, so that what is below a limit does not read as the limit.
std::string one_digit(double value)
{
    const auto tenths = static_cast<long>(std::min(value, 1e6) * 10);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

}  // namespace

std::string doubt_about(const sideband& found)
{
    if (found.distinction == 0 && (!found.is_peak || found.height < least_height))
        return "there is no clear peak at the given position: the transform there is " + one_digit(found.height) +
               " times as high as its surroundings" + (found.is_peak ? "" : ", and higher next to it");
    if (found.distinction > 0 && found.distinction < doubtful_distinction)
        return "the sideband is only " + one_digit(found.distinction) + " times as high as the next peak";
    return "";
}

sideband find_sideband(engine& engine, const image_ref& hologram)
{
    require_size(*hologram);
    const auto tapered = tapered_without_outliers(engine, hologram);
    const power_map power{engine, tapered};
    const auto peaks = peaks_of(power);
    if (peaks.empty()) throw script_error{"No fringes were found: the transform has no peak outside the centre."};
    const auto& main = peaks.front();
    const auto other = std::find_if(peaks.begin() + 1, peaks.end(),
                                    [&](const candidate& peak) { return !belongs_to(power, peak.at, main.at); });
    sideband found;
    found.height = std::sqrt(main.score);
    found.distinction = other == peaks.end() ? found.height : std::sqrt(main.score / other->score);
    if (found.height < least_height || found.distinction < least_distinction)
        throw script_error{"No fringes were found: the highest peak, at " + std::to_string(main.at.x) + "," +
                           std::to_string(main.at.y) + " from the centre of the transform, is " +
                           one_digit(found.height) + " times as high as its surroundings (5 are required) and " +
                           one_digit(found.distinction) + " times as high as the next peak (1.25 are required)."};
    const std::complex<double> peak{static_cast<double>(main.at.x), static_cast<double>(main.at.y)};
    found.at = refine_carrier(static_cast<const float*>(tapered->data()), power.width(), power.height(), peak);
    return found;
}

sideband sideband_at(engine& engine, const image_ref& hologram, std::complex<double> expected)
{
    require_size(*hologram);
    const double half_width = hologram->size(0) / 2.0, half_height = hologram->size(1) / 2.0;
    if (!(std::abs(expected.real()) <= half_width && std::abs(expected.imag()) <= half_height))
        throw script_error{"The sideband is outside the transform."};
    if (std::abs(expected) < 1) throw script_error{"The sideband is at the centre of the transform."};
    const auto tapered = tapered_without_outliers(engine, hologram);
    const power_map power{engine, tapered};
    auto nearest = power.highest_near({std::lround(expected.real()), std::lround(expected.imag())}, 2);
    const double floor = power.ring_medians()[static_cast<std::size_t>(power.radius(nearest))];
    const double score = std::min(power[nearest] / std::max(floor, 1e-300), score_along_ray(power, nearest));
    const std::complex<double> start{static_cast<double>(nearest.x), static_cast<double>(nearest.y)};
    sideband found{expected, std::sqrt(score), 0, power.is_peak(nearest)};
    const auto refined =
        refine_carrier(static_cast<const float*>(tapered->data()), power.width(), power.height(), start);
    if (found.is_peak && found.height >= least_height && std::abs(refined - expected) <= 3) found.at = refined;
    return found;
}

}  // namespace zentrix::host
