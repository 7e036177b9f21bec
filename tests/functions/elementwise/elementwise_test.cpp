#include "functions/elementwise/modulus.h"
#include "functions/elementwise/norm.h"
#include "functions/elementwise/polar.h"
#include "functions/elementwise/powers.h"
#include "image/processor.h"
#include "tests/support/same_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
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
    std::vector<complex<T>> result(count);
    for (std::size_t i = 0; i < count; ++i) result[i] = {parts[2 * i], parts[2 * i + 1]};
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
void expect_same_kind(T got, T wanted, const char* what)
{
    if (std::isnan(wanted))
        EXPECT_TRUE(std::isnan(got)) << what << ": " << got;
    else
        EXPECT_EQ(got, wanted) << what;
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
    functions::modulus_and_phase(src.data(), modulus.data(), phase.data(), count);
    expect_modulus("with phase");
    for (std::size_t i = 0; i < src.size(); ++i)
        ASSERT_NEAR(phase[i], std::arg(complex<long double>(src[i])), 2 * std::numeric_limits<T>::epsilon()) << src[i];
}

TYPED_TEST(Elementwise, SafeModulusKeepsItsScaleAndItsSpecialValues)
{
    using T = TypeParam;
    const struct
    {
        complex<T> z;
        T modulus, vector_modulus;
    } table[] = {
        {{3, -4}, 5, 5},
        {{0, -0.0}, 0, 0},
        {{-huge<T>, 0}, huge<T>, infinity<T>},
        {{huge<T> / 8 * 3, huge<T> / 2}, huge<T> / 8 * 5, infinity<T>},
        {{tiny<T> * 3, tiny<T> * 4}, tiny<T> * 5, 0},
        {{infinity<T>, nan<T>}, infinity<T>, nan<T>},
        {{nan<T>, -infinity<T>}, infinity<T>, nan<T>},
        {{nan<T>, 1}, nan<T>, nan<T>},
        {{infinity<T>, 1}, infinity<T>, infinity<T>},
    };
    for (const auto& row : table) {
        T plain, vector, with_phase, phase;
        functions::modulus_plain(&row.z, &plain, 1);
        runnable(functions::modulus_variants<T>()).front().function(&row.z, &vector, 1);
        functions::modulus_and_phase(&row.z, &with_phase, &phase, 1);
        expect_same_kind(plain, row.modulus, "plain");
        expect_same_kind(with_phase, row.modulus, "with phase");
        expect_same_kind(vector, row.vector_modulus, "vector");
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
    // Far out the Windows C library's long double is no truth any more, so one angle stands here with its value.
    const T far = 1000000;
    functions::polar(T{1}, &far, z.data(), 1);
    EXPECT_NEAR(z[0].real(), 0.93675212753314474, std::numeric_limits<T>::epsilon());
    EXPECT_NEAR(z[0].imag(), -0.34999350217129294, std::numeric_limits<T>::epsilon());
    const T never = infinity<T>;
    functions::polar(T{1}, &never, z.data(), 1);
    EXPECT_TRUE(std::isnan(z[0].real()) && std::isnan(z[0].imag()));
}

TYPED_TEST(Elementwise, PhaseOnTheAxesAndFarOut)
{
    using T = TypeParam;
    const T pi = static_cast<T>(3.14159265358979323846L);
    const std::pair<complex<T>, T> table[] = {
        {{0, 5}, pi / 2}, {{-3, 0}, pi}, {{-3, -T{0}}, -pi}, {{0, -tiny<T>}, -pi / 2}, {{huge<T>, -huge<T>}, -pi / 4},
        {{0, 0}, 0}};
    for (const auto& [z, wanted] : table) {
        T modulus, phase;
        functions::modulus_and_phase(&z, &modulus, &phase, 1);
        EXPECT_NEAR(phase, wanted, 2 * std::numeric_limits<T>::epsilon()) << z;
    }
}

TYPED_TEST(Elementwise, UnitPhaseHasModulusOneAndTheSameDirection)
{
    using T = TypeParam;
    std::vector<complex<T>> z = complex_noise<T>(1000);
    const std::vector<complex<T>> src = z;
    functions::unit_phase(z.data(), z.data(), static_cast<std::ptrdiff_t>(z.size()));
    for (std::size_t i = 0; i < z.size(); ++i)
        ASSERT_LT(std::abs(z[i] - src[i] / std::abs(src[i])), 4 * std::numeric_limits<T>::epsilon()) << src[i];

    const T half = std::sqrt(T{2}) / 2;
    const std::pair<complex<T>, complex<T>> extremes[] = {
        {{huge<T>, -huge<T>}, {half, -half}}, {{0, tiny<T>}, {0, 1}}, {{-tiny<T>, tiny<T>}, {-half, half}}, {0, 0}};
    for (const auto& [from, wanted] : extremes) {
        complex<T> got;
        functions::unit_phase(&from, &got, 1);
        EXPECT_LT(std::abs(got - wanted), 2 * std::numeric_limits<T>::epsilon()) << from;
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
    const auto expect = [&](const std::vector<T>& got, const std::vector<T>& wanted, const char* what) {
        for (std::size_t i = 0; i < wanted.size(); ++i)
            if (std::isfinite(wanted[i]))
                EXPECT_NEAR(got[i], wanted[i], 4 * std::numeric_limits<T>::epsilon() * std::abs(wanted[i]))
                    << what << i;
            else
                expect_same_kind(got[i], wanted[i], what);
    };
    std::vector<T> got(a.size());
    functions::exp2(a.data(), got.data(), 8);
    expect(got, powers_of_2, "exp2");
    for (const auto& variant : runnable(functions::pow_variants<T>())) {
        variant.function(a.data(), b.data(), got.data(), 8);
        expect(got, a_to_b, variant.name);
    }
    functions::log2(b.data(), got.data(), 8);
    expect(got, logarithms_of_b, "log2");
}

TYPED_TEST(Elementwise, LogarithmIsTheNaturalOneTimesARoundedFactor)
{
    using T = TypeParam;
    const T x = 3, factor = static_cast<T>(1.4426950408889634);
    T got;
    functions::log2(&x, &got, 1);
    EXPECT_EQ(got, static_cast<T>(1.0986122886681098) * factor);
}

/// Runs `call(first, result, count)` into guarded memory and compares with `single`, one element at a time.
template <class R, class Call, class Single>
void expect_same_at_every_count(const char* what, Call&& call, Single&& single)
{
    for (std::size_t count = 0; count <= 67; ++count) {
        support::framed<R> result{count};
        call(std::size_t{0}, result.inside(), static_cast<std::ptrdiff_t>(count));
        std::vector<R> wanted(count);
        for (std::size_t i = 0; i < count; ++i) single(i, &wanted[i], 1);
        ASSERT_TRUE(support::same_bytes(result.copy(), wanted)) << what << " of " << count;
        ASSERT_TRUE(result.frame_untouched()) << what;
    }
}

template <class R, class Call>
void expect_same_at_every_count(const char* what, Call&& call)
{
    expect_same_at_every_count<R>(what, call, call);
}

TYPED_TEST(Elementwise, EveryCountGivesTheBitsOfSingleElementsAndOfThePlainKernel)
{
    using T = TypeParam;
    std::vector<T> a = noise<T>(67, 3), b = noise<T>(67, 2), phase(67);
    std::vector<complex<T>> z = complex_noise<T>(67);
    a[3] = 0, b[4] = infinity<T>, a[9] = -2, b[9] = 3, a[20] = tiny<T>, z[5] = {huge<T>, tiny<T>},
    z[6] = {tiny<T>, tiny<T>}, z[7] = 0;
    for (const auto& variant : runnable(functions::modulus_variants<T>()))
        expect_same_at_every_count<T>(variant.name,
                                      [&](std::size_t i, T* result, auto n) { variant.function(&z[i], result, n); });
    expect_same_at_every_count<T>("exp2", [&](std::size_t i, T* result, auto n) { functions::exp2(&a[i], result, n); });
    expect_same_at_every_count<T>("log2", [&](std::size_t i, T* result, auto n) { functions::log2(&a[i], result, n); });
    for (const auto& variant : runnable(functions::pow_variants<T>()))
        expect_same_at_every_count<T>(
            "pow", [&](std::size_t i, T* result, auto n) { variant.function(&a[i], &b[i], result, n); },
            [&](std::size_t i, T* result, auto n) { functions::pow_plain(&a[i], &b[i], result, n); });
    expect_same_at_every_count<T>("phase", [&](std::size_t i, T* result, auto n) {
        functions::modulus_and_phase(&z[i], phase.data(), result, n);
    });
    expect_same_at_every_count<complex<T>>(
        "polar", [&](std::size_t i, complex<T>* result, auto n) { functions::polar(&a[i], &b[i], result, n); },
        [&](std::size_t i, complex<T>* result, auto n) { functions::polar(a[i], &b[i], result, n); });
    expect_same_at_every_count<complex<T>>(
        "unit phase", [&](std::size_t i, complex<T>* result, auto n) { functions::unit_phase(&z[i], result, n); });
}

TYPED_TEST(Elementwise, NormIsTheScaledSumOfSquaresIntoRealAndComplex)
{
    using T = TypeParam;
    const double scale = 0.1;  // not a float
    const std::vector<complex<T>> src = complex_noise<T>(67);
    const auto norm = [&](std::size_t i, auto* result, auto n) { functions::norm(&src[i], scale, result, n); };
    const auto formula = [&](std::size_t i, auto* result, auto) {
        *result = (src[i].real() * src[i].real() + src[i].imag() * src[i].imag()) * static_cast<T>(scale);
    };
    expect_same_at_every_count<T>("real", norm, formula);
    expect_same_at_every_count<complex<T>>("complex", norm, formula);
    expect_same_at_every_count<complex<T>>(
        "in place",
        [&](std::size_t, complex<T>* result, auto n) {
            std::copy_n(src.data(), n, result);
            functions::norm(result, scale, result, n);
        },
        formula);
}

TYPED_TEST(Elementwise, ThePowersWorkInPlace)
{
    using T = TypeParam;
    const std::vector<T> a = noise<T>(67, 1), b = noise<T>(67, 2);
    std::vector<T> wanted(67), to_a = a, to_b = b;
    functions::pow(a.data(), b.data(), wanted.data(), 67);
    functions::pow(to_a.data(), b.data(), to_a.data(), 67);
    functions::pow(a.data(), to_b.data(), to_b.data(), 67);
    EXPECT_TRUE(support::same_bytes(to_a, wanted));
    EXPECT_TRUE(support::same_bytes(to_b, wanted));
}

}  // namespace
