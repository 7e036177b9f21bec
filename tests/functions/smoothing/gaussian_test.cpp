#include "functions/smoothing/gaussian.h"

#include "tests/support/canvas.h"
#include "tests/support/same_bytes.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace qorv;
using namespace qorv::functions;
using namespace support;
using extents = dm::image<float>::extents;

template <class T>
class gaussian_test : public testing::Test
{
  protected:
    void SetUp() override { dm::read_processor_features(); }
};
using real_types = testing::Types<float, double>;
TYPED_TEST_SUITE(gaussian_test, real_types);

TEST(GaussianWeights, AreAsManyAsTheWindowAndTheLineNeed)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const std::tuple<double, std::int32_t, std::ptrdiff_t, std::size_t> rows[] = {
        {1.5, 3, 100, 6},    {2, 3, 100, 7}, {0, 5, 100, 1},      {5, 0, 100, 1},
        {infinity, 0, 9, 1}, {2, 3, 4, 4},   {infinity, 1, 9, 9}, {1e300, 2147483647, 9, 9}};
    for (const auto& [sigma, order, limit, length] : rows)
        EXPECT_EQ(gaussian_weights(sigma, order, limit).size(), length) << sigma << " " << order;
}

/// The two-dimensional sum written out: the weights of a separable window, renormalised over the pixels that exist.
TYPED_TEST(gaussian_test, AgreesWithTheTwoDimensionalSum)
{
    for (const auto& [sigma, order, reach] : {std::tuple{0.7, 3, 3}, {1.5, 3, 5}, {4.0, 2, 8}, {30.0, 3, 90}}) {
        const canvas<TypeParam> from{{23, 17, 2}, sparse}, to{{23, 17, 2}, gapped, 2};
        gaussian_blur(from.view(), to.view(), sigma, order);
        for (std::ptrdiff_t y = 0; y < 17; ++y)
            for (std::ptrdiff_t x = 0; x < 23; ++x) {
                double sum = 0, weight = 0;
                for (std::ptrdiff_t v = 0; v < 17; ++v)
                    for (std::ptrdiff_t u = 0; u < 23; ++u) {
                        if (std::abs(u - x) > reach || std::abs(v - y) > reach) continue;
                        const double w = std::exp(-((u - x) * (u - x) + (v - y) * (v - y)) / (2 * sigma * sigma));
                        sum += w * from.view()(u, v, 1), weight += w;
                    }
                ASSERT_NEAR(to.view()(x, y, 1), sum / weight, sizeof(TypeParam) == 4 ? 1e-4 : 1e-11) << x << " " << y;
            }
    }
}

TYPED_TEST(gaussian_test, CopiesForOneWeightAndKeepsNegativeZeros)
{
    for (const auto& [sigma, order] : {std::pair{0.0, 3}, {4.0, 0}}) {
        const canvas<TypeParam> from{{21, 9, 3}}, to{{21, 9, 3}, gapped, 2};
        from.view()(0) = TypeParam(-0.0);
        gaussian_blur(from.view(), to.view(), sigma, order);
        EXPECT_TRUE(support::same_bytes(to.pixels(), from.pixels()));
    }
    const canvas<TypeParam> zeros{{40, 40, 1}};
    std::fill_n(zeros.view().data(), 1600, TypeParam(-0.0));
    gaussian_blur(zeros.view(), zeros.view(), 2.5, 4);
    for (const TypeParam value : zeros.pixels()) ASSERT_TRUE(value == 0 && std::signbit(value));
}

}  // namespace
