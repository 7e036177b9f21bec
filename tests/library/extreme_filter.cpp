#include "library/extreme_filter.h"

#include "image/errors.h"
#include "library/rank_pictures.h"

#include <algorithm>

using namespace qorv;
using namespace qorv::library;
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

template <class T>
std::vector<T> run(extreme_kernel<T>* kernel, const std::vector<T>& pixels, std::array<std::ptrdiff_t, 2> size,
                   extreme which, std::ptrdiff_t radius)
{
    support::framed<T> out{pixels.size()};
    kernel({pixels.data(), size[0], size[1]}, which, radius, {out.inside(), size[0], size[1]});
    EXPECT_TRUE(out.frame_untouched());
    return out.copy();
}

TYPED_TEST(ExtremeFilter, IsTheExtremeOfTheClippedWindow)
{
    using T = TypeParam;
    for (std::array<std::ptrdiff_t, 2> size :
         {std::array<std::ptrdiff_t, 2>{1, 1}, {2, 3}, {7, 1}, {1, 9}, {13, 11}, {37, 29}})
        for (std::ptrdiff_t radius : {0, 1, 2, 5, 12, 13, 14, 40, 2147483647})
            for (content what : contents_without_special())
                for (extreme which : {extreme::minimum, extreme::maximum}) {
                    const auto pixels = picture<T>(what, size[0] * size[1]);
                    const dm::image<const T> source{pixels.data(), size[0], size[1]};
                    std::vector<T> wanted;
                    for (std::ptrdiff_t y = 0; y < size[1]; ++y)
                        for (std::ptrdiff_t x = 0; x < size[0]; ++x)
                            wanted.push_back(by_definition(source, which, radius, x, y));
                    for (const auto& v : variants(extreme_variants<T>))
                        ASSERT_TRUE(support::same_bytes(run(v.function, pixels, size, which, radius), wanted))
                            << v.name << ", " << where(size[0], size[1], radius, what);
                }
}

TYPED_TEST(ExtremeFilter, EveryVariantGivesThePlainBits)
{
    using T = TypeParam;
    for (auto size : planes())
        for (std::ptrdiff_t radius : {0, 1, 2, 5, 31, 67, 2147483647})
            for (content what : all_contents())
                for (extreme which : {extreme::minimum, extreme::maximum}) {
                    const auto pixels = picture<T>(what, size[0] * size[1], unsigned(radius));
                    const auto wanted = run(&extreme_plain<T>, pixels, size, which, radius);
                    for (const auto& v : variants(extreme_variants<T>))
                        ASSERT_TRUE(support::same_bytes(run(v.function, pixels, size, which, radius), wanted))
                            << v.name << ", " << where(size[0], size[1], radius, what);
                }
}

TYPED_TEST(ExtremeFilter, TakesVolumesPlaneByPlaneAndStridedViews)
{
    using T = TypeParam;
    const auto pixels = picture<T>(content::noise, 40 * 30 * 3);
    const typename dm::image<T>::extents sizes{17, 13, 3};
    for (const typename dm::image<T>::extents& strides :
         {typename dm::image<T>::extents{1, 40, 1200}, {2, 40, 1200}, {40, 1, 1200}, {1, 120, 40}})
        for (std::int32_t use : {0, 1}) {
            dm::set_use_simd(use);
            const dm::image<const T> source{pixels.data(), sizes, strides};
            std::vector<T> out(pixels.size(), T(7));
            const dm::image<T> destination{out.data(), sizes, strides};
            maximum_filter<T>(source, 2, destination);
            for (std::ptrdiff_t z = 0; z < 3; ++z)
                for (std::ptrdiff_t y = 0; y < 13; ++y)
                    for (std::ptrdiff_t x = 0; x < 17; ++x) {
                        ASSERT_EQ(destination(x, y, z), by_definition(source.plane(z), extreme::maximum, 2, x, y));
                        destination(x, y, z) = T(7);
                    }
            ASSERT_EQ(out, std::vector<T>(pixels.size(), T(7))) << "written between the strides";
        }
    dm::set_use_simd(1);
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
                             {four, wide, 1, dm::errors::different_size},
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
        return run(&extreme_plain<float>, pixels, {3, 3}, extreme::maximum, 1)[4];
    };
    EXPECT_TRUE(std::isnan(centre_of(0, 2)));  // the first slot's last
    EXPECT_EQ(centre_of(2, 2), 8.0f);          // hides its column
    EXPECT_EQ(centre_of(2, 1), 9.0f);          // replaced by the 9 below
}

}  // namespace
