#include "host/correction/diffractogram_pictures.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numeric>

#include "host/correction/picture_values.h"
#include "host/fft/fft.h"
#include "host/objects/value.h"

namespace zentrix::host {

namespace {

constexpr std::size_t slow_from = std::size_t{1} << 20;  // pixels; more are given up when a newer request comes

std::complex<float>* pixels_of(image& wave) { return static_cast<std::complex<float>*>(wave.data()); }

/// Replaces the spectrum of a wave by that of its displayed values without their mean.
void transform_displayed(image& spectrum, display_mode mode, const std::atomic<bool>& given_up)
{
    const std::uint32_t width = spectrum.size(0), height = spectrum.size(1);
    fft_plan plan{width, height};
    plan.give_up_on(&given_up);
    auto* const pixels = pixels_of(spectrum);
    plan.backward(pixels);
    std::vector<float> row(width);
    double sum = 0;
    for (std::uint32_t y = 0; y < height && !given_up; ++y) {
        displayed_row(spectrum, y, mode, row.data());
        for (float& value : row)
            if (!std::isfinite(value)) value = 0;  // the logarithm of 0
        sum += std::accumulate(row.begin(), row.end(), 0.0);
        std::ranges::copy(row, pixels + std::size_t{y} * width);
    }
    const auto mean = static_cast<float>(sum / static_cast<double>(spectrum.count()));
    for (std::size_t i = 0; i < spectrum.count(); ++i) pixels[i] -= mean;
    if (!given_up) plan.forward(pixels);
}

}  // namespace

bool diffractogram_pictures::is_slow() const
{
    return static_cast<std::size_t>(width()) * static_cast<std::size_t>(height()) > slow_from;
}

queued_pictures::task diffractogram_pictures::begin(const picture_request& wanted)
{
    if (!corrected_.failure().empty()) throw known_failure{corrected_.failure()};
    const auto profile = std::make_shared<std::vector<double>>();
    task next;
    next.is_slow = is_slow();
    next.work = [=, correction = corrected_.present(), displayed = displayed_](const std::atomic<bool>& given_up) {
        rendered_picture picture;
        const image_ref source = correction.spectrum->get(&given_up);
        if (!source) return picture;
        const image_ref spectrum = source->clone();
        correction.multiply(spectrum, spectrum);
        if (displayed && !given_up) transform_displayed(*spectrum, *displayed, given_up);
        picture.is_full = true;
        picture.values = spectrum;
        if (given_up) return picture;
        *profile = radial_power(*spectrum, &given_up);
        if (!given_up) show_values(wanted, given_up, picture);
        return picture;
    };
    next.taken = [this, profile] { profile_.swap(*profile); };
    return next;
}

std::vector<double> radial_power(const image& spectrum, const std::atomic<bool>* given_up)
{
    const int width = static_cast<int>(spectrum.size(0)), height = static_cast<int>(spectrum.size(1));
    const int size = std::max(width, height);
    std::vector<double> sums(static_cast<std::size_t>(size / 2 + 1)), counts(sums.size());
    const double right = static_cast<double>(size) / width, down = static_cast<double>(size) / height;
    const auto* pixel = static_cast<const std::complex<float>*>(spectrum.data());
    for (int y = 0; y < height && !(given_up && *given_up); ++y) {
        const double v = (y - height / 2) * down;
        for (int x = 0; x < width; ++x, ++pixel) {
            const double u = (x - width / 2) * right;
            const auto ring = static_cast<std::size_t>(std::sqrt(u * u + v * v) + 0.5);
            if (ring >= sums.size()) continue;
            sums[ring] += static_cast<double>(std::norm(*pixel));
            ++counts[ring];
        }
    }
    for (std::size_t i = 0; i < sums.size(); ++i)
        if (counts[i] > 0) sums[i] /= counts[i];
    return sums;
}

}  // namespace zentrix::host
