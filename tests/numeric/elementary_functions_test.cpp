#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "numeric/atan2.h"
#include "numeric/exp.h"
#include "numeric/log.h"
#include "numeric/pow.h"
#include "numeric/sincos.h"
#include "tests/support/digest.h"
#include "tests/support/ulps.h"

namespace {

namespace numeric = qorv::numeric;
using array = std::vector<float>;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

/// The functions of one number; sine and cosine count as two.
const struct
{
    const char* name;
    float (*value)(float);
    double (*truth)(double);
    double largest;  ///< magnitude up to which the error bound holds
} functions[] = {
    {"sine", [](float x) { return numeric::sincos(x).sine; }, [](double x) { return std::sin(x); }, 1e6},
    {"cosine", [](float x) { return numeric::sincos(x).cosine; }, [](double x) { return std::cos(x); }, 1e6},
    {"exp", numeric::exp, [](double x) { return std::exp(x); }, infinity},
    {"exp2", numeric::exp2, [](double x) { return std::exp2(x); }, infinity},
    {"log", numeric::log, [](double x) { return std::log(x); }, infinity},
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
    for (const auto& f : functions) {
        double worst = 0;
        for (const float v : x)
            if (!std::isfinite(v) || std::abs(v) <= f.largest)
                worst = std::max(worst, support::ulps(f.value(v), f.truth(v)));
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

/// The functions of two numbers.
const struct
{
    const char* name;
    float (*value)(float, float);
    double (*truth)(double, double);
} pair_functions[] = {
    {"pow", numeric::pow, [](double x, double y) { return std::pow(x, y); }},
    {"atan2", numeric::atan2, [](double y, double x) { return std::atan2(y, x); }},
};

TEST(ElementaryFunctions, PowerAndAngleFollowTheCLibraryOnAllKindsOfPairs)
{
    // All pairs of the values at which these functions change their behaviour, and a spread of others.
    array values{0.0f,  1e-45f, 1e-38f,  0.25f,      0.5f,    0.75f,       1.0f,        1.5f,    2.0f,  3.0f,    7.5f,
                 22.0f, 33.0f,  0x1p23f, 8388609.0f, 0x1p24f, 16777217.0f, 16777215.0f, 0x1p31f, 3e38f, infinity};
    for (float x = 0.003f; x < 500; x *= 1.7f) values.push_back(x);
    for (std::size_t i = 0, n = values.size(); i < n; ++i) values.push_back(-values[i]);
    values.push_back(nan);
    for (const auto& f : pair_functions)
        for (const float a : values)
            for (const float b : values)
                EXPECT_LE(support::ulps(f.value(a, b), f.truth(a, b)), 0.51) << f.name << " of " << a << " and " << b;
}

/// The platforms agree to the bit: a digest of many results, computed on one of them.
TEST(ElementaryFunctions, GiveTheSameBitsOnEveryPlatform)
{
    const array x = floats(1000003);
    support::fnv1a all;
    const auto add = [&](float value) { all.add(numeric::bits_of(std::isnan(value) ? nan : value)); };
    for (const auto& f : functions)
        for (const float value : x) add(f.value(value));
    for (std::size_t i = 0; i < x.size(); ++i) {
        add(numeric::pow(x[i], x[(i * 7) % x.size()]));
        add(numeric::atan2(x[i], x[(i * 7) % x.size()]));
    }
    EXPECT_EQ(all.value(), 10595295935587973025u);
}

}  // namespace
