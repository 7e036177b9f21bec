#include "host/pictures/grey_limits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
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

/// Keys are counted by a part of their bits at a time, the upper part first. Small histograms stay in the cache.
constexpr int parts = 3, bits[parts] = {11, 11, 10}, shifts[parts] = {21, 10, 0};
using histogram = std::array<std::size_t, 1U << 11>;

/// The bin that holds the value with `rank` others before it; `rank` becomes the rank within the bin.
std::uint32_t bin_at(const histogram& counts, std::size_t& rank)
{
    std::uint32_t bin = 0;
    for (; rank >= counts[bin]; ++bin) rank -= counts[bin];
    return bin;
}

constexpr std::size_t largest_sample = 131072;

/// One pixel of each cell of `side` x `side` pixels, row by row.
std::vector<pixel_place> scattered_pixels(std::uint32_t width, std::uint32_t height, std::uint32_t side)
{
    // D. E. Knuth's linear congruential generator (MMIX); its upper bits are the random ones.
    std::uint64_t state = 1;
    const auto within_cell = [&] {
        state = state * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>((state >> 32) * side >> 32);
    };
    std::vector<pixel_place> places;
    places.reserve((std::size_t{width} / side + 1) * (height / side + 1));
    for (std::uint64_t top = 0; top < height; top += side)
        for (std::uint64_t left = 0; left < width; left += side) {
            const std::uint64_t x = left + within_cell(), y = top + within_cell();
            if (x < width && y < height)
                places.push_back({static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y)});
        }
    return places;
}

}  // namespace

value_survey survey_of(const value_source& values)
{
    const auto for_each_finite = [&](auto use) {
        values([&](std::span<const float> part) {
            for (const float value : part)
                if (std::isfinite(value)) use(key_of(value));
        });
    };
    value_survey survey;
    histogram counts{};
    std::size_t count = 0;
    std::uint32_t least = ~0U, largest = 0;
    values([&](std::span<const float> part) {
        for (const float value : part) {
            if (!std::isfinite(value)) {
                if (std::isnan(value)) ++survey.not_a_number;
                continue;
            }
            const std::uint32_t key = key_of(value);
            ++counts[key >> shifts[0]], ++count;
            least = std::min(least, key), largest = std::max(largest, key);
        }
    });
    if (count == 0) return survey;
    survey.extremes = {value_of(least), value_of(largest)};

    std::size_t ranks[] = {count / 1000, count - 1 - count / 1000};
    std::uint32_t found[] = {bin_at(counts, ranks[0]), bin_at(counts, ranks[1])};  // the keys, without the bits below
    for (int part = 1; part < parts; ++part) {
        histogram within[2]{};
        const int shift = shifts[part], above = shifts[part - 1];
        const std::uint32_t mask = (1U << bits[part]) - 1;
        for_each_finite([&](std::uint32_t key) {
            for (std::size_t i = 0; i < 2; ++i)
                if (key >> above == found[i]) ++within[i][key >> shift & mask];
        });
        for (std::size_t i = 0; i < 2; ++i) found[i] = found[i] << bits[part] | bin_at(within[i], ranks[i]);
    }
    survey.quantiles = {value_of(found[0]), value_of(found[1])};
    return survey;
}

value_survey survey_of(const image& pixels, display_mode mode, double border)
{
    std::vector<float> row(pixels.size(0));
    const auto left = static_cast<std::uint32_t>(border * pixels.size(0)),
               top = static_cast<std::uint32_t>(border * pixels.size(1));
    const auto inside = std::span<const float>{row}.subspan(left, row.size() - 2 * std::size_t{left});
    return survey_of([&](const auto& use) {
        for (std::uint32_t y = top; y < pixels.size(1) - top; ++y) {
            displayed_row(pixels, y, mode, row.data());
            use(inside);
        }
    });
}

std::size_t count_not_a_number(const image& pixels, display_mode mode)
{
    std::vector<float> row(pixels.size(0));
    std::ptrdiff_t count = 0;
    for (std::uint32_t y = 0; y < pixels.size(1); ++y) {
        displayed_row(pixels, y, mode, row.data());
        count += std::ranges::count_if(row, [](float value) { return std::isnan(value); });
    }
    return static_cast<std::size_t>(count);
}

grey_limits automatic_limits(grey_limits quantiles, display_mode mode)
{
    const auto [black, white] = quantiles;
    const bool has_unit = mode == display_mode::phase || mode == display_mode::log_modulus;
    const float magnitude = std::max({std::abs(black), std::abs(white), has_unit ? 1.0F : 0.0F});
    if (mode == display_mode::modulus && white > 0 && white - black < 0.02F * white) return {0, 1.25F * white};
    return {black, white - black < 1e-5F * magnitude ? black : white};
}

grey_limits limits_of(const image& pixels, display_mode mode)
{
    return automatic_limits(survey_of(pixels, mode).quantiles, mode);
}

grey_limits limits_of(std::span<const float> values, display_mode mode)
{
    return automatic_limits(survey_of([&](const auto& use) { use(values); }).quantiles, mode);
}

std::vector<float> sampled_values(const image& pixels, display_mode mode)
{
    const std::size_t all = std::size_t{pixels.size(0)} * pixels.size(1);
    const auto side = static_cast<std::uint32_t>(std::ceil(std::sqrt(static_cast<double>(all) / largest_sample)));
    std::vector<float> values;
    if (side <= 1) {
        values.resize(all);
        for (std::uint32_t y = 0; y < pixels.size(1); ++y)
            displayed_row(pixels, y, mode, &values[std::size_t{y} * pixels.size(0)]);
        return values;
    }
    const auto places = scattered_pixels(pixels.size(0), pixels.size(1), side);
    values.resize(places.size());
    displayed_values(pixels, places, mode, values.data());
    return values;
}

grey_limits sampled_limits(const image& pixels, display_mode mode)
{
    return limits_of(sampled_values(pixels, mode), mode);
}

}  // namespace zentrix::host
