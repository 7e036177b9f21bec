#include "functions/rank/median_filter.h"

#include "image/errors.h"
#include "tests/functions/rank/rank_pictures.h"

#include <algorithm>

using namespace qorv;
using namespace qorv::functions;
using namespace rank_pictures;

namespace {

template <class T>
class MedianFilter : public testing::Test
{};
using real_types = testing::Types<float, double>;
TYPED_TEST_SUITE(MedianFilter, real_types);

template <class T>
T by_sorting(const dm::image<const T>& source, std::ptrdiff_t radius, padding outside, std::ptrdiff_t x,
             std::ptrdiff_t y)
{
    std::vector<T> window;
    for (std::ptrdiff_t v = y - radius; v <= y + radius; ++v)
        for (std::ptrdiff_t u = x - radius; u <= x + radius; ++u)
            if (u >= 0 && u < source.width() && v >= 0 && v < source.height())
                window.push_back(source(u, v));
            else if (outside == padding::zeros)
                window.push_back(0);
    std::sort(window.begin(), window.end());
    const T middle = window[window.size() / 2];
    return window.size() % 2 != 0 ? middle : (middle + window[window.size() / 2 - 1]) * T(0.5);
}

TYPED_TEST(MedianFilter, IsTheMiddleOfTheSortedWindow)
{
    using T = TypeParam;
    for (const extent size : small_planes)
        for (std::ptrdiff_t radius : {0, 1, 2, 3, 5, 9, 13, 17})
            for (content what : {content::noise, content::few_levels, content::infinities})
                for (padding outside : {padding::none, padding::zeros}) {
                    const auto pixels = picture<T>(what, size[0] * size[1]);
                    const dm::image<const T> plane{pixels.data(), size[0], size[1]};
                    const auto wanted = at_every_pixel(
                        plane, [&](auto& p, auto x, auto y) { return by_sorting<T>(p, radius, outside, x, y); });
                    ASSERT_TRUE(every_variant_gives(wanted, median_variants<T>::table, plane, radius, outside))
                        << int(what);
                }
}

TYPED_TEST(MedianFilter, EveryVariantGivesThePlainBits)
{
    using T = TypeParam;
    const auto expect = [](extent size, std::ptrdiff_t radius, const std::vector<content>& contents) {
        for (content what : contents)
            for (padding outside : {padding::none, padding::zeros}) {
                const auto pixels = picture<T>(what, size[0] * size[1], unsigned(radius));
                const dm::image<const T> plane{pixels.data(), size[0], size[1]};
                const auto wanted = run(plain_of(median_variants<T>::table), plane, radius, outside);
                ASSERT_TRUE(every_variant_gives(wanted, median_variants<T>::table, plane, radius, outside))
                    << int(what);
            }
    };
    for (const extent size : planes())
        for (std::ptrdiff_t radius : {0, 1, 2, 3, 5, 20, 66, 70, 2147483647})
            if (size[0] * size[1] * std::min(radius, size[0]) * std::min(radius, size[1]) <= 60000)  // plain is slow
                expect(size, radius, all_contents());
    for (const extent size : {extent{301, 90}, {90, 150}})
        for (std::ptrdiff_t radius : {1, 2, 7}) expect(size, radius, {content::noise, content::zeros});
}

TEST(MedianFilterEntry, TakesVolumesPlaneByPlaneAndStridedViews)
{
    for (std::int32_t radius : {1, 2, 4})
        expect_filters_strided_volumes<float>(
            [&](auto& source, auto& destination) { median_filter<float>(source, radius, padding::none, destination); },
            [&](auto&& plane, auto x, auto y) { return by_sorting<float>(plane, radius, padding::none, x, y); });
}

TEST(MedianFilterEntry, RefusesInThisOrderAndWritesNothing)
{
    std::vector<double> room(64, 3.0);
    const dm::image<double> null_image{nullptr, 4, 4}, four{room.data(), 4, 4}, next{room.data() + 16, 4, 4},
        wide{room.data() + 16, 5, 4};
    constexpr std::int32_t too_far = 536870912;  // (2 * too_far + 1)^2 is the first to pass 2^60 - 1 doubles
    struct refusal
    {
        dm::image<double> source, destination;
        std::int32_t radius;
        padding outside;
        const char* text;
    };
    for (const refusal& r : {refusal{null_image, wide, too_far, padding::zeros, dm::errors::parameters_invalid},
                             {four, null_image, 1, padding::none, dm::errors::parameters_invalid},
                             {four, wide, -1, padding::zeros, dm::errors::parameters_invalid},
                             {four, wide, too_far, padding::zeros, "vector<T> too long"},
                             {four, wide, too_far, padding::none, dm::errors::different_size},
                             {four, four, 1, padding::none, dm::errors::out_of_place},
                             {four, next, too_far, padding::none, ""}}) {
        const auto call = [&] { median_filter<double>(r.source, r.radius, r.outside, r.destination); };
        EXPECT_EQ(support::message_of(call), r.text);
        EXPECT_EQ(std::count(room.begin(), room.end(), 3.0), 64);
    }
    median_filter<double>(four, too_far - 1, padding::zeros, next);
    EXPECT_EQ(std::count(room.begin(), room.end(), 0.0), 16) << "zeros are the majority";
}

}  // namespace
