#include "host/estimation/amplitude_certainty.h"

namespace zentrix::host {

namespace {

/// Of the central differences: so wide that the noise between pixels does not matter. [rad]
constexpr double difference = 0.3;

matrix second_derivatives(sharpness& sharp, const std::vector<double>& at)
{
    const std::size_t n = at.size();
    const auto value = [&](std::size_t i, double by, std::size_t j, double further) {
        auto place = at;
        place[i] += by * difference;
        place[j] += further * difference;
        return sharp(place);
    };
    matrix second{n};
    const double here = sharp(at);
    for (std::size_t i = 0; i < n; ++i) {
        second(i, i) = (value(i, 1, i, 0) + value(i, -1, i, 0) - 2 * here) / (difference * difference);
        for (std::size_t j = 0; j < i; ++j)
            second(i, j) = second(j, i) =
                (value(i, 1, j, 1) + value(i, -1, j, -1) - value(i, 1, j, -1) - value(i, -1, j, 1)) /
                (4 * difference * difference);
    }
    return second;
}

/// The covariance of the first derivatives. Tiles that are larger than what is drawn on the object are independent.
matrix scatter(sharpness& sharp, const std::vector<double>& at)
{
    constexpr std::ptrdiff_t tiles = 6;  // along each axis
    const std::size_t n = at.size();
    std::vector<std::vector<double>> slopes;
    for (std::size_t i = 0; i < n; ++i) {
        auto place = at;
        place[i] = at[i] + difference;
        slopes.push_back(sharp.influences(place, tiles));
        place[i] = at[i] - difference;
        const auto before = sharp.influences(place, tiles);
        for (std::size_t tile = 0; tile < before.size(); ++tile)
            slopes[i][tile] = (slopes[i][tile] - before[tile]) / (2 * difference);
    }
    matrix sum{n};
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j)
            for (std::size_t tile = 0; tile < slopes[i].size(); ++tile) sum(i, j) += slopes[i][tile] * slopes[j][tile];
    return sum;
}

}  // namespace

std::optional<matrix> covariance_at_maximum(sharpness& sharp, const std::vector<double>& at)
{
    const matrix second = second_derivatives(sharp, at);
    for (std::size_t i = 0; i < at.size(); ++i)
        if (!(second(i, i) < 0)) return std::nullopt;
    const auto inverse = inverse_of(second);
    if (!inverse) return std::nullopt;
    return *inverse * scatter(sharp, at) * inverse->transposed();
}

}  // namespace zentrix::host
