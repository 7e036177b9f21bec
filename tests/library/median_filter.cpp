#include "library/median_filter.h"

#include "image/errors.h"
#include "library/rank_pictures.h"

#include <algorithm>

using namespace qorv;
using namespace qorv::library;
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

template <class T>
std::vector<T> run(median_kernel<T>* kernel, const std::vector<T>& pixels, std::array<std::ptrdiff_t, 2> size,
                   std::ptrdiff_t radius, padding outside)
{
    support::framed<T> out{pixels.size()};
    kernel({pixels.data(), size[0], size[1]}, radius, outside, {out.inside(), size[0], size[1]});
    EXPECT_TRUE(out.frame_untouched());
    return out.copy();
}

TYPED_TEST(MedianFilter, IsTheMiddleOfTheSortedWindow)
{
    using T = TypeParam;
    for (std::array<std::ptrdiff_t, 2> size :
         {std::array<std::ptrdiff_t, 2>{1, 1}, {2, 3}, {7, 1}, {1, 9}, {13, 11}, {31, 33}})
        for (std::ptrdiff_t radius : {0, 1, 2, 3, 5, 9, 13, 17})
            for (content what : {content::noise, content::few_levels, content::infinities})
                for (padding outside : {padding::none, padding::zeros}) {
                    const auto pixels = picture<T>(what, size[0] * size[1]);
                    const dm::image<const T> source{pixels.data(), size[0], size[1]};
                    std::vector<T> wanted;
                    for (std::ptrdiff_t y = 0; y < size[1]; ++y)
                        for (std::ptrdiff_t x = 0; x < size[0]; ++x)
                            wanted.push_back(by_sorting(source, radius, outside, x, y));
                    for (const auto& v : variants(median_variants<T>))
                        ASSERT_TRUE(support::same_bytes(run(v.function, pixels, size, radius, outside), wanted))
                            << v.name << ", " << where(size[0], size[1], radius, what);
                }
}

TYPED_TEST(MedianFilter, EveryVariantGivesThePlainBits)
{
    using T = TypeParam;
    for (auto size : planes())
        for (std::ptrdiff_t radius : {0, 1, 2, 3, 5, 20, 66, 70, 2147483647}) {
            if (size[0] * size[1] * std::min(radius, size[0]) * std::min(radius, size[1]) > 60000)
                continue;  // too long for the plain one
            for (content what : all_contents())
                for (padding outside : {padding::none, padding::zeros}) {
                    const auto pixels = picture<T>(what, size[0] * size[1], unsigned(radius));
                    const auto wanted = run(&median_plain<T>, pixels, size, radius, outside);
                    for (const auto& v : variants(median_variants<T>))
                        ASSERT_TRUE(support::same_bytes(run(v.function, pixels, size, radius, outside), wanted))
                            << v.name << ", " << where(size[0], size[1], radius, what);
                }
        }
}

TYPED_TEST(MedianFilter, LargePlanesAgreeToo)
{
    using T = TypeParam;
    for (std::array<std::ptrdiff_t, 2> size : {std::array<std::ptrdiff_t, 2>{301, 90}, {90, 150}})
        for (std::ptrdiff_t radius : {1, 2, 7})
            for (content what : {content::noise, content::zeros})
                for (padding outside : {padding::none, padding::zeros}) {
                    const auto pixels = picture<T>(what, size[0] * size[1], unsigned(radius));
                    const auto wanted = run(&median_plain<T>, pixels, size, radius, outside);
                    for (const auto& v : variants(median_variants<T>))
                        ASSERT_TRUE(support::same_bytes(run(v.function, pixels, size, radius, outside), wanted))
                            << v.name << ", " << where(size[0], size[1], radius, what);
                }
}

TEST(MedianFilterEntry, TakesVolumesPlaneByPlaneAndStridedViews)
{
    const auto pixels = picture<float>(content::noise, 40 * 30 * 3);
    const dm::image<float>::extents sizes{17, 13, 3};
    for (const dm::image<float>::extents& strides :
         {dm::image<float>::extents{1, 40, 1200}, {2, 40, 1200}, {40, 1, 1200}, {1, 120, 40}})
        for (std::int32_t radius : {1, 2, 4})
            for (std::int32_t use : {0, 1}) {
                dm::set_use_simd(use);
                const dm::image<const float> source{pixels.data(), sizes, strides};
                std::vector<float> out(pixels.size(), 7);
                const dm::image<float> destination{out.data(), sizes, strides};
                median_filter<float>(source, radius, padding::none, destination);
                for (std::ptrdiff_t z = 0; z < 3; ++z)
                    for (std::ptrdiff_t y = 0; y < 13; ++y)
                        for (std::ptrdiff_t x = 0; x < 17; ++x) {
                            ASSERT_EQ(destination(x, y, z), by_sorting(source.plane(z), radius, padding::none, x, y));
                            destination(x, y, z) = 7;
                        }
                ASSERT_EQ(out, std::vector<float>(pixels.size(), 7)) << "written between the strides";
            }
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
