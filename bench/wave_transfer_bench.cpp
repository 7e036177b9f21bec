#include <cmath>
#include <complex>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench.h"
#include "optics/wave_transfer.h"

// The wave transfer function beside the loop that one would write first: the same steps pixel by pixel with the C
// library's functions, and this project's own plain form. One thread.

namespace {

using qorv::optics::complex_float;
using pixels = std::vector<complex_float>;

struct setting
{
    int n;
    qorv::optics::wave_parameters coefficients;
    float lambda = 0.025f, step = 0.4f, c2s = 40, bdiv = 2e-4f, vib = 0.2f;
    bool envelope;
};

/// Phases of some hundred radians at the edge, all terms in play.
setting microscope(int n, bool envelope)
{
    setting s{.n = n, .coefficients = {}, .envelope = envelope};
    auto& c = s.coefficients;
    c.c20 = 2e5f;
    c.c40 = -1.5e8f;
    c.c60 = 3e10f;
    c.c22 = {3e4f, 1e4f};
    c.c31 = {5e5f, -2e5f};
    c.c33 = {-4e5f, 3e5f};
    c.c42 = {2e7f, 1e7f};
    c.c44 = {1e7f, -2e7f};
    c.c51 = {4e8f, 1e8f};
    c.c53 = {1e8f, 5e8f};
    c.c55 = {-2e8f, 3e8f};
    c.c62 = {2e9f, 5e9f};
    c.c64 = {4e9f, 1e9f};
    c.c66 = {-3e9f, 2e9f};
    return s;
}

void library_loop(const pixels& src, pixels& dst, const setting& s)
{
    const int n = s.n, centre = n / 2;
    const auto& c = s.coefficients;
    const complex_float w0 = qorv::optics::pixel_angle(centre, centre, n, n, s.lambda, s.step, {});
    const complex_float g0 = qorv::optics::round_gradient(c, w0, std::norm(w0));
    const float chi0 = qorv::optics::chi(c, w0, std::norm(w0));
    const float a = 3.1415927f * s.vib / static_cast<float>(n) / s.step;
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x) {
            const complex_float w = qorv::optics::pixel_angle(x, y, n, n, s.lambda, s.step, {});
            const float r2 = std::norm(w);
            const float phase = chi0 - qorv::optics::chi(c, w, r2);
            float env = 1;
            if (s.envelope) {
                const float defocus = (r2 - std::norm(w0)) * s.c2s;
                const auto offset = static_cast<float>((x - centre) * (x - centre) + (y - centre) * (y - centre));
                env = std::exp(-std::min(std::norm(qorv::optics::round_gradient(c, w, r2) - g0) * s.bdiv * s.bdiv / 2 +
                                             defocus * defocus / 2 + 2 * a * a * offset,
                                         50.0f));
            }
            const auto i = static_cast<std::size_t>(y) * static_cast<std::size_t>(n) + static_cast<std::size_t>(x);
            dst[i] = src[i] * complex_float{env * std::cos(phase), env * std::sin(phase)};
        }
}

void compare(int n, bool envelope)
{
    const setting s = microscope(n, envelope);
    const std::size_t count = static_cast<std::size_t>(n) * static_cast<std::size_t>(n);
    pixels src(count), library(count), plain(count), fast(count);
    std::mt19937 generator{1};
    std::normal_distribution<float> values;
    for (complex_float& p : src) p = {values(generator), values(generator)};

    const auto by = [&](auto* multiply, pixels& dst) {
        multiply(src.data(), dst.data(), n, n, s.coefficients, s.lambda, s.step, s.c2s, s.bdiv, s.vib, s.envelope, {});
    };
    library_loop(src, library, s);
    by(qorv::optics::multiply_plain, plain);
    by(qorv::optics::multiply, fast);
    bool same = true, near = true;
    for (std::size_t i = 0; i < count; ++i) {
        same = same && plain[i] == fast[i];
        near = near && std::abs(fast[i] - library[i]) <= 2e-6f * (1 + std::abs(src[i]));
    }
    bench::check(same, "plain and fast form differ");
    bench::check(near, "further than 2e-6 from the loop over the C library");

    const std::string what = std::to_string(n) + (envelope ? " square, all envelopes" : " square, no envelope");
    const int runs = n > 2048 ? 3 : 5;
    const auto reference = bench::measure(
        double(count), [&] { library_loop(src, library, s); }, runs);
    bench::print(what, "library loop", reference);
    bench::print(what, "plain",
                 bench::measure(
                     double(count), [&] { by(qorv::optics::multiply_plain, plain); }, runs),
                 reference.median_ns);
    bench::print(what, "fast",
                 bench::measure(
                     double(count), [&] { by(qorv::optics::multiply, fast); }, 2 * runs - 1),
                 reference.median_ns);
}

}  // namespace

int main()
{
    for (const int n : {512, 2048, 4096})
        for (const bool envelope : {false, true}) compare(n, envelope);
}
