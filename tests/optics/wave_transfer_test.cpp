#include "optics/wave_transfer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "optics/wave_transfer_terms.h"
#include "tests/support/same_bytes.h"

namespace {

using namespace qorv::optics;
using pixels = std::vector<complex_float>;

struct setting
{
    sampling at{.lambda = 0.02f, .step = 0.05f};
    aberrations lens{};
    std::optional<envelope> damping{};
};

pixels noise(std::size_t count, std::mt19937& generator)
{
    std::normal_distribution<float> values;
    pixels result(count);
    for (complex_float& p : result) p = {values(generator), values(generator)};
    return result;
}

pixels transfer_function(const setting& s)
{
    pixels result(static_cast<std::size_t>(s.at.nx) * s.at.ny, 1.0f);
    apply_wave_transfer_plain(result.data(), result.data(), s.at, s.lens, s.damping);
    return result;
}

struct term
{
    const char* name;
    int order, symmetry;
    float aberrations::*real;
    complex_float aberrations::*complex;
};

const term terms[] = {
    {"c20", 2, 0, &aberrations::c20, nullptr}, {"c40", 4, 0, &aberrations::c40, nullptr},
    {"c60", 6, 0, &aberrations::c60, nullptr}, {"c22", 2, 2, nullptr, &aberrations::c22},
    {"c31", 3, 1, nullptr, &aberrations::c31}, {"c33", 3, 3, nullptr, &aberrations::c33},
    {"c42", 4, 2, nullptr, &aberrations::c42}, {"c44", 4, 4, nullptr, &aberrations::c44},
    {"c51", 5, 1, nullptr, &aberrations::c51}, {"c53", 5, 3, nullptr, &aberrations::c53},
    {"c55", 5, 5, nullptr, &aberrations::c55}, {"c62", 6, 2, nullptr, &aberrations::c62},
    {"c64", 6, 4, nullptr, &aberrations::c64}, {"c66", 6, 6, nullptr, &aberrations::c66},
};

void set(aberrations& lens, const term& t, complex_float value)
{
    if (t.real)
        lens.*t.real = value.real();
    else
        lens.*t.complex = value;
}

setting random_setting(int nx, int ny, std::mt19937& generator)
{
    std::uniform_real_distribution<float> unit{-1, 1};
    const auto number = [&](float scale) { return scale * unit(generator); };
    setting s{.at{nx, ny, 0.03f, 0.02f + std::abs(number(0.05f)), {number(0.01f), number(0.01f)}}};
    for (const term& t : terms) {
        const float scale = 10 * std::pow(4.0f, static_cast<float>(t.order));
        set(s.lens, t, {number(scale), number(scale)});
    }
    s.damping = envelope{number(30), number(0.002f), number(0.01f)};
    return s;
}

TEST(WaveTransfer, EachTermOfChiHasItsOrderAndSymmetry)
{
    for (const term& t : terms)
        for (const double azimuth : {0.0, 0.4, 1.9, -2.6}) {
            const double modulus = 7.5, coefficient_azimuth = t.real ? 0.0 : 0.7, angle = 0.8;
            aberrations lens;
            set(lens, t, complex_float{std::polar(modulus, coefficient_azimuth)});
            const complex_float w{std::polar(angle, azimuth)};
            const double expected =
                modulus * std::pow(angle, t.order) * std::cos(t.symmetry * azimuth + coefficient_azimuth);
            EXPECT_NEAR(chi(lens, w, std::norm(w)), expected, 1e-5) << t.name << " at " << azimuth;
        }
}

TEST(WaveTransfer, PhaseIsChiAtTheCentreMinusChiAtThePixel)
{
    for (const auto& [nx, ny] : {std::pair{8, 8}, {9, 7}, {1, 5}, {6, 1}}) {
        setting s{.at{nx, ny, 0.02f, 0.05f, {0.03f, -0.05f}}};
        s.lens.c20 = 40;
        s.lens.c31 = {90, -50};
        const pixels result = transfer_function(s);
        const auto chi_at = [&](int x, int y) {
            const std::complex<double> w{(double(x) / nx - 0.5) * 0.4 + 0.03, (double(y) / ny - 0.5) * 0.4 - 0.05};
            return 40 * std::norm(w) + (std::complex<double>{90, -50} * std::norm(w) * w).real();
        };
        for (int y = 0; y < ny; ++y)
            for (int x = 0; x < nx; ++x) {
                const std::complex<double> expected = std::polar(1.0, chi_at(nx / 2, ny / 2) - chi_at(x, y));
                const std::complex<double> got = result[static_cast<std::size_t>(y * nx + x)];
                EXPECT_LT(std::abs(got - expected), 3e-6) << x << ", " << y << " of " << nx << " x " << ny;
            }
        EXPECT_EQ(result[static_cast<std::size_t>(ny / 2 * nx + nx / 2)], complex_float(1, 0));
    }
}

TEST(WaveTransfer, EnvelopesHaveTheirClosedForms)
{
    const int n = 16, x = 3, y = 12;
    const double u = 3 / 16.0 - 0.5, v = 12 / 16.0 - 0.5, s = 0.16 * (u * u + v * v);
    const double a = std::numbers::pi * 0.02 / n / 0.05;
    const aberrations defocus{.c20 = 100}, astigmatism{.c22 = {100, 100}};
    const struct
    {
        const char* what;
        envelope width;
        aberrations lens;
        complex_float tilt;
        double modulus;
    } rows[] = {
        {"vibration, which ignores the tilt", {.vib = 0.02f}, {}, {0.5f, 0.5f}, std::exp(-2 * a * a * (25 + 16))},
        {"focus spread", {.c2s = 20}, {}, {}, std::exp(-200 * s * s)},
        {"beam divergence", {.bdiv = 0.03f}, defocus, {}, std::exp(-4e4 * s * 9e-4 / 2)},
        {"non-round terms do not damp", {.bdiv = 30}, astigmatism, {}, 1},
        {"limit", {.c2s = 1e6f}, {}, {}, std::exp(-50.0)},
    };
    for (const auto& row : rows) {
        const pixels result = transfer_function({{n, n, 0.02f, 0.05f, row.tilt}, row.lens, row.width});
        EXPECT_NEAR(std::abs(result[y * n + x]) / row.modulus, 1, 1e-5) << row.what;
        EXPECT_EQ(result[n / 2 * n + n / 2], complex_float(1, 0)) << row.what;
    }
}

void expect_same_bits(const setting& s, const pixels& src)
{
    pixels wanted(src.size());
    apply_wave_transfer_plain(src.data(), wanted.data(), s.at, s.lens, s.damping);
    for (const auto& variant : qorv::dm::runnable(wave_transfer_variants)) {
        pixels in_place = src;
        variant.function(in_place.data(), in_place.data(), s.at, s.lens, s.damping);
        support::framed<complex_float> apart{src.size()};
        variant.function(src.data(), apart.inside(), s.at, s.lens, s.damping);
        EXPECT_TRUE(apart.frame_untouched());
        for (const pixels& got : {apart.copy(), in_place})
            EXPECT_TRUE(support::same_bytes(support::one_nan(got), support::one_nan(wanted)))
                << variant.name << ' ' << s.at.nx << " x " << s.at.ny;
    }
}

TEST(WaveTransfer, VariantsGiveTheSameBitsAtEverySize)
{
    qorv::dm::read_processor_features();
    std::mt19937 generator{7};
    for (int n = 1; n <= 67; ++n)
        for (const auto& [nx, ny] : {std::pair{n, 5}, {3, n}, {1, n}, {n, 1}, {n + 230, 2}}) {
            setting s = random_setting(nx, ny, generator);
            if (n % 2 == 0) s.damping.reset();
            if (n % 3 == 0) s.at.tilt = {};
            expect_same_bits(s, noise(static_cast<std::size_t>(nx) * ny, generator));
        }
    for (const auto& [nx, ny] : {std::pair{0, 5}, {5, 0}, {-3, 4}}) expect_same_bits({.at{nx, ny, 1, 1}}, {});
}

TEST(WaveTransfer, VariantsGiveTheSameBitsForNonFiniteValues)
{
    qorv::dm::read_processor_features();
    std::mt19937 generator{9};
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    for (const float odd : {infinity, -infinity, nan, 1e38f, -1e-40f, 0.0f})
        for (int field = 0; field < 8; ++field) {
            setting s = random_setting(21, 3, generator);
            pixels src = noise(63, generator);
            src[5] = {odd, -odd};
            envelope& width = *s.damping;
            float* const fields[] = {&s.at.lambda, &s.at.step, &width.c2s, &width.bdiv, &width.vib, &s.lens.c20};
            if (field < 6) *fields[field] = odd;
            if (field == 6) s.at.tilt = {0, odd};
            if (field == 7) s.lens.c44 = {odd, 0};
            expect_same_bits(s, src);
        }
}

}  // namespace
