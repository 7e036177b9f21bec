#include "optics/wave_transfer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "tests/support/same_bytes.h"

namespace {

using qorv::optics::complex_float;
using qorv::optics::wave_parameters;
using pixels = std::vector<complex_float>;

/// Everything that a call takes beside the images, with values that do nothing.
struct setting
{
    int nx, ny;
    wave_parameters coefficients{};
    float lambda = 0.02f, step = 0.05f;
    float c2s = 0, bdiv = 0, vib = 0;
    bool envelope = false;
    complex_float tilt{};
};

using multiplication = decltype(qorv::optics::multiply);

void run(multiplication* multiply, const complex_float* src, complex_float* dst, const setting& s)
{
    multiply(src, dst, s.nx, s.ny, s.coefficients, s.lambda, s.step, s.c2s, s.bdiv, s.vib, s.envelope, s.tilt);
}

pixels transfer_function(const setting& s)
{
    const pixels ones(static_cast<std::size_t>(s.nx) * s.ny, 1.0f);
    pixels result(ones.size());
    run(qorv::optics::multiply, ones.data(), result.data(), s);
    return result;
}

struct term
{
    const char* name;
    int order, symmetry;
    float wave_parameters::*real;
    complex_float wave_parameters::*complex;
};

const term terms[] = {
    {"c20", 2, 0, &wave_parameters::c20, nullptr}, {"c40", 4, 0, &wave_parameters::c40, nullptr},
    {"c60", 6, 0, &wave_parameters::c60, nullptr}, {"c22", 2, 2, nullptr, &wave_parameters::c22},
    {"c31", 3, 1, nullptr, &wave_parameters::c31}, {"c33", 3, 3, nullptr, &wave_parameters::c33},
    {"c42", 4, 2, nullptr, &wave_parameters::c42}, {"c44", 4, 4, nullptr, &wave_parameters::c44},
    {"c51", 5, 1, nullptr, &wave_parameters::c51}, {"c53", 5, 3, nullptr, &wave_parameters::c53},
    {"c55", 5, 5, nullptr, &wave_parameters::c55}, {"c62", 6, 2, nullptr, &wave_parameters::c62},
    {"c64", 6, 4, nullptr, &wave_parameters::c64}, {"c66", 6, 6, nullptr, &wave_parameters::c66},
};

void set(wave_parameters& parameters, const term& t, complex_float value)
{
    if (t.real)
        parameters.*t.real = value.real();
    else
        parameters.*t.complex = value;
}

setting random_setting(int nx, int ny, std::mt19937& generator)
{
    std::uniform_real_distribution<float> unit{-1, 1};
    setting s{.nx = nx, .ny = ny, .lambda = 0.03f, .step = 0.02f + std::abs(unit(generator)) / 20};
    for (const term& t : terms) {
        const float scale = 10 * std::pow(4.0f, static_cast<float>(t.order));
        const float real = scale * unit(generator);
        set(s.coefficients, t, {real, scale * unit(generator)});
    }
    s.c2s = 30 * unit(generator);
    s.bdiv = 0.002f * unit(generator);
    s.vib = 0.01f * unit(generator);
    s.tilt = {0.01f * unit(generator), 0.01f * unit(generator)};
    return s;
}

pixels noise(std::size_t count, std::mt19937& generator)
{
    std::normal_distribution<float> values;
    pixels result(count);
    for (complex_float& p : result) p = {values(generator), values(generator)};
    return result;
}

TEST(Chi, EachTermHasItsOrderAndSymmetry)
{
    for (const term& t : terms)
        for (const double azimuth : {0.0, 0.4, 1.9, -2.6}) {
            const double modulus = 7.5, coefficient_azimuth = t.real ? 0.0 : 0.7, angle = 0.8;
            wave_parameters parameters;
            set(parameters, t, complex_float{std::polar(modulus, coefficient_azimuth)});
            const complex_float w{std::polar(angle, azimuth)};
            const double expected =
                modulus * std::pow(angle, t.order) * std::cos(t.symmetry * azimuth + coefficient_azimuth);
            EXPECT_NEAR(qorv::optics::chi(parameters, w, std::norm(w)), expected, 1e-5) << t.name << " at " << azimuth;
        }
}

TEST(WaveTransfer, PhaseIsChiAtTheCentreLessChiAtThePixel)
{
    for (const auto& [nx, ny] : {std::pair{8, 8}, {9, 7}, {1, 5}, {6, 1}}) {
        setting s{.nx = nx, .ny = ny, .tilt = {0.03f, -0.05f}};
        s.coefficients.c20 = 40;
        s.coefficients.c31 = {90, -50};
        const pixels result = transfer_function(s);
        const auto phase_of = [&](int x, int y) {
            const std::complex<double> w{(double(x) / nx - 0.5) * 0.4 + 0.03, (double(y) / ny - 0.5) * 0.4 - 0.05};
            return 40 * std::norm(w) + (std::complex<double>{90, -50} * std::norm(w) * w).real();
        };
        for (int y = 0; y < ny; ++y)
            for (int x = 0; x < nx; ++x) {
                const std::complex<double> expected = std::polar(1.0, phase_of(nx / 2, ny / 2) - phase_of(x, y));
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
    setting vibration{.nx = n, .ny = n, .vib = 0.02f, .envelope = true, .tilt = {0.5f, 0.5f}};  // tilt does not matter
    setting focus{.nx = n, .ny = n, .c2s = 20, .envelope = true};
    setting divergence{.nx = n, .ny = n, .bdiv = 0.03f, .envelope = true};
    divergence.coefficients.c20 = 100;
    setting non_round{.nx = n, .ny = n, .bdiv = 30, .envelope = true};
    non_round.coefficients.c22 = {100, 100};
    setting everything{.nx = n, .ny = n, .c2s = 1e6f, .envelope = true};
    setting off{.nx = n, .ny = n, .c2s = 20, .bdiv = 1, .vib = 1};
    const struct
    {
        const char* what;
        const setting& with;
        double modulus;
    } table[] = {
        {"vibration", vibration, std::exp(-2 * a * a * (25 + 16))},
        {"focus spread", focus, std::exp(-200 * s * s)},
        {"beam divergence", divergence, std::exp(-4e4 * s * 9e-4 / 2)},
        {"non-round terms do not damp", non_round, 1},
        {"limit", everything, std::exp(-50.0)},
        {"switched off", off, 1},
    };
    for (const auto& row : table) {
        const pixels result = transfer_function(row.with);
        EXPECT_NEAR(std::abs(result[y * n + x]) / row.modulus, 1, 1e-5) << row.what;
        EXPECT_EQ(result[n / 2 * n + n / 2], complex_float(1, 0)) << row.what;
    }
}

TEST(WaveTransfer, NegatedCoefficientsRemoveWhatWasApplied)
{
    std::mt19937 generator{5};
    for (const auto& [nx, ny] : {std::pair{64, 64}, {300, 41}}) {
        setting s = random_setting(nx, ny, generator);
        const pixels original = noise(static_cast<std::size_t>(nx) * ny, generator);
        pixels wave = original;
        run(qorv::optics::multiply, wave.data(), wave.data(), s);
        for (const term& t : terms)
            set(s.coefficients, t, t.real ? -(s.coefficients.*t.real) : -(s.coefficients.*t.complex));
        run(qorv::optics::multiply, wave.data(), wave.data(), s);
        for (std::size_t i = 0; i < wave.size(); ++i) ASSERT_LT(std::abs(wave[i] - original[i]), 2e-5) << i;
    }
}

void expect_same_bits(const setting& s, const pixels& src)
{
    pixels wanted(src.size()), in_place = src;
    run(qorv::optics::multiply_plain, src.data(), wanted.data(), s);
    support::framed<complex_float> apart{src.size()};
    run(qorv::optics::multiply, src.data(), apart.inside(), s);
    EXPECT_TRUE(apart.frame_untouched());
    run(qorv::optics::multiply, in_place.data(), in_place.data(), s);
    for (const pixels& got : {apart.copy(), in_place})
        EXPECT_TRUE(support::same_bytes(support::one_nan(got), support::one_nan(wanted))) << s.nx << " x " << s.ny;
}

TEST(WaveTransfer, BlocksHaveTheBitsOfTheLoopOverPixels)
{
    std::mt19937 generator{7};
    for (int n = 1; n <= 67; ++n)
        for (const auto& [nx, ny] : {std::pair{n, 5}, {3, n}, {n + 230, 2}}) {
            setting s = random_setting(nx, ny, generator);
            s.envelope = n % 2 == 0;
            expect_same_bits(s, noise(static_cast<std::size_t>(nx) * ny, generator));
        }
}

TEST(WaveTransfer, NonFiniteValuesHaveTheBitsOfTheLoopOverPixels)
{
    std::mt19937 generator{9};
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    for (const float odd : {infinity, -infinity, nan, 1e38f, -1e-40f, 0.0f})
        for (int field = 0; field < 8; ++field) {
            setting s = random_setting(21, 3, generator);
            s.envelope = true;
            pixels src = noise(63, generator);
            src[5] = {odd, -odd};
            float* const fields[] = {&s.lambda, &s.step, &s.c2s, &s.bdiv, &s.vib, &s.coefficients.c20};
            if (field < 6) *fields[field] = odd;
            if (field == 6) s.tilt = {0, odd};
            if (field == 7) s.coefficients.c44 = {odd, 0};
            expect_same_bits(s, src);
        }
}

}  // namespace
