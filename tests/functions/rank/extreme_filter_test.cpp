#include "functions/rank/extreme_filter.h"

#include "image/errors.h"
#include "tests/functions/rank/rank_pictures.h"

#include <algorithm>

using namespace qorv;
using namespace qorv::functions;
using namespace rank_pictures;

namespace {

template <class T>
class ExtremeFilter : public testing::Test
{};
using element_types =
    testing::Types<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t, std::uint32_t, float, double>;
TYPED_TEST_SUITE(ExtremeFilter, element_types);

/// The window's extreme by looking at all of it; a window past the left or right edge also holds the start value.
template <class T>
T by_definition(const dm::image<const T>& source, extreme which, std::ptrdiff_t radius, std::ptrdiff_t x,
                std::ptrdiff_t y)
{
    std::vector<T> window;
    for (std::ptrdiff_t v = std::max<std::ptrdiff_t>(y - radius, 0); v <= std::min(y + radius, source.height() - 1);
         ++v)
        for (std::ptrdiff_t u = std::max<std::ptrdiff_t>(x - radius, 0); u <= std::min(x + radius, source.width() - 1);
             ++u)
            window.push_back(source(u, v));
    const bool outside = x < radius || x + radius >= source.width();
    using limits = std::numeric_limits<T>;
    if (which == extreme::maximum)
        return std::max(*std::max_element(window.begin(), window.end()), outside ? limits::lowest() : window[0]);
    return std::min(*std::min_element(window.begin(), window.end()), outside ? limits::max() : window[0]);
}

TYPED_TEST(ExtremeFilter, IsTheExtremeOfTheClippedWindow)
{
    using T = TypeParam;
    for (const extent size : small_planes)
        for (std::ptrdiff_t radius : {0, 1, 2, 5, 12, 13, 14, 40, 2147483647})
            for (content what : contents_without_special())
                for (extreme which : {extreme::minimum, extreme::maximum}) {
                    const auto pixels = picture<T>(what, size[0] * size[1]);
                    const dm::image<const T> plane{pixels.data(), size[0], size[1]};
                    const auto wanted = at_every_pixel(
                        plane, [&](auto& p, auto x, auto y) { return by_definition<T>(p, which, radius, x, y); });
                    ASSERT_TRUE(every_variant_gives(wanted, extreme_variants<T>::table, plane, which, radius))
                        << int(what);
                }
}

TYPED_TEST(ExtremeFilter, EveryVariantGivesThePlainBits)
{
    using T = TypeParam;
    for (const extent size : planes())
        for (std::ptrdiff_t radius : {0, 1, 2, 5, 31, 67, 2147483647})
            for (content what : all_contents())
                for (extreme which : {extreme::minimum, extreme::maximum}) {
                    const auto pixels = picture<T>(what, size[0] * size[1], unsigned(radius));
                    const dm::image<const T> plane{pixels.data(), size[0], size[1]};
                    const auto wanted = run(plain_of(extreme_variants<T>::table), plane, which, radius);
                    ASSERT_TRUE(every_variant_gives(wanted, extreme_variants<T>::table, plane, which, radius))
                        << int(what);
                }
}

TYPED_TEST(ExtremeFilter, TakesVolumesPlaneByPlaneAndStridedViews)
{
    using T = TypeParam;
    expect_filters_strided_volumes<T>(
        [](auto& source, auto& destination) { maximum_filter<T>(source, 2, destination); },
        [](auto&& plane, auto x, auto y) { return by_definition<T>(plane, extreme::maximum, 2, x, y); });
}

TEST(ExtremeFilterRefuses, InThisOrderAndWritesNothing)
{
    std::vector<float> room(64, 3.0f);
    const dm::image<float> null_image{nullptr, 4, 4}, four{room.data(), 4, 4}, next{room.data() + 16, 4, 4},
        shifted{room.data() + 15, 4, 4}, wide{room.data() + 16, 5, 4};
    struct refusal
    {
        dm::image<float> source, destination;
        std::int32_t radius;
        const char* text;
    };
    for (const refusal& r : {refusal{null_image, wide, 1, dm::errors::parameters_invalid},
                             {four, null_image, 1, dm::errors::parameters_invalid},
                             {four, wide, -1, dm::errors::parameters_invalid},
                             {shifted, wide, 1, dm::errors::different_size},
                             {four, four, 0, dm::errors::out_of_place},
                             {four, shifted, 1, dm::errors::out_of_place},
                             {four, next, 1, ""}}) {
        const auto call = [&] { minimum_filter<float>(r.source, r.radius, r.destination); };
        EXPECT_EQ(support::message_of(call), r.text);
        EXPECT_EQ(std::count(room.begin(), room.end(), 3.0f), 64);
    }
}

TEST(ExtremeFilterPlain, TakesANaNOnlyAsAColumnsLastAndOnlyFromTheFirstSlot)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto centre_of = [&](int x, int y) {
        std::vector<float> pixels{1, 2, 3, 4, 5, 6, 7, 8, 9};
        pixels[static_cast<std::size_t>(3 * y + x)] = nan;
        return run(plain_of(extreme_variants<float>::table), dm::image<const float>{pixels.data(), 3, 3},
                   extreme::maximum, 1)[4];
    };
    EXPECT_TRUE(std::isnan(centre_of(0, 2)));  // the first slot's last
    EXPECT_EQ(centre_of(2, 2), 8.0f);          // hides its column
    EXPECT_EQ(centre_of(2, 1), 9.0f);          // replaced by the 9 below
}

}  // namespace
