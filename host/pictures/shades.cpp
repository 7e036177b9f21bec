#include "host/pictures/shades.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <vector>

namespace zentrix::host {

namespace {

/// The bits of a float as an integer that orders as the values do.
std::uint32_t key_of(float value)
{
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const std::uint32_t if_negative = 0U - (bits >> 31);  // all ones: the larger the bits, the smaller the value
    return bits ^ (if_negative | 0x80000000U);
}

float value_of(std::uint32_t key)
{
    const std::uint32_t if_negative = (key >> 31) - 1U;
    return std::bit_cast<float>(key ^ (if_negative | 0x80000000U));
}

/// Counts of the keys by one half of their bits.
using histogram = std::vector<std::size_t>;
constexpr std::size_t bins = 0x10000;

/// The bin that holds the value with `rank` others before it; `rank` becomes the rank within the bin.
std::uint32_t bin_at(const histogram& counts, std::size_t& rank)
{
    std::uint32_t bin = 0;
    for (; rank >= counts[bin]; ++bin) rank -= counts[bin];
    return bin;
}

}  // namespace

grey_limits robust_limits(const value_source& values)
{
    const auto for_each_finite = [&](auto use) {
        values([&](std::span<const float> part) {
            for (const float value : part)
                if (std::isfinite(value)) use(key_of(value));
        });
    };
    histogram upper(bins);
    std::size_t count = 0;
    for_each_finite([&](std::uint32_t key) { ++upper[key >> 16], ++count; });
    if (count == 0) return {};

    std::size_t ranks[] = {count / 1000, count - 1 - count / 1000};
    const std::uint32_t upper_bins[] = {bin_at(upper, ranks[0]), bin_at(upper, ranks[1])};
    histogram lower[] = {histogram(bins), histogram(bins)};
    for_each_finite([&](std::uint32_t key) {
        for (std::size_t i = 0; i < 2; ++i)
            if (key >> 16 == upper_bins[i]) ++lower[i][key & 0xFFFFU];
    });
    const auto limit = [&](std::size_t i) { return value_of(upper_bins[i] << 16 | bin_at(lower[i], ranks[i])); };
    const float black = limit(0), white = limit(1);
    const bool is_flat = white - black < 1e-5F * std::max(std::abs(black), std::abs(white));
    return {black, is_flat ? black : white};
}

grey_scale::grey_scale(grey_limits limits)
    : limits_{limits},
      // the difference of two floats may overflow in float
      steps_{limits.white > limits.black ? 255 / (static_cast<double>(limits.white) - limits.black) : 0}
{}

std::uint8_t grey_scale::operator()(float value) const
{
    if (std::isnan(value)) return 0;
    if (steps_ == 0) return 128;
    const double above = std::clamp(value, limits_.black, limits_.white) - static_cast<double>(limits_.black);
    return static_cast<std::uint8_t>(above * steps_ + 0.5);
}

colour_wheel::colour_wheel()
{
    for (std::size_t i = 0; i < steps; ++i)
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const double turned = static_cast<double>(i) / steps - static_cast<double>(channel) / 3;
            colours_[i][channel] =
                static_cast<std::uint8_t>(std::lround(127.5 + 127.5 * std::cos(2 * std::numbers::pi * turned)));
        }
}

colour_wheel::colour colour_wheel::operator()(float phase) const
{
    if (!std::isfinite(phase)) return {};
    const double turns = phase / (2 * std::numbers::pi);
    return colours_[static_cast<std::size_t>((turns - std::floor(turns)) * steps + 0.5) % steps];
}

}  // namespace zentrix::host
