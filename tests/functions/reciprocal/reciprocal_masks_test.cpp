#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <functional>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "functions/reciprocal/apodisation.h"
#include "functions/reciprocal/bragg_mask.h"
#include "functions/reciprocal/cross_correlation_mask.h"
#include "functions/reciprocal/weight.h"
#include "image/errors.h"
#include "tests/support/same_bytes.h"

namespace {

using namespace qorv;
using dm::image;
using std::vector;
using support::message_of;

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// Every lattice point within a wide window of indices, one by one.
vector<functions::peak> all_points(const functions::lattice& l, int most)
{
    vector<functions::peak> indices;
    for (int h = -most; h <= most; ++h)
        for (int k = -most; k <= most; ++k) indices.push_back({double(h), double(k)});
    return functions::placed(indices, l);
}

TEST(LatticeMask, EqualsADiscAroundEveryPoint)
{
    struct row
    {
        vector<double> matrix;  // two rows
        functions::disc shape;
    };
    const row rows[] = {
        {{7, 0, 0, 7}, {2, 0.5}},           {{6, 3, 0, 5.2}, {1.5, 1}},        {{9, 1, 2.5, -2, 11, 40}, {3, 3}},
        {{40, 33, 13, 11}, {1, 0}},         {{5, 2.5, 0, 4.25, 4, 4}, {4, 2}}, {{0, 3, 3, 0}, {0, 0}},
        {{10, 103, 1, 15, 8, 9}, {2, 0.5}},  // a skew basis of a lattice with short vectors
    };
    for (const row& r : rows) {
        const auto columns = static_cast<std::ptrdiff_t>(r.matrix.size() / 2);
        const auto lattice = functions::lattice::from<double>({r.matrix.data(), columns, 2}, 33, 25);
        EXPECT_EQ(lattice.origin_x, columns == 3 ? r.matrix[2] : 16);
        EXPECT_EQ(lattice.origin_y, columns == 3 ? r.matrix[5] : 12);
        const auto mask = functions::lattice_mask(lattice, r.shape, 33, 25);
        const auto one_by_one = functions::peak_mask(all_points(lattice, 150), r.shape, 33, 25);
        ASSERT_EQ(mask.size(), one_by_one.size());
        for (std::size_t i = 0; i < mask.size(); ++i)
            ASSERT_NEAR(mask[i], one_by_one[i], 1e-9) << "pixel " << i % 33 << ", " << i / 33;
    }
}

TEST(Lattice, ReadsTheVectorsFromTheColumnsOfTheMatrix)
{
    const float matrix[] = {9, 1, 2.5, -2, 11, 40};
    const auto l = functions::lattice::from<float>({matrix, 3, 2}, 8, 8);
    const auto place = functions::placed({{2, 1}}, l)[0];  // 2 (9, -2) + (1, 11) + (2.5, 40)
    EXPECT_EQ(place.x, 21.5);
    EXPECT_EQ(place.y, 47);
}

TEST(Disc, FallsAlongHalfACosinePeriod)
{
    const functions::disc soft{5, 2}, hard{5, 0};
    const double table[][3] = {
        {0, 1, 1}, {3, 1, 1}, {4, 0.5 + std::sqrt(0.125), 1}, {5, 0.5, 1}, {6, 0.5 - std::sqrt(0.125), 0}, {7, 0, 0}};
    for (const auto& [distance, with_rim, without] : table) {
        EXPECT_NEAR(soft.at(distance), with_rim, 1e-15);
        EXPECT_EQ(hard.at(distance), without);
    }
}

TEST(BraggMask, RefusesVectorsThatSpanNoLattice)
{
    const double matrices[][4] = {{1, 3, 1.1, 3.3}, {0, 0, 0, 0}, {2, 0, 1, 0}, {1, 0, 0, 0}, {1, 2, nan, 4}};
    for (const auto& m : matrices)
        EXPECT_EQ(message_of([&] {
                      functions::lattice_mask(functions::lattice::from<double>({m, 2, 2}, 8, 8), {1, 1}, 8, 8);
                  }),
                  dm::errors::parameters_invalid);
}

TEST(ApplyMask, KeepsElementsWhereItIsOneAndClearsNansWhereItIsZero)
{
    using c = std::complex<double>;
    const auto mask = functions::peak_mask({{1, 0}, {nan, 0}, {1e300, 5}}, {0.5, 0.5}, 3, 1);
    vector<c> planes{{nan, 1}, {inf, nan}, {2, 2}, {4, 4}, {-0.0, 5}, {1, nan}};
    functions::apply_mask<c>({planes.data(), 3, 1, 2}, mask, {planes.data(), 3, 1, 2});
    EXPECT_TRUE(support::same_bytes(planes, vector<c>{{0, 0}, {inf, nan}, {0, 0}, {0, 0}, {-0.0, 5}, {0, 0}}));
}

TEST(CrossCorrelationMask, RemovesTheDefocusOfALens)
{
    using c = std::complex<float>;
    std::mt19937 random{9};
    std::normal_distribution<float> normal;
    const functions::radial_grid grid{6, 5, 0.02, 0.03};
    const double defocus = 1234.5;
    const auto frequency = [](std::size_t i) {
        return std::hypot((double(i % 13) - 6) * 0.02, (double(i / 13 % 10) - 5) * 0.03);
    };
    vector<c> reference(13 * 10 * 2), target(reference.size()), result(reference.size());
    for (std::size_t i = 0; i < reference.size(); ++i) {
        reference[i] = {normal(random), normal(random)};
        const double chi = std::numbers::pi * defocus * std::pow(frequency(i), 2);
        target[i] = c(std::complex<double>(reference[i]) * std::polar(1.0, -chi));
    }
    using functions::correlation_mode;
    const image<const c> t{target.data(), 13, 10, 2}, r{reference.data(), 13, 10, 2};
    const image<c> to{result.data(), 13, 10, 2};
    for (const auto mode : {correlation_mode::plain, correlation_mode::phase_only, correlation_mode::mutual})
        for (const double radius : {inf, 0.1}) {
            const double mean = functions::cross_correlation_mask<c>(t, r, {grid, defocus, radius}, mode, to);
            double sum = 0;
            int inside = 0;
            for (std::size_t i = 0; i < result.size(); ++i) {
                const bool passes = frequency(i) <= radius;
                const double m = std::norm(reference[i]);  // of equal spectra only a real spectrum is left
                const double expected = mode == correlation_mode::plain        ? m
                                        : mode == correlation_mode::phase_only ? 1
                                                                               : std::sqrt(m);
                EXPECT_NEAR(std::abs(std::complex<double>(result[i]) - (passes ? expected : 0)), 0,
                            3e-6 * (1 + expected));
                if (passes) sum += expected, ++inside;
            }
            EXPECT_NEAR(mean, sum / inside, 1e-6 * mean);
        }
}

TEST(CrossCorrelationMask, ConjugatesTheReferenceAndAcceptsExtremeValues)
{
    using c = std::complex<double>;
    const functions::radial_grid grid{0, 0, 1, 1};
    const auto one = [&](c target, c reference, functions::correlation_mode mode, double radius = 1) {
        c result{7, 7};
        const double mean =
            functions::cross_correlation_mask<c>({&target, 1}, {&reference, 1}, {grid, 0, radius}, mode, {&result, 1});
        return std::pair{result, mean};
    };
    using functions::correlation_mode;
    EXPECT_EQ(one({2, 0}, {0, 3}, correlation_mode::plain).first, c(0, -6));
    EXPECT_EQ(one({2, 0}, {0, 3}, correlation_mode::plain).second, 6);
    for (const double small : {0.0, 1e-310})
        EXPECT_EQ(one({small, 0}, {0, 3}, correlation_mode::phase_only).first, c(0, 0));
    EXPECT_NEAR(std::abs(one({1e150, 1e150}, {1e150, 0}, correlation_mode::phase_only).first), 1, 1e-15);
    EXPECT_TRUE(std::isnan(one({nan, 0}, {1, 0}, correlation_mode::mutual).second));
}

TEST(Factors, RefuseADestinationThatIsTheSourceMovedByAPixel)
{
    using c = std::complex<float>;
    vector<c> pixels{1, 2, 3, 4, 5}, other(4);
    const auto before = pixels;
    const vector<float> ones{1};
    const image<const c> source{pixels.data(), 4}, apart{other.data(), 4};
    const image<c> moved{pixels.data() + 1, 4};
    const functions::radial_grid grid{0, 0, 1, 1};
    const functions::correlation_filter filter{grid, 0, inf};
    const image<const float> curve{ones.data(), 1};
    const auto mode = functions::correlation_mode::plain;
    const std::function<void()> calls[] = {
        [&] { functions::apply_window<c, c, double>(source, functions::window::hann, {}, moved); },
        [&] { functions::weight<c, float>(source, curve, grid, functions::weight_mode::nearest, moved); },
        [&] { functions::apply_mask<c>(source, vector<double>(4), moved); },
        [&] { functions::cross_correlation_mask<c>(source, apart, filter, mode, moved); },
        [&] { functions::cross_correlation_mask<c>(apart, source, filter, mode, moved); },
    };
    for (const auto& call : calls) EXPECT_EQ(message_of(call), dm::errors::out_of_place);
    EXPECT_EQ(pixels, before);
}

}  // namespace
