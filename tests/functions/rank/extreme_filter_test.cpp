#include "functions/rank/extreme_filter.h"

#include "tests/functions/rank/rank_pictures.h"

using namespace qorv::functions;
using namespace rank_pictures;

namespace {

template <class T>
class ExtremeFilter : public testing::Test
{};
using element_types =
    testing::Types<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t, std::uint32_t, float, double>;
TYPED_TEST_SUITE(ExtremeFilter, element_types);

/// The extreme of all pixels of the window; one past the left or right edge also holds the start value.
template <class T>
T by_definition(const image<const T>& source, extreme which, std::ptrdiff_t radius, std::ptrdiff_t x, std::ptrdiff_t y)
{
    std::vector<T> window;
    for (std::ptrdiff_t v = std::max<std::ptrdiff_t>(y - radius, 0); v <= y + radius && v < source.height(); ++v)
        for (std::ptrdiff_t u = std::max<std::ptrdiff_t>(x - radius, 0); u <= x + radius && u < source.width(); ++u)
            window.push_back(source(u, v));
    using limits = std::numeric_limits<T>;
    if (x < radius || x + radius >= source.width())
        window.push_back(which == extreme::maximum ? limits::lowest() : limits::max());
    return which == extreme::maximum ? *std::max_element(window.begin(), window.end())
                                     : *std::min_element(window.begin(), window.end());
}

TYPED_TEST(ExtremeFilter, IsTheExtremeOfTheClippedWindow)
{
    for_each_plane<TypeParam>(
        small_planes, {0, 1, 2, 5, 12, 13, 14, 40, 2147483647}, ordered_contents, {extreme::minimum, extreme::maximum},
        [](auto plane, auto radius, extreme which) {
            const auto expected = at_every_pixel(
                plane, [&](auto x, auto y) { return by_definition<TypeParam>(plane, which, radius, x, y); });
            return every_variant_gives(expected, extreme_variants<TypeParam>(), plane, which, radius);
        });
}

TEST(ExtremeFilterPlain, KeepsANaNOnlyAtTheBottomOfAColumnAndOnlyInTheFirstSlot)
{
    const auto centre_with_nan_at = [&](int x, int y) {
        std::vector<float> pixels{1, 2, 3, 4, 5, 6, 7, 8, 9};
        pixels[static_cast<std::size_t>(3 * y + x)] = std::numeric_limits<float>::quiet_NaN();
        return run_plain<float>(extreme_variants<float>(), {pixels.data(), 3, 3}, extreme::maximum, 1)[4];
    };
    EXPECT_TRUE(std::isnan(centre_with_nan_at(0, 2)));  // the bottom of the column in the first slot
    EXPECT_EQ(centre_with_nan_at(2, 2), 8.0f);          // hides its column
    EXPECT_EQ(centre_with_nan_at(2, 1), 9.0f);          // replaced by the 9 below
}

}  // namespace
