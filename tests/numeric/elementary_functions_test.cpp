#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "numeric/arrays.h"
#include "numeric/atan2.h"
#include "numeric/exp.h"
#include "numeric/log.h"
#include "numeric/pow.h"
#include "numeric/sincos.h"
#include "tests/support/same_bytes.h"
#include "tests/support/ulps.h"

namespace {

namespace numeric = qorv::numeric;
using array = std::vector<float>;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

/// The functions of one number in both forms; sine and cosine count as two.
struct function
{
    const char* name;
    float (*one)(float);
    void (*array)(const float*, float*, std::ptrdiff_t);
    double (*truth)(double);
    double largest;  ///< magnitude up to which the truth is compared
};

void sines(const float* x, float* result, std::ptrdiff_t count)
{
    ::array cosines(static_cast<std::size_t>(count));
    numeric::sincos(x, result, cosines.data(), count);
}

void cosines(const float* x, float* result, std::ptrdiff_t count)
{
    ::array sines(static_cast<std::size_t>(count));
    numeric::sincos(x, sines.data(), result, count);
}

const function functions[] = {
    {"sine", [](float x) { return numeric::sincos(x).sine; }, sines, [](double x) { return std::sin(x); }, 1e6},
    {"cosine", [](float x) { return numeric::sincos(x).cosine; }, cosines, [](double x) { return std::cos(x); }, 1e6},
    {"exp", numeric::exp, numeric::exp, [](double x) { return std::exp(x); }, infinity},
    {"exp2", numeric::exp2, numeric::exp2, [](double x) { return std::exp2(x); }, infinity},
    {"log", numeric::log, numeric::log, [](double x) { return std::log(x); }, infinity},
    {"log2", numeric::log2, numeric::log2, [](double x) { return std::log2(x); }, infinity},
};

/// Every `stride`-th float by bit pattern: both signs, subnormal numbers, infinities and NaN among them.
array floats(std::uint32_t stride)
{
    array result{0.0f, -0.0f, infinity, -infinity, nan, 1.0f, -1.0f};
    for (std::uint64_t bits = 0; bits < (1ull << 32); bits += stride)
        result.push_back(numeric::float_of(static_cast<std::uint32_t>(bits)));
    return result;
}

TEST(ElementaryFunctions, AreRoundedOnceOverAllFloats)
{
    const array x = floats(9973);
    array result(x.size());
    for (const function& f : functions) {
        f.array(x.data(), result.data(), static_cast<std::ptrdiff_t>(x.size()));
        double worst = 0;
        for (std::size_t i = 0; i < x.size(); ++i)
            if (!std::isfinite(x[i]) || std::abs(x[i]) <= f.largest)
                worst = std::max(worst, support::ulps(result[i], f.truth(x[i])));
        EXPECT_LE(worst, 0.501) << f.name;
    }
}

TEST(ElementaryFunctions, SineAndCosineStayOnTheUnitCircleHoweverLargeTheAngle)
{
    for (const float x : floats(99991)) {
        if (!std::isfinite(x)) continue;
        const auto [sine, cosine] = numeric::sincos(x);
        ASSERT_NEAR(double(sine) * sine + double(cosine) * cosine, 1, 2e-7) << x;
        const double tolerance = std::abs(x) < 0x1p31f ? 0x1p-21 : 2;
        ASSERT_NEAR(sine, std::sin(double(x)), tolerance) << x;
    }
}

TEST(ElementaryFunctions, ArraysHaveTheBitsOfSingleNumbers)
{
    const array all = floats(60000011);
    for (std::size_t count = 0; count <= all.size(); ++count)
        for (const function& f : functions) {
            support::framed<float> result{count};
            f.array(all.data(), result.inside(), static_cast<std::ptrdiff_t>(count));
            array wanted;
            for (std::size_t i = 0; i < count; ++i) wanted.push_back(f.one(all[i]));
            ASSERT_TRUE(support::same_bytes(result.copy(), wanted)) << f.name << " of " << count;
            ASSERT_TRUE(result.frame_untouched());
            array in_place(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count));
            f.array(in_place.data(), in_place.data(), static_cast<std::ptrdiff_t>(count));
            ASSERT_TRUE(support::same_bytes(in_place, wanted)) << f.name << " in place";
        }
}

/// The functions of two numbers, in both forms.
const struct
{
    const char* name;
    float (*one)(float, float);
    void (*array)(const float*, const float*, float*, std::ptrdiff_t);
    double (*truth)(double, double);
} pair_functions[] = {
    {"pow", numeric::pow, numeric::pow, [](double x, double y) { return std::pow(x, y); }},
    {"atan2", numeric::atan2, numeric::atan2, [](double y, double x) { return std::atan2(y, x); }},
};

TEST(ElementaryFunctions, PowerAndAngleFollowTheCLibraryOnAllKindsOfPairsAlsoInArrays)
{
    // All pairs of the values at which these functions change their behaviour, and a spread of others.
    array values{0.0f,  1e-45f, 1e-38f,  0.25f,      0.5f,    0.75f,       1.0f,        1.5f,    2.0f,  3.0f,    7.5f,
                 22.0f, 33.0f,  0x1p23f, 8388609.0f, 0x1p24f, 16777217.0f, 16777215.0f, 0x1p31f, 3e38f, infinity};
    for (float x = 0.003f; x < 500; x *= 1.7f) values.push_back(x);
    for (std::size_t i = 0, n = values.size(); i < n; ++i) values.push_back(-values[i]);
    values.push_back(nan);
    array first, second;
    for (const float a : values) {
        first.insert(first.end(), values.size(), a);
        second.insert(second.end(), values.begin(), values.end());
    }
    for (const auto& f : pair_functions) {
        array wanted;
        for (std::size_t i = 0; i < first.size(); ++i) {
            const float a = first[i], b = second[i];
            wanted.push_back(f.one(a, b));
            EXPECT_LE(support::ulps(wanted[i], f.truth(a, b)), 0.51) << f.name << " of " << a << " and " << b;
        }
        for (const std::size_t count :
             {std::size_t{0}, std::size_t{1}, std::size_t{255}, std::size_t{256}, std::size_t{257}, first.size()}) {
            array got(count);
            f.array(first.data(), second.data(), got.data(), static_cast<std::ptrdiff_t>(count));
            EXPECT_TRUE(support::same_bytes(got, {wanted.begin(), wanted.begin() + std::ptrdiff_t(count)})) << f.name;
        }
    }
}

TEST(ElementaryFunctions, PowerOfTwoIsExp2)
{
    array powers, wanted;
    for (const float x : floats(999983)) {
        powers.push_back(numeric::pow(2.0f, x));
        wanted.push_back(std::isnan(x) ? powers.back() : numeric::exp2(x));
    }
    EXPECT_TRUE(support::same_bytes(powers, wanted));
}

/// The platforms agree to the bit: a checksum (FNV-1a) of many results, taken on one of them.
TEST(ElementaryFunctions, GiveTheSameBitsOnEveryPlatform)
{
    const array x = floats(1000003);
    std::uint64_t sum = 14695981039346656037u;
    const auto take = [&](float value) {
        sum = (sum ^ numeric::bits_of(std::isnan(value) ? nan : value)) * 1099511628211u;
    };
    for (const function& f : functions)
        for (const float value : x) take(f.one(value));
    for (std::size_t i = 0; i < x.size(); ++i) {
        take(numeric::pow(x[i], x[(i * 7) % x.size()]));
        take(numeric::atan2(x[i], x[(i * 7) % x.size()]));
    }
    EXPECT_EQ(sum, 3405028295221101486u);
}

}  // namespace
