#include "optics/wave_transfer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

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

TEST(WaveTransfer, EachTermHasItsOrderAndSymmetry)
{
    for (const auto& [nx, ny] : {std::pair{8, 8}, {9, 7}, {1, 5}, {6, 1}})
        for (const term& t : terms) {
            setting s{.at{nx, ny, 0.02f, 0.05f, {0.3f, -0.5f}}};
            const double azimuth = t.real ? 0.0 : 0.7;
            set(s.lens, t, complex_float{std::polar(7.5, azimuth)});
            const auto chi_at = [&, nx = nx, ny = ny](int x, int y) {
                const std::complex<double> w{(double(x) / nx - 0.5) * 0.4 + 0.3, (double(y) / ny - 0.5) * 0.4 - 0.5};
                return 7.5 * std::pow(std::abs(w), t.order) * std::cos(t.symmetry * std::arg(w) + azimuth);
            };
            const pixels result = transfer_function(s);
            for (int i = 0; i < nx * ny; ++i) {
                const auto expected = std::polar(1.0, chi_at(nx / 2, ny / 2) - chi_at(i % nx, i / nx));
                EXPECT_LT(std::abs(std::complex<double>{result[i]} - expected), 3e-6) << t.name << ' ' << i;
            }
            EXPECT_EQ(result[ny / 2 * nx + nx / 2], complex_float(1, 0)) << t.name;
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

}  // namespace
