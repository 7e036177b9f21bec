#include "functions/statistics/survey.h"

#include "tests/support/canvas.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>

namespace {

using namespace qorv;
using namespace qorv::functions;
using support::canvas;

template <class T>
class survey_test : public testing::Test
{
  protected:
    void SetUp() override { dm::read_processor_features(); }
};
using real_types =
    testing::Types<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t, std::uint32_t, float, double>;
TYPED_TEST_SUITE(survey_test, real_types);

TYPED_TEST(survey_test, AgreesWithSortingAndExtendedSums)
{
    for (const auto& row : dm::runnable(survey_variants<TypeParam>()))
        for (std::ptrdiff_t n = 1; n <= 67; ++n)
            for (const auto& how : {support::dense, support::gapped, support::sparse}) {
                const canvas<TypeParam> image{{n, n == 1 ? 1 : 3, n == 1 ? 1 : 2}, how, static_cast<unsigned>(n)};
                auto pixels = image.pixels();
                std::sort(pixels.begin(), pixels.end());
                long double sum = 0, squares = 0, absolutes = 0;
                for (const TypeParam p : pixels) {
                    const long double v = p;
                    sum += v, squares += v * v, absolutes += std::abs(v);
                }
                const survey_record got = row.function(image.view());
                EXPECT_EQ(got.count, image.view().size());
                EXPECT_EQ(got.minimum, double(pixels.front())) << row.name << n;
                EXPECT_EQ(got.maximum, double(pixels.back())) << row.name << n;
                EXPECT_NEAR(got.sum, double(sum), 1e-12 * double(absolutes)) << row.name << n;
                EXPECT_NEAR(got.sum_of_squares, double(squares), 1e-12 * double(squares)) << row.name << n;
                EXPECT_NEAR(got.sum_of_absolutes, double(absolutes), 1e-12 * double(absolutes)) << row.name << n;
            }
}

TYPED_TEST(survey_test, OfNoElementIsTheEmptyRange)
{
    TypeParam value{};
    for (const auto& row : dm::runnable(survey_variants<TypeParam>())) {
        const survey_record none = row.function(dm::image<const TypeParam>{&value, 0, 3});
        EXPECT_EQ(none.count, 0);
        EXPECT_TRUE(none.minimum == 1.7976931348623157e308 && none.maximum == -1.7976931348623157e308) << row.name;
    }
}

template <class T>
void check_nans_passed_over()
{
    const double nan = std::numeric_limits<double>::quiet_NaN(), infinity = std::numeric_limits<double>::infinity();
    for (const auto& row : dm::runnable(survey_variants<T>()))
        for (std::ptrdiff_t x = 0; x < 21; ++x) {
            const canvas<T> image{{21, 1, 1}};
            image.view()(x) = static_cast<T>(nan);
            auto pixels = image.pixels();
            pixels.erase(pixels.begin() + x);
            const auto [low, high] = std::minmax_element(pixels.begin(), pixels.end());
            const survey_record got = row.function(image.view());
            EXPECT_TRUE(got.minimum == double(*low) && got.maximum == double(*high)) << row.name << x;
            EXPECT_TRUE(std::isnan(got.sum) && std::isnan(got.sum_of_squares) && std::isnan(got.sum_of_absolutes));
            image.view()((x + 8) % 21) = static_cast<T>(-infinity);
            EXPECT_EQ(row.function(image.view()).minimum, -infinity) << row.name << x;
        }
}

TEST(survey, MinimumAndMaximumPassOverNans)
{
    dm::read_processor_features();
    check_nans_passed_over<float>();
    check_nans_passed_over<double>();
}

}  // namespace
