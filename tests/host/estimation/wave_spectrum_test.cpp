#include "host/estimation/wave_spectrum.h"

#include <gtest/gtest.h>

#include "bench/estimation_waves.h"
#include "host/fft/fft.h"

namespace {

using namespace zentrix;
using namespace zentrix::host;

bench::simulation amorphous_film()
{
    bench::simulation how;
    how.object = bench::specimen::amorphous;
    how.size = 256;
    how.wavelength_nm = 0.002;
    return how;
}

image_ref filtered(image_ref wave, double highest)
{
    auto* const pixels = static_cast<std::complex<float>*>(wave->data());
    forward_fft(pixels, 256, 256);
    for (int i = 0; i < 256 * 256; ++i)
        if (std::hypot(i % 256 - 128, i / 256 - 128) > highest * 256 * 0.02) pixels[i] = 0;
    backward_fft(pixels, 256, 256);
    return wave;
}

TEST(WaveSpectrum, KnowsNoiseResolutionAndEdges)
{
    // exp(-(2 pi 0.035 nm g)^2) of the power is beyond a frequency g. In noise, the signal ends where it is 0.25 of the
    // noise and two standard deviations above it.
    const struct
    {
        const char* name;
        void (*change)(bench::simulation&);
        double filter, noise, resolution, edge_resolution;
        bool edges_meet = true;
    } rows[] = {
        {"film", [](auto&) {}, 99, 0, 10.7, 12.4},
        {"noise", [](auto& how) { how.noise = 0.1; }, 99, 0.1, 11.3, 11.9},
        {"strong noise", [](auto& how) { how.noise = 0.37; }, 99, 0.37, 8.9, 8.9},
        {"filtered noise", [](auto& how) { how.noise = 0.3; }, 15, 0.3, 9.2, 9.2},
        {"crop", [](auto& how) { how.is_cropped = true; }, 99, 0, 10.7, 12.4, false},
    };
    for (const auto& row : rows) {
        auto how = amorphous_film();
        row.change(how);
        const auto found = spectrum_of(*filtered(bench::simulate(how), row.filter), {0, 0, 256, 256}, 0.02);
        EXPECT_NEAR(found.noise, row.noise, 0.04 * row.noise + 0.003) << row.name;
        EXPECT_NEAR(found.signal_resolution, row.resolution, 0.08 * row.resolution) << row.name;
        EXPECT_NEAR(found.edge_resolution, row.edge_resolution, 0.08 * row.edge_resolution) << row.name;
        EXPECT_EQ(found.edges_meet, row.edges_meet) << row.name;
        EXPECT_NEAR(found.scattered, 0.25, 0.04) << row.name;
    }
}

TEST(WaveSpectrum, HasNoSignalIfThePhaseIsWhiteNoise)
{
    auto how = amorphous_film();
    EXPECT_TRUE(spectrum_of(*bench::simulate(how), {0, 0, 256, 256}, 0.02).has_signal);
    how.object = bench::specimen::vacuum;
    how.noise = 0.3;
    EXPECT_FALSE(spectrum_of(*bench::simulate(how), {0, 0, 256, 256}, 0.02).has_signal);
}

TEST(WaveSpectrum, IsThatOfTheRegion)
{
    const auto wave = bench::simulate(amorphous_film());
    const std::uint32_t sizes[] = {100, 80};
    const auto part = image::create("part", HOST_ELEMENT_COMPLEX64, sizes);
    for (int y = 0; y < 80; ++y)
        for (int x = 0; x < 100; ++x)
            part->at<std::complex<float>>(x, y) = wave->at<std::complex<float>>(x + 30, y + 50);
    EXPECT_EQ(spectrum_of(*wave, {30, 50, 100, 80}, 0.02).values, spectrum_of(*part, {0, 0, 100, 80}, 0.02).values);
}

}  // namespace
