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
#include "support/same_bytes.h"
#include "support/ulps.h"

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

struct pairs
{
    array first, second;
};

/// All pairs of the values at which the functions of two numbers change their behaviour, and a spread of others.
pairs special_and_ordinary_pairs()
{
    array values{0.0f,  1e-45f, 1e-38f,  0.25f,      0.5f,    0.75f,       1.0f,        1.5f,    2.0f,  3.0f,    7.5f,
                 22.0f, 33.0f,  0x1p23f, 8388609.0f, 0x1p24f, 16777217.0f, 16777215.0f, 0x1p31f, 3e38f, infinity};
    for (std::size_t i = 0, n = values.size(); i < n; ++i) values.push_back(-values[i]);
    values.push_back(nan);
    for (float x = 0.003f; x < 500; x *= 1.7f) values.insert(values.end(), {x, -x});
    pairs result;
    for (const float a : values)
        for (const float b : values) {
            result.first.push_back(a);
            result.second.push_back(b);
        }
    return result;
}

TEST(ElementaryFunctions, PowerAndAngleFollowTheCLibraryOnAllKindsOfPairs)
{
    const pairs p = special_and_ordinary_pairs();
    for (std::size_t i = 0; i < p.first.size(); ++i) {
        const float a = p.first[i], b = p.second[i];
        EXPECT_LE(support::ulps(numeric::pow(a, b), std::pow(double(a), double(b))), 0.51) << a << " to " << b;
        EXPECT_LE(support::ulps(numeric::atan2(a, b), std::atan2(double(a), double(b))), 0.51) << a << " over " << b;
    }
}

TEST(ElementaryFunctions, ArraysOfPairsHaveTheBitsOfSingleNumbers)
{
    const pairs p = special_and_ordinary_pairs();
    for (const std::size_t count : {0, 1, 2, 3, 5, 255, 256, 257, static_cast<int>(p.first.size())}) {
        array powers(count), angles(count), wanted_powers, wanted_angles;
        numeric::pow(p.first.data(), p.second.data(), powers.data(), static_cast<std::ptrdiff_t>(count));
        numeric::atan2(p.first.data(), p.second.data(), angles.data(), static_cast<std::ptrdiff_t>(count));
        for (std::size_t i = 0; i < count; ++i) {
            wanted_powers.push_back(numeric::pow(p.first[i], p.second[i]));
            wanted_angles.push_back(numeric::atan2(p.first[i], p.second[i]));
        }
        EXPECT_TRUE(support::same_bytes(powers, wanted_powers)) << count;
        EXPECT_TRUE(support::same_bytes(angles, wanted_angles)) << count;
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
