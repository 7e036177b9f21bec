#include "functions/rank/nth_element.h"

#include "functions/rank/median.h"
#include "tests/functions/rank/rank_pictures.h"
#include "tests/support/canvas.h"

using namespace qorv::functions;
using namespace rank_pictures;

namespace {

template <class T>
class NthElement : public testing::Test
{};
TYPED_TEST_SUITE(NthElement, real_types);

TYPED_TEST(NthElement, SelectFindsEachRankAndKeepsAllValues)
{
    using T = TypeParam;
    for (std::ptrdiff_t count = 1; count <= 67; ++count)
        for (content what : all_contents)
            for (std::ptrdiff_t k = 0; k < count; ++k) {
                auto sorted = picture<T>(what, count, unsigned(count * 67 + k));
                support::framed<T> framed{sorted.size()};
                std::copy(sorted.begin(), sorted.end(), framed.inside());
                const T found = select(framed.inside(), framed.inside() + count, k);
                ASSERT_TRUE(framed.frame_untouched()) << "outside the range, content " << int(what);
                if (what == content::nans) continue;
                std::sort(sorted.begin(), sorted.end());
                ASSERT_EQ(found, sorted[std::size_t(k)]) << count << " values, rank " << k;
                ASSERT_TRUE(std::is_permutation(sorted.begin(), sorted.end(), framed.inside()));
            }
}

/// Every variant finds the elements at rank k and before it.
template <class T>
void expect_ranked(const std::vector<T>& values, std::ptrdiff_t k, const ranked<T>& expected, int what = 0)
{
    const image<const T> view{values.data(), std::ssize(values)};
    for (const auto& v : variants(rank_variants<T>())) {
        const auto found = v.function(view, k, k > 0 ? neighbour::before : neighbour::none);
        ASSERT_TRUE(support::same_bytes<T>({found.at, found.before}, {expected.at, expected.before}))
            << v.name << ", rank " << k << " of " << values.size() << ", content " << what;
    }
}

TYPED_TEST(NthElement, OfAnImageAgreesWithTheStandardLibraryInEveryVariant)
{
    using T = TypeParam;
    for (std::ptrdiff_t count : {1, 2, 3, 64, 999, 4096, 20000, 70001})
        for (content what : ordered_contents)
            for (std::ptrdiff_t k : {std::ptrdiff_t(0), count / 7, count / 2, count - 1 - count / 999, count - 1}) {
                const auto values = picture<T>(what, count);
                auto parted = values;
                std::nth_element(parted.begin(), parted.begin() + k, parted.end());
                const T before = k > 0 ? *std::max_element(parted.begin(), parted.begin() + k) : T(0);
                expect_ranked<T>(values, k, {parted[std::size_t(k)], before}, int(what));
            }
}

TEST(NthElementOfAnImage, FindsRanksOutsideItsSample)
{
    for (float sampled : {-1e30f, 1e30f})
        for (std::ptrdiff_t k : {1000, 32000, 64000}) {
            auto values = picture<float>(content::noise, 65536);
            std::uint32_t random = 1;  // the generator of the fast form, which samples exactly these pixels
            for (std::size_t start = 0; start < values.size(); start += 8) {
                random = random * 1664525u + 1013904223u;
                values[start + (random >> 8) % 8] = sampled;
            }
            auto sorted = values;
            std::sort(sorted.begin(), sorted.end());
            expect_ranked<float>(values, k, {sorted[std::size_t(k)], sorted[std::size_t(k - 1)]});
        }
}

TEST(NthElementOfAnImage, SeesStridedVolumes)
{
    auto all = picture<float>(content::noise, 4000);
    const image<float> view{all.data(), {11, 7, 5}, {2, 40, 700}};
    auto seen = support::pixels_of(view);
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(median<float>(view), seen[seen.size() / 2]);
}

}  // namespace
