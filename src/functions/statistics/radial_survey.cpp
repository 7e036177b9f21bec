#include "functions/statistics/radial_survey.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "image/errors.h"
#include "image/interruption.h"
#include "image/visit.h"

namespace qorv::functions {
namespace {

using dm::image;

constexpr double largest_profile = 0x1p24;  // elements, for images with fewer

double farthest_square(const radial_grid& grid, std::ptrdiff_t width, std::ptrdiff_t height)
{
    return std::max(grid.square_x(0), grid.square_x(width - 1)) + std::max(grid.square_y(0), grid.square_y(height - 1));
}

std::int32_t nearest_radius(double square) { return static_cast<std::int32_t>(std::sqrt(square) + 0.5); }

}  // namespace

std::ptrdiff_t radial_length(const radial_grid& grid, const image<const float>::extents& sizes)
{
    const auto [width, height, depth] = sizes;
    const double farthest = std::sqrt(farthest_square(grid, width, height));
    const double elements = static_cast<double>(width * height * depth);
    const bool plausible =
        farthest < 0x1p30 && (farthest + 1) * static_cast<double>(depth) < std::max(largest_profile, elements);
    dm::require(plausible, dm::errors::parameters_invalid);  // false for a NaN, too
    return nearest_radius(farthest * farthest) + std::ptrdiff_t{1};
}

template <class T, class Profile>
void radial_survey(const image<const T>& source, const radial_grid& grid, const image<Profile>& profile)
{
    const auto length = static_cast<std::size_t>(radial_length(grid, source.sizes()));
    dm::require(profile.width() == static_cast<std::ptrdiff_t>(length) && profile.height() == source.depth() &&
                    profile.depth() == 1,
                dm::errors::different_size);

    std::vector<double> squares_x;
    for (std::ptrdiff_t x = 0; x < source.width(); ++x) squares_x.push_back(grid.square_x(x));
    std::vector<std::int32_t> bins(squares_x.size());
    std::vector<std::int64_t> counts(length);
    std::vector<double> sums(length * static_cast<std::size_t>(source.depth()));

    for (std::ptrdiff_t y = 0; y < source.height(); ++y) {
        dm::stop_if_interrupted();
        const double square_y = grid.square_y(y);
        for (std::size_t x = 0; x < bins.size(); ++x) bins[x] = nearest_radius(squares_x[x] + square_y);
        for (const std::int32_t bin : bins) ++counts[static_cast<std::size_t>(bin)];
        for (std::ptrdiff_t z = 0; z < source.depth(); ++z) {
            double* const plane_sums = sums.data() + static_cast<std::size_t>(z) * length;
            for (std::ptrdiff_t x = 0; x < source.width(); ++x)
                plane_sums[bins[static_cast<std::size_t>(x)]] += static_cast<double>(source(x, y, z));
        }
    }
    for (std::ptrdiff_t z = 0; z < source.depth(); ++z)
        for (std::size_t r = 0; r < length; ++r) {
            const double sum = sums[static_cast<std::size_t>(z) * length + r];
            const double mean = counts[r] == 0 ? 0.0 : sum / static_cast<double>(counts[r]);
            profile(static_cast<std::ptrdiff_t>(r), z) = static_cast<Profile>(mean);
        }
}

#define INSTANTIATE(T)                                                                           \
    template void radial_survey(const image<const T>&, const radial_grid&, const image<float>&); \
    template void radial_survey(const image<const T>&, const radial_grid&, const image<double>&)
ZENTRIX_FOR_EIGHT_REALS(INSTANTIATE);
#undef INSTANTIATE

}  // namespace qorv::functions
