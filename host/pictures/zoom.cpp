#include "host/pictures/zoom.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "host/parallel/for_each_row.h"

namespace zentrix::host {

namespace {

/// The pixels along one axis of the original that a pixel of the result covers, each with its share of the result.
struct cover
{
    std::size_t first;
    std::vector<float> shares;  ///< of pixels first, first + 1, ...; their sum is 1
};

/// Those of `count` pixels of the result from the `first` one; it has `to` pixels altogether.
std::vector<cover> covers(int from, int to, int first, int count)
{
    std::vector<cover> all;
    const double ratio = static_cast<double>(from) / to;
    for (int i = first; i < first + count; ++i) {
        if (ratio <= 1) {
            all.push_back({static_cast<std::size_t>((i + 0.5) * ratio), {1.0F}});
            continue;
        }
        const double begin = i * ratio, end = std::min<double>((i + 1) * ratio, from);
        cover one{static_cast<std::size_t>(begin), {}};
        for (double edge = std::floor(begin); edge < end; ++edge)
            one.shares.push_back(static_cast<float>((std::min(edge + 1, end) - std::max(edge, begin)) / (end - begin)));
        all.push_back(std::move(one));
    }
    return all;
}

/// Adds a row of bytes times `share`.
void add(std::span<const std::uint8_t> row, float share, float* sums)
{
    for (std::size_t i = 0; i < row.size(); ++i) sums[i] += share * static_cast<float>(row[i]);
}

template <int channels>
std::uint32_t mean(const float* sums, const cover& columns)
{
    float parts[channels] = {};
    const float* sum = sums + columns.first * channels;
    for (const float share : columns.shares)
        for (float& part : parts) part += share * *sum++;
    const auto rounded = [](float part) { return static_cast<std::uint32_t>(static_cast<int>(part + 0.5F)); };
    if constexpr (channels == 1)
        return rounded(parts[0]) * 0x010101U;
    else
        return rounded(parts[0]) << 16 | rounded(parts[1]) << 8 | rounded(parts[2]);
}

}  // namespace

void zoom(const picture& from, int width, int height, std::uint32_t* pixels)
{
    const pixel_box whole{0, 0, width, height};
    zoom_part(from, whole, whole, pixels);
}

void zoom_part(const picture& from, const pixel_box& whole, const pixel_box& part, std::uint32_t* pixels)
{
    const int width = part.width(), height = part.height();
    const auto columns = covers(from.width, whole.width(), part.left - whole.left, width),
               rows = covers(from.height, whole.height(), part.top - whole.top, height);
    const std::size_t row_bytes = static_cast<std::size_t>(from.width) * static_cast<std::size_t>(from.channels);
    const auto threads =
        threads_for(std::max(std::ptrdiff_t{width} * height, std::ptrdiff_t{from.width} * from.height));
    std::vector<std::vector<float>> all_sums(static_cast<std::size_t>(threads), std::vector<float>(row_bytes));
    for_each_row(height, threads, [&](std::size_t thread, std::size_t y) {
        auto& sums = all_sums[thread];
        std::ranges::fill(sums, 0.0F);
        std::size_t row = rows[y].first;
        for (const float share : rows[y].shares)
            add(std::span{from.bytes}.subspan(row_bytes * row++, row_bytes), share, sums.data());
        std::ranges::transform(columns, pixels + y * static_cast<std::size_t>(width), [&](const cover& one) {
            return from.channels == 1 ? mean<1>(sums.data(), one) : mean<3>(sums.data(), one);
        });
    });
}

}  // namespace zentrix::host
