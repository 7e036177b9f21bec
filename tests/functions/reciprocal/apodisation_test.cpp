#include "functions/reciprocal/apodisation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace qorv;
using dm::image;
using functions::window;
using std::vector;

TEST(WindowCurve, HasTheValuesOfThePublishedFormulasAndIsSymmetric)
{
    // First halves and the middle, computed independently from the formulas of the literature.
    const struct
    {
        window shape;
        vector<double> half;
        std::ptrdiff_t size = 8;
    } rows[] = {
        {window::hann, {0, 0.1464466094, 0.5, 0.8535533906, 1}},
        {window::hann, {0, 0.1882550991, 0.6112604670, 0.9504844340}, 7},
        {window::hamming, {0.08, 0.2147308807, 0.54, 0.8652691193, 1}},
        {window::blackman, {0, 0.0664466094, 0.34, 0.7735533906, 1}},
        {window::tukey, {0, 0.5, 1, 1, 1}},
        {window::tukey, {0, 0.6112604670, 1, 1}, 7},
        {window::kaiser, {0.0013325140, 0.0674720792, 0.3403936224, 0.7738293810, 1}},
        {window::kaiser, {0.0013325140, 0.0911365129, 0.4596437746, 0.9204615833}, 7},
        {window::flat_top, {-0.0004210510, -0.0268721933, -0.05473684, 0.4441353573, 1.000000003}},
        {window::blackman_harris, {0.00006, 0.0217358370, 0.21747, 0.6957641630, 1}},
        {window::nuttall, {0.0003628, 0.0252055665, 0.2269824, 0.7019582335, 1}},
        {window::sine, {0.1950903220, 0.5555702330, 0.8314696123, 0.9807852804, 0.9807852804}},
        {window::sine, {0.2225209340, 0.6234898019, 0.9009688679, 1}, 7},
        {window::vorbis, {0.0597492676, 0.4660661848, 0.8847498581, 0.9982134166, 0.9982134166}},
    };
    for (const auto& r : rows) {
        const auto curve = functions::window_curve(r.shape, r.size);
        ASSERT_EQ(curve.size(), static_cast<std::size_t>(r.size));
        const std::ptrdiff_t mirror = r.shape >= window::sine ? r.size - 1 : r.size;  // of element 0
        for (std::ptrdiff_t n = 0; n < r.size; ++n)
            EXPECT_NEAR(curve[std::size_t(n)], r.half[std::size_t(std::min(n, mirror - n))], 1e-10)
                << "window " << int(r.shape) << " of " << r.size << " at " << n;
    }
    EXPECT_EQ(functions::ft_window_of(5), window::flat_top);
}

TEST(ApplyWindow, IsTheProductOverTheDimensionsBetweenTheOffsets)
{
    std::mt19937 random{5};
    for (const auto [w, h, d] : {std::array{1, 1, 1}, {9, 1, 1}, {8, 5, 1}, {4, 3, 7}}) {
        vector<double> source(static_cast<std::size_t>(w * h * d));
        for (double& v : source) v = static_cast<double>(random() % 1000) / 8;
        vector<double> result(source.size());
        functions::apply_window<double, double, double>({source.data(), w, h, d}, window::vorbis, {2, -3, 0.5},
                                                        {result.data(), w, h, d});
        const auto cx = functions::window_curve(window::vorbis, w), cy = functions::window_curve(window::vorbis, h),
                   cz = functions::window_curve(window::vorbis, d);
        for (std::size_t i = 0; i < source.size(); ++i) {
            const auto x = i % cx.size(), y = i / cx.size() % cy.size(), z = i / cx.size() / cy.size();
            EXPECT_NEAR(result[i], (source[i] - 2) * cx[x] * cy[y] * cz[z] * -3 + 0.5, 1e-12);
        }
    }
}

TEST(ApplyWindow, KeepsANanInItsPixelAndMakesComplexOfReal)
{
    using c32 = std::complex<float>;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    vector<float> real{1, nan, 3, 5};
    vector<c32> result(4);
    const functions::window_offsets<std::complex<double>> offsets{{1, 1}, {0, 2}, {10, 0}};
    functions::apply_window<float, c32, std::complex<double>>({real.data(), 4}, window::hann, offsets,
                                                              {result.data(), 4});
    // Hann over 4: 0, 1/2, 1, 1/2. ((3 - 1 - i) * 1) * 2i + 10 = 12 + 4i; ((5 - 1 - i) / 2) * 2i + 10 = 11 + 4i.
    EXPECT_EQ(result[0], c32(10, 0));
    EXPECT_TRUE(std::isnan(result[1].real()));
    EXPECT_NEAR(std::abs(result[2] - c32(12, 4)), 0, 1e-6);
    EXPECT_NEAR(std::abs(result[3] - c32(11, 4)), 0, 1e-6);

    vector<c32> in_place{{1, 1}, {2, 0}, {3, 4}, {0, 5}};
    functions::apply_window<c32, c32, double>({in_place.data(), 4}, window::tukey, {}, {in_place.data(), 4});
    EXPECT_EQ(in_place[0], c32(0, 0));
    EXPECT_EQ(in_place[2], c32(3, 4));
}

}  // namespace
