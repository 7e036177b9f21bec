#include "functions/rank/median_filter.h"

#include "functions/rank/extreme_filter.h"
#include "tests/functions/rank/rank_pictures.h"

using namespace qorv::functions;
using namespace rank_pictures;

namespace {

template <class T>
class MedianFilter : public testing::Test
{};
TYPED_TEST_SUITE(MedianFilter, real_types);

template <class T>
T by_sorting(const image<const T>& source, std::ptrdiff_t radius, padding outside, std::ptrdiff_t x, std::ptrdiff_t y)
{
    std::vector<T> window;
    for (std::ptrdiff_t v = y - radius; v <= y + radius; ++v)
        for (std::ptrdiff_t u = x - radius; u <= x + radius; ++u)
            if (u >= 0 && u < source.width() && v >= 0 && v < source.height())
                window.push_back(source(u, v));
            else if (outside == padding::zeros)
                window.push_back(0);
    return median_by_sorting(window);
}

TYPED_TEST(MedianFilter, IsTheMiddleOfTheSortedWindow)
{
    using T = TypeParam;
    for_each_plane<T>(
        small_planes, {0, 1, 2, 3, 5, 9, 13, 17}, {content::noise, content::few_levels, content::infinities},
        {padding::none, padding::zeros}, [](auto plane, auto radius, padding outside) {
            const auto expected =
                at_every_pixel(plane, [&](auto x, auto y) { return by_sorting<T>(plane, radius, outside, x, y); });
            return every_variant_gives(expected, median_variants<T>(), plane, radius, outside);
        });
}

TEST(RankFilters, FilterEachPlaneOfAVolume)
{
    const auto pixels = picture<float>(content::noise, 126);
    const image<const float> volume{pixels.data(), 9, 7, 2}, second = volume.plane(1);
    std::vector<float> medians(126), minima(126);
    median_filter<float>(volume, 2, padding::none, {medians.data(), 9, 7, 2});
    minimum_filter<float>(volume, 2, {minima.data(), 9, 7, 2});
    const auto end_of = [](const std::vector<float>& all) { return std::vector<float>(all.begin() + 63, all.end()); };
    EXPECT_EQ(end_of(medians), run_plain(median_variants<float>(), second, 2, padding::none));
    EXPECT_EQ(end_of(minima), run_plain(extreme_variants<float>(), second, extreme::minimum, 2));
}

}  // namespace
