#include "host/correction/finite_pixels.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <span>

#include "host/fft/finite.h"

namespace zentrix::host {

namespace {

std::span<const std::complex<float>> pixels_of(const image& wave)
{
    return {static_cast<const std::complex<float>*>(wave.data()), wave.count()};
}

bool is_finite(std::complex<float> value) { return std::isfinite(value.real()) && std::isfinite(value.imag()); }

}  // namespace

std::size_t count_not_finite(const image& wave)
{
    const auto pixels = pixels_of(wave);
    if (all_finite(pixels.data(), static_cast<std::ptrdiff_t>(pixels.size()))) return 0;
    return static_cast<std::size_t>(std::count_if(pixels.begin(), pixels.end(), std::not_fn(is_finite)));
}

std::complex<float> mean_of_finite(const image& wave)
{
    std::complex<double> sum;
    std::size_t count = 0;
    for (const auto pixel : pixels_of(wave))
        if (is_finite(pixel)) sum += std::complex<double>{pixel}, ++count;
    return std::complex<float>{sum / static_cast<double>(std::max<std::size_t>(count, 1))};
}

void replace_not_finite(image& wave, std::complex<float> value)
{
    auto* const begin = static_cast<std::complex<float>*>(wave.data());
    std::replace_if(begin, begin + wave.count(), std::not_fn(is_finite), value);
}

}  // namespace zentrix::host
