#include "host/pictures/shades.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace zentrix::host {

namespace {

/// Values in bins by the upper half of their bits, which order as the values do: to find the value of a rank, only those
/// of its bin have to be looked at.
class ranked_values
{
  public:
    /// Keeps the finite ones.
    explicit ranked_values(const std::vector<float>& values) : values_{values}, counts_(bins)
    {
        for (const float value : values)
            if (std::isfinite(value)) ++counts_[bin_of(value)], ++finite_;
    }

    std::size_t count() const { return finite_; }
    /// The value with `rank` others before it; rank < count().
    float operator[](std::size_t rank) const
    {
        std::size_t bin = 0;
        for (; rank >= counts_[bin]; ++bin) rank -= counts_[bin];
        std::vector<float> alike;
        alike.reserve(counts_[bin]);
        for (const float value : values_)
            if (std::isfinite(value) && bin_of(value) == bin) alike.push_back(value);
        const auto wanted = alike.begin() + static_cast<std::ptrdiff_t>(rank);
        std::nth_element(alike.begin(), wanted, alike.end());
        return *wanted;
    }

  private:
    static constexpr std::size_t bins = 0x10000;
    static std::size_t bin_of(float value)
    {
        const auto bits = std::bit_cast<std::uint32_t>(value);
        const std::uint32_t if_negative = 0U - (bits >> 31);  // all ones: the larger the bits, the smaller the value
        return (bits ^ (if_negative | 0x80000000U)) >> 16;
    }

    const std::vector<float>& values_;
    std::vector<std::size_t> counts_;
    std::size_t finite_ = 0;
};

}  // namespace

grey_limits robust_limits(const std::vector<float>& values)
{
    const ranked_values ranked{values};
    if (ranked.count() == 0) return {};
    const std::size_t cut = ranked.count() / 1000;
    const float black = ranked[cut], white = ranked[ranked.count() - 1 - cut];
    const bool flat = white - black < 1e-5F * std::max(std::abs(black), std::abs(white));
    return {black, flat ? black : white};
}

grey_scale::grey_scale(grey_limits limits)
    : limits_{limits},
      // in double, where the difference of two floats cannot overflow
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
