#include "functions/rank/nth_element.h"

#include "functions/rank/median.h"

#include "image/errors.h"
#include "tests/functions/rank/rank_pictures.h"

#include <algorithm>

using namespace qorv;
using namespace qorv::functions;
using namespace rank_pictures;

namespace {

template <class T>
class Selection : public testing::Test
{};
using real_types = testing::Types<float, double>;
TYPED_TEST_SUITE(Selection, real_types);

TYPED_TEST(Selection, PlacesEachRankAndPartsTheRestAroundIt)
{
    using T = TypeParam;
    for (std::ptrdiff_t count = 1; count <= 67; ++count)
        for (content what : contents_without_special())
            for (std::ptrdiff_t k = 0; k < count; ++k) {
                auto values = picture<T>(what, count, unsigned(count));
                auto sorted = values;
                std::sort(sorted.begin(), sorted.end());
                const T found = select(values.data(), values.data() + count, k);
                ASSERT_EQ(found, sorted[std::size_t(k)]) << count << " values, rank " << k;
                ASSERT_EQ(*std::max_element(values.begin(), values.begin() + k + 1), found);
                ASSERT_EQ(*std::min_element(values.begin() + k, values.end()), found);
                std::sort(values.begin(), values.end());
                ASSERT_EQ(values, sorted) << "not a permutation";
            }
}

TYPED_TEST(Selection, StaysInsideTheRangeWithNaNs)
{
    using T = TypeParam;
    for (std::ptrdiff_t count = 1; count <= 67; ++count)
        for (unsigned seed = 0; seed < 20; ++seed) {
            const auto values = picture<T>(content::nans, count, seed);
            support::framed<T> framed{values.size()};
            std::copy(values.begin(), values.end(), framed.inside());
            median_of(framed.inside(), framed.inside() + count);
            ASSERT_TRUE(framed.frame_untouched());
        }
}

TYPED_TEST(Selection, NthElementOfAnImageAgreesWithTheStandardLibraryInEveryVariant)
{
    using T = TypeParam;
    for (std::ptrdiff_t count : {1, 2, 3, 64, 999, 4096, 20000, 70001})
        for (content what : contents_without_special())
            for (std::ptrdiff_t k : {std::ptrdiff_t(0), count / 7, count / 2, count - 1 - count / 999, count - 1}) {
                const auto values = picture<T>(what, count);
                auto wanted = values;
                std::nth_element(wanted.begin(), wanted.begin() + k, wanted.end());
                for (const auto& v : variants(rank_variants<T>::table)) {
                    const dm::image<const T> view{values.data(), count};
                    const auto found = v.function(view, k, k > 0 ? neighbour::before : neighbour::none);
                    ASSERT_EQ(found.at, wanted[std::size_t(k)]) << v.name << ", rank " << k << " of " << count;
                    const T before = k > 0 ? *std::max_element(wanted.begin(), wanted.begin() + k) : T(0);
                    ASSERT_EQ(found.before, before) << v.name << ", before rank " << k;
                }
                ASSERT_EQ(values, picture<T>(what, count)) << "the source was reordered";
            }
}

TYPED_TEST(Selection, EveryVariantGivesThePlainBitsWithNaNsAndBothZeros)
{
    using T = TypeParam;
    for (std::ptrdiff_t count : {2, 3, 64, 999, 20000, 70001})
        for (content what : {content::zeros, content::nans})
            for (std::ptrdiff_t k = 1; k < count; k += 1 + count / 17) {
                auto values = picture<T>(what, count);
                if (what == content::zeros)  // the middle ranks are zeros of both signs
                    for (std::ptrdiff_t i = 0; i < count; i += 2) values[std::size_t(i)] = i % 3 ? T(0) : -T(0);
                const dm::image<const T> view{values.data(), count};
                const auto wanted = plain_of(rank_variants<T>::table)(view, k, neighbour::before);
                for (const auto& v : variants(rank_variants<T>::table)) {
                    const auto found = v.function(view, k, neighbour::before);
                    ASSERT_TRUE(support::same_bytes<T>({found.at, found.before}, {wanted.at, wanted.before}))
                        << v.name << ", rank " << k << " of " << count << ", content " << int(what);
                }
            }
}

TEST(SelectionOfAnImage, FindsRanksThatItsSampleMisses)
{
    for (float sampled : {-1e30f, 1e30f})
        for (std::ptrdiff_t k : {1000, 32000, 64000}) {
            auto values = picture<float>(content::noise, 65536);
            std::uint32_t random = 1;  // the vector form's own generator: it sees nothing but these pixels
            for (std::size_t start = 0; start < values.size(); start += 8) {
                random = random * 1664525u + 1013904223u;
                values[start + (random >> 8) % 8] = sampled;
            }
            const dm::image<const float> view{values.data(), 256, 256};
            auto sorted = values;
            std::sort(sorted.begin(), sorted.end());
            for (const auto& v : variants(rank_variants<float>::table)) {
                const auto found = v.function(view, k, neighbour::before);
                EXPECT_EQ(found.at, sorted[std::size_t(k)]) << v.name;
                EXPECT_EQ(found.before, sorted[std::size_t(k - 1)]) << v.name;
            }
        }
}

TEST(SelectionOfAnImage, MedianIsTheMiddleOrTheMeanOfTwo)
{
    const float largest = std::numeric_limits<float>::max();
    struct row
    {
        std::vector<float> values;
        float median;
    };
    for (const row& r : {row{{7}, 7},
                         {{3, 8}, 5.5f},
                         {{9, 1, 4}, 4},
                         {{4, 1, 3, 2}, 2.5f},
                         {{largest, largest}, std::numeric_limits<float>::infinity()}})
        EXPECT_EQ(median<float>({r.values.data(), std::ptrdiff_t(r.values.size())}), r.median);
}

TEST(SelectionOfAnImage, SeesStridedVolumes)
{
    const auto all = picture<float>(content::noise, 4000);
    const dm::image<const float> view{all.data(), {11, 7, 5}, {2, 40, 700}};
    std::vector<float> seen;
    support::for_each_place(view.sizes(), [&](auto... place) { seen.push_back(view(place...)); });
    std::sort(seen.begin(), seen.end());
    for (std::int32_t use : {0, 1}) {
        dm::set_use_simd(use);
        EXPECT_EQ(median<float>(view), seen[192]);
        EXPECT_EQ(nth_element<float>(view, 0), seen[0]);
    }
}

TEST(SelectionOfAnImage, RefusesARankOutsideAndNoData)
{
    const std::vector<float> four{1, 2, 3, 4};
    const dm::image<const float> image{four.data(), 2, 2}, null_image{nullptr, 2, 2}, none{four.data(), 0, 2};
    for (std::ptrdiff_t n : {-1, 4, 5})
        EXPECT_EQ(support::message_of([&] { nth_element<float>(image, n); }), dm::errors::parameters_invalid) << n;
    EXPECT_EQ(support::message_of([&] { nth_element<float>(null_image, 0); }), dm::errors::parameters_invalid);
    for (const auto& nothing : {null_image, none})
        EXPECT_EQ(support::message_of([&] { median<float>(nothing); }), dm::errors::parameters_invalid);
    EXPECT_EQ(nth_element<float>(image, 3), 4.0f);
}

}  // namespace
