#include "bench.h"
#include "optics/wave_transfer_terms.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

// The variants of the wave transfer function against a loop over the C library's functions. One thread.

namespace {

using namespace qorv::optics;
using pixels = std::vector<complex_float>;

/// All terms together give phases of some hundred radians at the edge.
const aberrations lens{2e5f,          {3e4f, 1e4f}, -1.5e8f,       3e10f,        {5e5f, -2e5f},
                       {-4e5f, 3e5f}, {2e7f, 1e7f}, {1e7f, -2e7f}, {4e8f, 1e8f}, {1e8f, 5e8f},
                       {-2e8f, 3e8f}, {2e9f, 5e9f}, {4e9f, 1e9f},  {-3e9f, 2e9f}};

void library_loop(const pixels& src, pixels& dst, const sampling& at, const std::optional<envelope>& damping)
{
    const centre_values centre = values_at_centre(at, lens);
    auto to = dst.begin();
    auto from = src.begin();
    for (int y = 0; y < at.ny; ++y)
        for (int x = 0; x < at.nx; ++x) {
            const complex_float w{angle_along(x, at.nx, at, 0), angle_along(y, at.ny, at, 0)};
            const float s = std::norm(w), phase = centre.chi - chi(lens, w, s);
            float env = 1;
            if (damping)
                env = std::exp(-damping_exponent(
                    *damping, lens, centre, w, s,
                    vibration_along(x, at.nx, at, damping->vib) + vibration_along(y, at.ny, at, damping->vib)));
            *to++ = *from++ * complex_float{env * std::cos(phase), env * std::sin(phase)};
        }
}

void compare(int n, const std::optional<envelope>& damping)
{
    const sampling at{n, n, 0.025f, 0.4f};
    const auto count = static_cast<std::size_t>(n) * static_cast<std::size_t>(n);
    pixels src(count), library(count), plain(count), result(count);
    std::mt19937 generator{1};
    std::normal_distribution<float> values;
    for (complex_float& p : src) p = {values(generator), values(generator)};
    apply_wave_transfer_plain(src.data(), plain.data(), at, lens, damping);

    bench::comparison rows{"wave transfer " + std::to_string(n) + (damping ? ", envelope" : ""), double(count)};
    rows.add(
        "library", [&] { library_loop(src, library, at, damping); },
        [&] {
            return std::equal(plain.begin(), plain.end(), library.begin(),
                              [](complex_float a, complex_float b) { return std::abs(a - b) <= 2e-5f; });
        });
    for (const auto& variant : qorv::dm::runnable(wave_transfer_variants()))
        rows.add(
            variant.name, [&, variant] { variant.function(src.data(), result.data(), at, lens, damping); },
            [&] { return result == plain; });
}

}  // namespace

int main(int argc, char** argv)
{
    return bench::run(argc, argv, [] {
        for (const int n : {512, 2048, 4096}) {
            compare(n, {});
            compare(n, envelope{40, 2e-4f, 0.2f});
        }
    });
}
