#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstdint>
#include <limits>
#include <random>
#include <tuple>
#include <type_traits>
#include <vector>

#include "functions/reciprocal/weight.h"
#include "functions/statistics/center_of_mass.h"
#include "functions/statistics/min_max.h"
#include "functions/statistics/radial_survey.h"
#include "functions/statistics/survey.h"
#include "functions/statistics/survey_difference.h"
#include "image/errors.h"
#include "tests/support/canvas.h"
#include "tests/support/same_bytes.h"

namespace {

using namespace qorv;
using dm::image;
using support::canvas;
using support::message_of;

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// Fills a view with whole numbers in a narrow range, so that values repeat and sums are exact, and returns them.
template <class T>
std::vector<T> few_values(const canvas<T>& to, unsigned seed)
{
    std::mt19937 random{seed};
    support::for_each_place(to.view().sizes(), [&](auto... place) {
        to.view()(place...) = static_cast<T>(static_cast<int>(random() % 100) - (std::is_signed_v<T> ? 50 : 0));
    });
    return to.pixels();
}

template <class T>
class real_statistics : public testing::Test
{
  protected:
    void SetUp() override { dm::read_processor_features(); }
};
using real_types =
    testing::Types<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t, std::uint32_t, float, double>;
TYPED_TEST_SUITE(real_statistics, real_types);

constexpr image<float>::extents sizes[] = {{1, 1, 1}, {2, 1, 1}, {1, 5, 1}, {7, 3, 1}, {65, 4, 1}, {131, 3, 3}};

TYPED_TEST(real_statistics, AgreesWithSortingAndExtendedSums)
{
    TypeParam value{};
    for (const auto& row : dm::runnable(functions::survey_variants<TypeParam>())) {
        const functions::survey_record none = row.function(image<const TypeParam>{&value, 0, 3});
        EXPECT_TRUE(none.count == 0 && none.minimum == 1.7976931348623157e308 && none.maximum == -none.minimum);
        for (std::ptrdiff_t n = 1; n <= 67; ++n)
            for (const auto& how : {support::dense, support::gapped, support::sparse}) {
                const canvas<TypeParam> volume{{n, n == 1 ? 1 : 3, n == 1 ? 1 : 2}, how, static_cast<unsigned>(n)};
                auto pixels = volume.pixels();
                std::sort(pixels.begin(), pixels.end());
                long double sum = 0, squares = 0, absolutes = 0;
                for (const TypeParam p : pixels) {
                    const long double v = p;
                    sum += v, squares += v * v, absolutes += std::abs(v);
                }
                const functions::survey_record got = row.function(volume.view());
                EXPECT_EQ(got.count, volume.view().size());
                EXPECT_EQ(got.minimum, double(pixels.front())) << row.name << n;
                EXPECT_EQ(got.maximum, double(pixels.back())) << row.name << n;
                EXPECT_NEAR(got.sum, double(sum), 1e-12 * double(absolutes)) << row.name << n;
                EXPECT_NEAR(got.sum_of_squares, double(squares), 1e-12 * double(squares)) << row.name << n;
                EXPECT_NEAR(got.sum_of_absolutes, double(absolutes), 1e-12 * double(absolutes)) << row.name << n;
            }
    }
}

template <class T>
void check_nans_are_ignored()
{
    for (const auto& row : dm::runnable(functions::survey_variants<T>()))
        for (std::ptrdiff_t x = 0; x < 21; ++x) {
            const canvas<T> line{{21, 1, 1}};
            line.view()(x) = static_cast<T>(nan);
            auto pixels = line.pixels();
            pixels.erase(pixels.begin() + x);
            const auto [low, high] = std::minmax_element(pixels.begin(), pixels.end());
            const functions::survey_record got = row.function(line.view());
            EXPECT_TRUE(got.minimum == double(*low) && got.maximum == double(*high)) << row.name << x;
            EXPECT_TRUE(std::isnan(got.sum) && std::isnan(got.sum_of_squares) && std::isnan(got.sum_of_absolutes));
            line.view()((x + 8) % 21) = static_cast<T>(-inf);
            EXPECT_EQ(row.function(line.view()).minimum, -inf) << row.name << x;
        }
}

TEST(Survey, MinimumAndMaximumIgnoreNans)
{
    dm::read_processor_features();
    check_nans_are_ignored<float>();
    check_nans_are_ignored<double>();
}

TYPED_TEST(real_statistics, SumsOfTwoImagesAreRightToTheLastBits)
{
    for (const auto& size : sizes)
        for (const auto how : {support::dense, support::sparse}) {
            const canvas<TypeParam> first{size, how, 1}, second{size, support::dense, 2};
            const auto a = first.pixels(), b = second.pixels();
            long double expected[7] = {}, magnitude[7] = {};
            for (std::size_t i = 0; i < a.size(); ++i) {
                const long double u = a[i], v = b[i];
                const long double terms[7] = {u, u * u, v, v * v, u - v, (u - v) * (u - v), std::abs(u - v)};
                for (int k = 0; k < 7; ++k) expected[k] += terms[k], magnitude[k] += std::abs(terms[k]);
            }
            const auto [sum1, square_sum1, sum2, square_sum2, difference, squares, absolutes] =
                functions::survey_difference<TypeParam>(first.view(), second.view());
            const double got[7] = {sum1, square_sum1, sum2, square_sum2, difference, squares, absolutes};
            for (int k = 0; k < 7; ++k)
                EXPECT_LE(std::abs(got[k] - expected[k]), 1e-13L * magnitude[k]) << "sum " << k << " of " << a.size();
        }
}

TYPED_TEST(real_statistics, ExtremesAreTheFirstOfTheirValue)
{
    for (const auto& size : sizes)
        for (unsigned seed = 1; seed < 6; ++seed)
            for (const auto how : {support::dense, support::sparse}) {
                const canvas<TypeParam> source{size, how};
                const auto pixels = few_values(source, seed);
                const auto least = std::min_element(pixels.begin(), pixels.end());
                const auto most = std::max_element(pixels.begin(), pixels.end());
                const auto is = [&](const functions::extremum& e, auto expected) {
                    return e.x + size[0] * (e.y + size[1] * e.z) == expected - pixels.begin() &&
                           e.value == static_cast<double>(*expected);
                };
                const auto [smallest, greatest] = functions::min_max<TypeParam>(source.view());
                EXPECT_TRUE(is(smallest, least) && is(greatest, most));
                EXPECT_TRUE(is(functions::min_of<TypeParam>(source.view()), least));
                EXPECT_TRUE(is(functions::max_of<TypeParam>(source.view()), most));
            }
}

TEST(MinMax, IgnoresNans)
{
    const std::tuple<std::vector<double>, double, double, int, int> rows[] = {
        {{nan, 3, nan, 1}, 1, 3, 3, 1},
        {{nan, inf, nan}, inf, inf, 1, 1},
        {{-inf, nan, inf}, -inf, inf, 0, 2},
        {{0.0, -0.0, nan}, 0, 0, 0, 0},
    };
    for (const auto& [row, min, max, min_x, max_x] : rows)
        for (int before : {0, 16}) {  // alone, and after enough NaNs to reach the vectorised part of the loop
            std::vector<double> pixels(static_cast<std::size_t>(before), nan);
            pixels.insert(pixels.end(), row.begin(), row.end());
            const auto got = functions::min_max<double>({pixels.data(), static_cast<std::ptrdiff_t>(pixels.size())});
            EXPECT_TRUE(got.smallest.value == min && got.smallest.x == min_x + before);
            EXPECT_TRUE(got.greatest.value == max && got.greatest.x == max_x + before);
        }
    const auto none = functions::min_max<double>({&nan, 1});
    EXPECT_TRUE(std::isnan(none.smallest.value) && none.greatest.x == 0);
}

TEST(RadialSurvey, IsTheMeanOfEachRoundedRadiusInEachPlane)
{
    const functions::radial_grid grids[] = {{8, 8, 1, 1}, {0, 0, 1, 1}, {20, -3, 1, 1}, {5, 9, 2, 0.5}, {8, 4, 1, 0}};
    for (const auto& g : grids)
        for (std::ptrdiff_t depth : {1, 3}) {
            const canvas<std::int16_t> source{{17, 13, depth}};
            few_values(source, 4);
            const std::ptrdiff_t length = functions::radial_length(g, {17, 13, depth});
            support::framed<float> profile{static_cast<std::size_t>(length * depth)};
            functions::radial_survey<std::int16_t, float>(source.view(), g, {profile.inside(), length, depth});
            EXPECT_TRUE(profile.frame_untouched());
            std::vector<double> sums(profile.size()), counts(profile.size());
            support::for_each_place({17, 13, depth}, [&](auto x, auto y, auto z) {
                const double dx = static_cast<double>(x - g.center_x) * g.scale_x,
                             dy = static_cast<double>(y - g.center_y) * g.scale_y;
                const auto r = static_cast<std::size_t>(std::floor(std::hypot(dx, dy) + 0.5)) +
                               static_cast<std::size_t>(z * length);
                sums.at(r) += source.view()(x, y, z), ++counts.at(r);
            });
            EXPECT_GT(counts.back(), 0) << "the farthest pixel sets the length";
            for (std::size_t r = 0; r < sums.size(); ++r)
                EXPECT_EQ(profile.inside()[r], counts[r] == 0 ? 0 : static_cast<float>(sums[r] / counts[r])) << r;
        }
}

TEST(RadialSurvey, RefusesProfilesThatNoImageNeeds)
{
    const std::tuple<functions::radial_grid, image<float>::extents, bool> rows[] = {
        {{0, 0, inf, 1}, {100, 100, 1}, true},         {{0, 0, nan, 1}, {100, 100, 1}, true},
        {{0, 0, 1e9, 1}, {100, 100, 1}, true},         {{16'000'000, 0, 1, 1}, {4, 4, 1}, false},
        {{16'000'000, 0, 1, 1}, {4, 4, 2}, true},      {{0, 0, 0, 1}, {1 << 15, 1 << 15, 1000}, false},
        {{0, 0, 1e12, 1}, {1 << 20, 1 << 20, 1}, true}};
    for (const auto& [grid, extents, refused] : rows)
        EXPECT_EQ(message_of([&, g = grid, e = extents] { functions::radial_length(g, e); }),
                  refused ? dm::errors::parameters_invalid : "")
            << grid.scale_x << " " << extents[2];
}

/// A blob whose pixels mirror about its centre, on zero ground: its centre of mass is known without summing.
std::vector<float> symmetric_blob(std::ptrdiff_t w, std::ptrdiff_t h, double cx, double cy, double level)
{
    std::vector<float> pixels;
    for (std::ptrdiff_t y = 0; y < h; ++y)
        for (std::ptrdiff_t x = 0; x < w; ++x) {
            const double square =
                std::pow(static_cast<double>(x) - cx, 2) + 2 * std::pow(static_cast<double>(y) - cy, 2);
            pixels.push_back(static_cast<float>(level + (square < 30 ? 8 * (30 - square) : 0)));
        }
    return pixels;
}

TEST(CenterOfMass, MovesToTheCentreOfASymmetricBlob)
{
    struct row
    {
        double cx, cy, level, start_x, start_y, radius, threshold;
        std::int32_t cycles;  // -1: not counted here
    };
    const row rows[] = {
        {20, 15, 0, 20, 15, 10, 0, 1},   {20, 15, 0, 0, 0, inf, 0, 2},      {20.5, 14.5, 0, 18, 17, 8, 0, -1},
        {20, 15, 50, 22, 16, 7, 50, -1}, {20, 15, -50, 22, 16, 7, -50, -1}, {12, 9.5, 3, 15, 9, 12, 60, -1},
    };
    for (const row& r : rows) {
        const auto pixels = symmetric_blob(41, 31, r.cx, r.cy, r.level);
        functions::position center{r.start_x, r.start_y};
        const auto cycles =
            functions::center_of_mass<float>({pixels.data(), 41, 31}, center, {r.radius, 50, r.threshold});
        EXPECT_TRUE(r.cycles >= 0 ? cycles == r.cycles : cycles > 0 && cycles < 50) << cycles << " until it rests";
        EXPECT_NEAR(center.x, r.cx, 1e-12);
        EXPECT_NEAR(center.y, r.cy, 1e-12);
    }
}

TYPED_TEST(real_statistics, CenterOfMassWeighsWithinTheDiscOnly)
{
    // Masses 1 and 3 at x = 2 and 6; heavy ones outside the disc, one of them inside its square.
    std::vector<TypeParam> pixels(12 * 4, TypeParam{5});
    pixels[2] = TypeParam{6}, pixels[6] = TypeParam{8}, pixels[11] = TypeParam{100}, pixels[43] = TypeParam{100};
    functions::position center{4, 0};
    EXPECT_EQ(functions::center_of_mass<TypeParam>({pixels.data(), 12, 4}, center, {4, 1, 5}), 1);
    EXPECT_EQ(center.x, 5.0);
    EXPECT_EQ(center.y, 0.0);
}

TEST(CenterOfMass, KeepsTheStartWhereThereIsNoMass)
{
    std::vector<float> pixels(100, 2.0f);
    pixels[33] = static_cast<float>(nan);
    const functions::mass_search searches[] = {{3, 5, 2}, {inf, 5, 3}, {0.2, 5, 0}};
    for (const auto& how : searches) {
        functions::position center{4.5, 4.5};
        EXPECT_EQ(functions::center_of_mass<float>({pixels.data(), 10, 10}, center, how), 0);
        EXPECT_EQ(center.x, 4.5);
    }
    functions::position outside{-1e30, 1e30};
    EXPECT_EQ(functions::center_of_mass<float>({pixels.data(), 10, 10}, outside, {5, 5, 0}), 0);
}

TEST(Weight, ReadsTheCurveAtTheRadius)
{
    using functions::weight_mode;
    const functions::radial_grid grid{1, 0, 0.5, 2};
    const std::vector<double> curve{2, 4, 0, 8};  // radii 0, 1, 2, 3
    const std::vector<double> ones(5 * 2, 1.0);
    // x = 0..4 on the first row: radii 0.5, 0, 0.5, 1, 1.5; on the second: sqrt(4 + ...) >= 2.
    struct row
    {
        weight_mode mode;
        std::vector<double> first_row;
    };
    const row rows[] = {{weight_mode::nearest, {4, 2, 4, 4, 0}},
                        {weight_mode::linear, {3, 2, 3, 4, 2}},
                        {weight_mode::inverse_nearest, {0.25, 0.5, 0.25, 0.25, 0}},
                        {weight_mode::inverse_linear, {1.0 / 3, 0.5, 1.0 / 3, 0.25, 0.5}}};
    for (const row& r : rows) {
        std::vector<double> result(10);
        functions::weight<double, double>({ones.data(), 5, 2}, {curve.data(), 4}, grid, r.mode, {result.data(), 5, 2});
        for (std::size_t x = 0; x < 5; ++x) EXPECT_DOUBLE_EQ(result[x], r.first_row[x]) << "mode " << int(r.mode);
    }
    // Beyond the curve its last element applies.
    std::vector<double> far(1);
    functions::weight<double, double>({ones.data(), 1}, {curve.data(), 4}, {0, 100, 1, 1}, weight_mode::linear,
                                      {far.data(), 1});
    EXPECT_EQ(far[0], 8);
    std::vector<std::complex<float>> wave(4, {3.0f, -4.0f});
    const std::vector<float> half{0.5f};
    functions::weight<std::complex<float>, float>({wave.data(), 2, 2}, {half.data(), 1}, grid, weight_mode::linear,
                                                  {wave.data(), 2, 2});
    EXPECT_TRUE(support::same_bytes(wave, std::vector<std::complex<float>>(4, {1.5f, -2.0f})));
}

}  // namespace
