#include "functions/elementwise/modulus.h"
#include "functions/elementwise/norm.h"
#include "functions/elementwise/polar.h"
#include "functions/elementwise/powers.h"
#include "image/processor.h"
#include "tests/support/digest.h"
#include "tests/support/same_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>
#include <limits>
#include <random>
#include <vector>

namespace {

namespace functions = qorv::functions;
using qorv::dm::runnable;

template <class T>
using complex = std::complex<T>;
template <class T>
constexpr T infinity = std::numeric_limits<T>::infinity();
template <class T>
constexpr T nan = std::numeric_limits<T>::quiet_NaN();
template <class T>
constexpr T huge = std::numeric_limits<T>::max() / 2;
template <class T>
constexpr T tiny = std::numeric_limits<T>::denorm_min() * 8;

template <class T>
std::vector<T> noise(std::size_t count, T scale = 10)
{
    std::mt19937 generator{11};
    std::normal_distribution<T> values;
    std::vector<T> result(count);
    for (T& x : result) x = scale * values(generator);
    return result;
}

template <class T>
std::vector<complex<T>> complex_noise(std::size_t count)
{
    const std::vector<T> parts = noise<T>(2 * count);
    std::vector<complex<T>> result;
    for (std::size_t i = 0; i < count; ++i) result.emplace_back(parts[2 * i], parts[2 * i + 1]);
    return result;
}

/// Distance from the truth in units of the last place of a number of that size.
template <class T>
T ulps(T got, long double truth)
{
    const int last = std::ilogb(truth) - std::numeric_limits<T>::digits + 1;
    return static_cast<T>(std::abs(std::ldexp(got - truth, -last)));
}

template <class T>
void expect_same_kind(T got, T expected, const char* what)
{
    if (std::isnan(expected))
        EXPECT_TRUE(std::isnan(got)) << what << ": " << got;
    else
        EXPECT_EQ(got, expected) << what;
}

template <class T>
struct Elementwise : testing::Test
{
    void SetUp() override { qorv::dm::read_processor_features(); }
};
using precisions = testing::Types<float, double>;
TYPED_TEST_SUITE(Elementwise, precisions);

TYPED_TEST(Elementwise, ModulusAndPhaseAreWithinTheLastPlaces)
{
    using T = TypeParam;
    const auto src = complex_noise<T>(5000);
    const auto count = static_cast<std::ptrdiff_t>(src.size());
    std::vector<T> modulus(src.size()), phase(src.size());
    const auto expect_modulus = [&](const char* name) {
        for (std::size_t i = 0; i < src.size(); ++i) {
            const long double re = src[i].real(), im = src[i].imag();
            ASSERT_LE(ulps(modulus[i], std::sqrt(re * re + im * im)), 1.5) << name << src[i];
        }
    };
    for (const auto& variant : runnable(functions::modulus_variants<T>())) {
        variant.function(src.data(), modulus.data(), count);
        expect_modulus(variant.name);
    }
    for (const auto& variant : runnable(functions::modulus_and_phase_variants<T>())) {
        variant.function(src.data(), modulus.data(), phase.data(), count);
        expect_modulus(variant.name);
        for (std::size_t i = 0; i < src.size(); ++i)
            ASSERT_NEAR(phase[i], std::arg(complex<long double>(src[i])), 2 * std::numeric_limits<T>::epsilon())
                << variant.name << src[i];
    }
}

TYPED_TEST(Elementwise, ModulusAndPhaseOfExtremeNumbers)
{
    using T = TypeParam;
    const T pi = static_cast<T>(3.14159265358979323846L);
    const struct
    {
        complex<T> z;
        T modulus, vector_modulus, phase;
    } table[] = {
        {{3, -4}, 5, 5, T{-0.9272952180016122L}},
        {{0, 0}, 0, 0, 0},
        {{-3, 0}, 3, 3, pi},
        {{-3, -T{0}}, 3, 3, -pi},
        {{-huge<T>, 0}, huge<T>, infinity<T>, pi},
        {{huge<T> / 8 * 3, huge<T> / 2}, huge<T> / 8 * 5, infinity<T>, T{0.9272952180016122L}},
        {{0, -tiny<T>}, tiny<T>, 0, -pi / 2},
        {{tiny<T> * 4, tiny<T> * 4}, tiny<T> * 4 * std::sqrt(T{2}), 0, pi / 4},
        {{infinity<T>, nan<T>}, infinity<T>, nan<T>, nan<T>},
        {{nan<T>, -infinity<T>}, infinity<T>, nan<T>, nan<T>},
        {{nan<T>, 1}, nan<T>, nan<T>, nan<T>},
        {{infinity<T>, 1}, infinity<T>, infinity<T>, 0},
    };
    for (const auto& row : table) {
        T plain, with_phase, phase;
        functions::modulus_plain(&row.z, &plain, 1);
        functions::modulus_and_phase(&row.z, &with_phase, &phase, 1);
        expect_same_kind(plain, row.modulus, "plain");
        expect_same_kind(with_phase, row.modulus, "with phase");
        for (const auto& variant : runnable(functions::modulus_variants<T>())) {
            if (variant.needs == qorv::dm::cpu::none) continue;
            std::vector<complex<T>> several(9, row.z);  // for whole vectors and for the rest
            std::vector<T> moduli(9);
            variant.function(several.data(), moduli.data(), 9);
            for (const T modulus : {moduli.front(), moduli.back()})
                expect_same_kind(modulus, row.vector_modulus, variant.name);
        }
        if (std::isnan(row.phase))
            EXPECT_TRUE(std::isnan(phase)) << row.z;
        else
            EXPECT_NEAR(phase, row.phase, 2 * std::numeric_limits<T>::epsilon()) << row.z;
    }
}

TYPED_TEST(Elementwise, PolarWithOneModulusTurnsEveryAngle)
{
    using T = TypeParam;
    std::vector<T> theta = noise<T>(2000, 1000);
    theta.insert(theta.end(), {0, -22, 355});
    std::vector<complex<T>> z(theta.size());
    functions::polar(T{-2}, theta.data(), z.data(), static_cast<std::ptrdiff_t>(theta.size()));
    for (std::size_t i = 0; i < theta.size(); ++i) {
        const double tolerance = 4 * std::numeric_limits<T>::epsilon();
        ASSERT_NEAR(z[i].real(), -2 * std::cos(static_cast<long double>(theta[i])), tolerance) << theta[i];
        ASSERT_NEAR(z[i].imag(), -2 * std::sin(static_cast<long double>(theta[i])), tolerance) << theta[i];
    }
    // For large angles the long double of the Windows C library is not accurate, hence the value of one angle.
    const T far = 1000000;
    functions::polar(T{1}, &far, z.data(), 1);
    EXPECT_NEAR(z[0].real(), 0.93675212753314474, std::numeric_limits<T>::epsilon());
    EXPECT_NEAR(z[0].imag(), -0.34999350217129294, std::numeric_limits<T>::epsilon());
    const T never = infinity<T>;
    functions::polar(T{1}, &never, z.data(), 1);
    EXPECT_TRUE(std::isnan(z[0].real()) && std::isnan(z[0].imag()));
}

TYPED_TEST(Elementwise, UnitPhaseHasModulusOneAndTheSameDirection)
{
    using T = TypeParam;
    const T half = std::sqrt(T{2}) / 2;
    const std::pair<complex<T>, complex<T>> extremes[] = {{{huge<T>, -huge<T>}, {half, -half}},
                                                          {{0, tiny<T>}, {0, 1}},
                                                          {{-tiny<T>, tiny<T>}, {-half, half}},
                                                          {0, 0},
                                                          {{3, -4}, {T{0.6L}, T{-0.8L}}}};
    for (const auto& [from, expected] : extremes) {
        complex<T> got;
        functions::unit_phase(&from, &got, 1);
        EXPECT_LT(std::abs(got - expected), 2 * std::numeric_limits<T>::epsilon()) << from;
    }
}

TYPED_TEST(Elementwise, PowersAndLogarithmsHaveTheirValues)
{
    using T = TypeParam;
    const std::vector<T> a{0, 1, 10, -3, T{0.5}, -infinity<T>, infinity<T>, nan<T>};
    const std::vector<T> powers_of_2{1, 2, 1024, T{0.125}, std::sqrt(T{2}), 0, infinity<T>, nan<T>};
    const std::vector<T> b{0, 8, -infinity<T>, T{0.25}, -1, infinity<T>, -0.0, nan<T>};
    const std::vector<T> logarithms_of_b{-infinity<T>, 3, nan<T>, -2, nan<T>, infinity<T>, -infinity<T>, nan<T>};
    const std::vector<T> a_to_b{1, 1, 0, nan<T>, 2, infinity<T>, 1, nan<T>};
    const auto expect = [&](const std::vector<T>& got, const std::vector<T>& expected, const char* what) {
        for (std::size_t i = 0; i < expected.size(); ++i)
            if (std::isfinite(expected[i]))
                EXPECT_NEAR(got[i], expected[i], 4 * std::numeric_limits<T>::epsilon() * std::abs(expected[i]))
                    << what << i;
            else
                expect_same_kind(got[i], expected[i], what);
    };
    std::vector<T> got(a.size());
    for (const auto& variant : runnable(functions::exp2_variants<T>())) {
        variant.function(a.data(), got.data(), 8);
        expect(got, powers_of_2, variant.name);
    }
    for (const auto& variant : runnable(functions::pow_variants<T>())) {
        variant.function(a.data(), b.data(), got.data(), 8);
        expect(got, a_to_b, variant.name);
    }
    for (const auto& variant : runnable(functions::log2_variants<T>())) {
        variant.function(b.data(), got.data(), 8);
        expect(got, logarithms_of_b, variant.name);
    }
}

/// The rows in single precision over floats of every kind, bit by bit as the plain form. The digest of the plain
/// results was computed on one platform.
TEST(ElementwiseRows, GiveTheBitsOfThePlainFormOverAllFloatsOnEveryPlatform)
{
    qorv::dm::read_processor_features();
    std::vector<float> a;
    for (std::uint64_t bits = 0; bits < (1ull << 32); bits += 40009)
        a.push_back(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    const auto count = static_cast<std::ptrdiff_t>(a.size() / 2 * 2);
    std::vector<float> b(a.size()), got(a.size() * 2);
    for (std::size_t i = 0; i < a.size(); ++i)
        b[i] = i % 2 != 0 ? a[i * 7 % a.size()] : std::fmod(a[i * 3 % a.size()], 9);
    const auto* z = reinterpret_cast<const complex<float>*>(a.data());
    auto* to_z = reinterpret_cast<complex<float>*>(got.data());
    support::fnv1a all;
    const auto check = [&](const char* what, auto table, auto run) {
        const auto result_of = [&](auto* kernel) {
            std::fill(got.begin(), got.end(), 0.0f);
            run(kernel);
            return support::one_nan(got);
        };
        const std::vector<float> expected = result_of(table.back().function);
        for (const float value : expected) all.add(std::bit_cast<std::uint32_t>(value));
        for (const auto& row : runnable(table))
            EXPECT_TRUE(support::same_bytes(result_of(row.function), expected)) << what << ' ' << row.name;
    };
    check("exp2", functions::exp2_variants<float>(), [&](auto* row) { row(a.data(), got.data(), count); });
    check("log2", functions::log2_variants<float>(), [&](auto* row) { row(a.data(), got.data(), count); });
    check("pow", functions::pow_variants<float>(), [&](auto* row) { row(a.data(), b.data(), got.data(), count); });
    check("polar", functions::polar_variants<float>(), [&](auto* row) { row(b.data(), 1, a.data(), to_z, count); });
    check("modulus and phase", functions::modulus_and_phase_variants<float>(),
          [&](auto* row) { row(z, got.data(), got.data() + count, count / 2); });
    EXPECT_EQ(all.value(), 497657941287031317u);
}

}  // namespace
