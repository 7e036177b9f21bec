#include "host/estimation/wave_spectrum.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <stdexcept>

#include "host/fft/fft.h"

namespace zentrix::host {

namespace {

/// Powers of the spectrum in rings of equal width around the zero frequency.
struct ring_powers
{
    double width = 0;                  ///< of a ring [1/nm]
    std::vector<double> mean, median;  ///< of |value|^2
    std::vector<std::size_t> count;
};

ring_powers rings_of(const wave_spectrum& spectrum)
{
    const double step_x = 1 / (static_cast<double>(spectrum.width) * spectrum.pixel_nm);
    const double step_y = 1 / (static_cast<double>(spectrum.height) * spectrum.pixel_nm);
    ring_powers rings;
    rings.width = 2 * std::max(step_x, step_y);
    const auto ring_count = static_cast<std::size_t>(spectrum.nyquist() * std::numbers::sqrt2 / rings.width) + 1;
    std::vector<std::vector<float>> powers(ring_count);
    for (std::ptrdiff_t y = 0; y < spectrum.height; ++y)
        for (std::ptrdiff_t x = 0; x < spectrum.width; ++x) {
            const double gx = static_cast<double>(x - spectrum.width / 2) * step_x;
            const double gy = static_cast<double>(y - spectrum.height / 2) * step_y;
            if (x == spectrum.width / 2 && y == spectrum.height / 2) continue;
            const auto ring = std::min(static_cast<std::size_t>(std::hypot(gx, gy) / rings.width), ring_count - 1);
            powers[ring].push_back(std::norm(spectrum.values[static_cast<std::size_t>(y * spectrum.width + x)]));
        }
    for (auto& ring : powers) {
        const double sum = std::accumulate(ring.begin(), ring.end(), 0.0);
        rings.count.push_back(ring.size());
        rings.mean.push_back(ring.empty() ? 0 : sum / static_cast<double>(ring.size()));
        const auto middle = ring.begin() + static_cast<std::ptrdiff_t>(ring.size() / 2);
        if (!ring.empty()) std::nth_element(ring.begin(), middle, ring.end());
        rings.median.push_back(ring.empty() ? 0 : *middle);
    }
    return rings;
}

/// The ring at which a filter ended the spectrum, or the number of rings up to the corners. Beyond a filter's edge
/// the power drops by orders of magnitude within a few rings.
std::size_t end_of_support(const ring_powers& rings, std::size_t nyquist_ring)
{
    constexpr double drop = 10;
    for (std::size_t i = nyquist_ring / 8 + 3; i + 4 < nyquist_ring; ++i) {
        const double inside = rings.median[i], before = rings.median[i - 3], beyond = rings.median[i + 4];
        // A spectrum that falls everywhere at this rate has no edge.
        if (inside > drop * beyond && before < drop / 4 * inside &&
            std::ranges::all_of(rings.median.begin() + static_cast<std::ptrdiff_t>(i) + 4, rings.median.end(),
                                [&](double median) { return median <= inside / drop; }))
            return i;
    }
    return rings.mean.size();
}

/// The rms difference of pixels across the seam of opposite edges over that of neighbours inside.
double seam_ratio(const wave_spectrum& wave)
{
    const auto pixel = [&](std::ptrdiff_t x, std::ptrdiff_t y) {
        return wave.values[static_cast<std::size_t>(y * wave.width + x)];
    };
    double seam = 0, inside = 0;
    for (std::ptrdiff_t y = 0; y < wave.height; ++y) {
        seam += std::norm(pixel(0, y) - pixel(wave.width - 1, y)) / static_cast<double>(wave.width);
        for (std::ptrdiff_t x = 1; x < wave.width; ++x)
            inside += std::norm(pixel(x, y) - pixel(x - 1, y)) / static_cast<double>(wave.width) /
                      static_cast<double>(wave.width - 1);
    }
    for (std::ptrdiff_t x = 0; x < wave.width; ++x) {
        seam += std::norm(pixel(x, 0) - pixel(x, wave.height - 1)) / static_cast<double>(wave.height);
        for (std::ptrdiff_t y = 1; y < wave.height; ++y)
            inside += std::norm(pixel(x, y) - pixel(x, y - 1)) / static_cast<double>(wave.height) /
                      static_cast<double>(wave.height - 1);
    }
    return inside > 0 ? std::sqrt(seam / inside) : 1;
}

/// Lets the wave go to its mean towards the edges, because a jump from edge to edge would spread over the spectrum.
void taper(std::vector<std::complex<float>>& wave, std::ptrdiff_t width, std::ptrdiff_t height)
{
    std::complex<double> sum;
    for (const auto& pixel : wave) sum += pixel;
    const std::complex<float> mean{sum / static_cast<double>(wave.size())};
    constexpr double part = 0.08;  // of the width, within the part of the margin that has no weight
    const auto window = [&](std::ptrdiff_t at, std::ptrdiff_t size) {
        const double distance = (static_cast<double>(std::min(at, size - 1 - at)) + 0.5) / static_cast<double>(size);
        return distance >= part ? 1.0 : 0.5 - 0.5 * std::cos(std::numbers::pi * distance / part);
    };
    for (std::ptrdiff_t y = 0; y < height; ++y)
        for (std::ptrdiff_t x = 0; x < width; ++x) {
            auto& pixel = wave[static_cast<std::size_t>(y * width + x)];
            pixel = mean + (pixel - mean) * static_cast<float>(window(x, width) * window(y, height));
        }
}

void judge_noise(wave_spectrum& spectrum)
{
    const ring_powers rings = rings_of(spectrum);
    const auto nyquist_ring =
        std::min(static_cast<std::size_t>(spectrum.nyquist() / rings.width), rings.mean.size() - 1);
    const std::size_t support = end_of_support(rings, nyquist_ring);
    const std::size_t last = std::min(support, nyquist_ring);
    // The level of the quietest part: where the outermost tenth of the spectrum has no signal, that is the noise.
    // The median ignores single spots; of an exponential distribution it is ln 2 times the mean.
    std::vector<double> outer;
    for (std::size_t i = std::min(last - last / 10 - 1, last - 1); i < last; ++i) outer.push_back(rings.median[i]);
    std::ranges::sort(outer);
    const double level = outer[outer.size() / 2] / std::numbers::ln2;
    const double pixels = static_cast<double>(spectrum.width) * static_cast<double>(spectrum.height);
    spectrum.noise = std::sqrt(level * pixels);

    double scattered = 0;
    for (std::size_t i = 0; i < last; ++i)
        scattered += std::max(rings.mean[i] - level, 0.0) * static_cast<double>(rings.count[i]);
    spectrum.scattered = std::sqrt(scattered);
    // Single rings fluctuate, so that several have to be above the noise.
    constexpr std::size_t least_rings = 4;
    const auto end_of_signal = [&](double least_share) {
        const std::size_t first = std::min(last, least_rings);
        double beyond = 0;
        for (std::size_t i = last; i-- > first;) {
            beyond += std::max(rings.mean[i] - level, 0.0) * static_cast<double>(rings.count[i]);
            const double deviation = level / std::sqrt(static_cast<double>(std::max<std::size_t>(rings.count[i], 1)));
            if (rings.mean[i] > 1.25 * level + 2 * deviation && beyond > least_share * scattered)
                return std::min(static_cast<double>(i + 1) * rings.width, 0.98 * spectrum.nyquist());
        }
        return static_cast<double>(first) * rings.width;
    };
    spectrum.signal_resolution = end_of_signal(5e-3);
    spectrum.edge_resolution = end_of_signal(1e-3);
    spectrum.has_signal = spectrum.signal_resolution > (least_rings + 0.5) * rings.width;
}

}  // namespace

wave_spectrum spectrum_of(const image& wave, const pixel_region& region, double pixel_nm)
{
    wave_spectrum spectrum;
    spectrum.width = region.width;
    spectrum.height = region.height;
    spectrum.pixel_nm = pixel_nm;
    spectrum.values.reserve(static_cast<std::size_t>(region.width * region.height));
    double modulus = 0;
    for (std::ptrdiff_t y = 0; y < region.height; ++y)
        for (std::ptrdiff_t x = 0; x < region.width; ++x) {
            spectrum.values.push_back(const_cast<image&>(wave).at<std::complex<float>>(region.x + x, region.y + y));
            modulus += std::abs(spectrum.values.back());
        }
    const auto count = static_cast<double>(spectrum.values.size());
    modulus /= count;
    if (!(modulus > 0) || !std::isfinite(modulus))
        throw std::invalid_argument{"The wave has no modulus: it is zero or not finite."};
    // Squares of huge or tiny moduli would not fit into single precision.
    for (auto& value : spectrum.values) value = std::complex<float>{std::complex<double>{value} / modulus};
    spectrum.edges_meet = seam_ratio(spectrum) < 1.5;
    if (!spectrum.edges_meet) taper(spectrum.values, region.width, region.height);
    forward_fft(spectrum.values.data(), region.width, region.height);
    const auto scale = static_cast<float>(1 / count);
    for (auto& value : spectrum.values) value *= scale;
    judge_noise(spectrum);
    return spectrum;
}

}  // namespace zentrix::host
