#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <regex>

#include "lens/electron.h"
#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"

using support::pixels_of;
using support::workbench;
using complex = std::complex<float>;
using names = std::vector<std::string>;
constexpr double pi = std::numbers::pi;

namespace {

void write_noise(const std::filesystem::path& file, int width, int height)
{
    std::mt19937 random{7};
    std::normal_distribution<float> normal;
    support::write_wave(file, width, height, [&](int, int) { return complex{1 + normal(random), normal(random)}; });
}

}  // namespace

TEST(Correct, RemovesTheAberrationsOfAnIndependentLens)
{
    const workbench bench;
    ASSERT_EQ(bench.run(support::built(MAKE_SAMPLE), {"in.npy", "truth.npy"}).code, 0);
    const auto done = bench.zentrix(
        "correct in.npy -o out.npy --kv 300 --pixel 0.02 --C1 -62 --A1 14@35 --B2 380@110 --A2 290@-20 "
        "--C3 .15 --S3 2.5@75 --png out.png --show phase");
    EXPECT_EQ(done.code, 0);
    EXPECT_EQ(done.err, "");
    const auto truth = pixels_of<complex>(bench / "truth.npy");
    EXPECT_GT(support::largest_difference(pixels_of<complex>(bench / "in.npy"), truth), 0.1);
    EXPECT_LT(support::largest_difference(pixels_of<complex>(bench / "out.npy"), truth), 1e-5);
    EXPECT_EQ(bench.folder().files(), (names{"in.npy", "out.json", "out.npy", "out.png", "truth.npy"}));
}

/// A wave 1 + sideband of one frequency: the envelope damps the sideband by a closed form of the rms widths.
TEST(Correct, EnvelopeWidthsAreRmsInTheStatedUnits)
{
    constexpr int size = 64, cycles = 9;
    constexpr double pixel = 0.05, g = cycles / (size * pixel);
    const double wavelength = zentrix::lens::electron_wavelength(300), angle = wavelength * g;
    const double gradient = 2 * pi / wavelength * -60 * angle;  // of the defocus term, per radian
    const double vibration = 2 * std::pow(pi * 0.05 * g, 2);
    const workbench bench;
    support::write_wave(bench / "in.npy", size, size,
                        [](int x, int) { return complex{1.0 + std::polar(0.25, 2 * pi * cycles * x / size)}; });
    for (const auto& [command, exponent] :
         {std::pair<std::string, double>{"aberrate --focus-spread 12", std::pow(pi * 12 * wavelength * g * g, 2) / 2},
          {"aberrate --vibration 0.05", vibration},
          {"aberrate --convergence 0.5", std::pow(gradient * 0.5e-3, 2) / 2},
          {"aberrate --vibration 0.05 --envelope off", 0},
          {"correct --vibration 0.05", 0},
          {"correct --vibration 0.05 --envelope on", vibration}}) {
        ASSERT_EQ(bench.zentrix(command + " in.npy -o out.npy --kv 300 --pixel 0.05 --C1 -60").code, 0);
        std::complex<double> sideband;
        const auto out = pixels_of<complex>(bench / "out.npy");
        for (int i = 0; i < size * size; ++i)
            sideband +=
                std::complex<double>{out[i]} * std::polar(1.0 / (size * size), -2 * pi * cycles * (i % size) / size);
        EXPECT_NEAR(std::abs(sideband) / 0.25, std::exp(-exponent), 1e-5) << command;
    }
}

TEST(Correct, RefusesOrReplacesPixelsThatAreNotFinite)
{
    const workbench bench;
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    const complex torn[] = {{1, nan}, {-inf, 0}};
    support::write_wave(bench / "torn.npy", 4, 4, [&](int x, int y) {
        return x < 2 && y == 0 ? torn[x] : complex{3, 1};
    });
    support::write_wave(bench / "empty.npy", 4, 4, [&](int, int) { return nan; });
    const auto huge = zentrix::host::image::create("huge", HOST_ELEMENT_COMPLEX128, std::vector<std::uint32_t>{4, 4});
    huge->at<std::complex<double>>(1, 2) = {0, -1e60};
    zentrix::host::write_npy(bench / "huge.npy", *huge);
    support::write_wave(bench / "large.npy", 4, 4, [](int, int) { return 3e38F; });
    const std::string which = "zentrix: torn.npy: 2 of 16 pixels are infinite or not a number; ";
    struct row
    {
        std::string words, err;
        complex replaced;
    };
    for (const auto& [words, err, replaced] :
         {row{"torn.npy --nan zero", which + "replaced by 0+0i\n", {0, 0}},
          {"torn.npy --nan mean", which + "replaced by 3+1i\n", {3, 1}},
          {"torn.npy", which + "--nan zero or --nan mean replaces them\n", {}},
          {"empty.npy --nan mean", "zentrix: empty.npy: no pixel is a finite number\n", {}},
          {"huge.npy", "zentrix: huge.npy: has values that are too large for single precision\n", {}},
          {"large.npy",
           "zentrix: The result is not finite: the values of the wave are too large for single precision.\n",
           {}}}) {
        const auto done = bench.zentrix("correct -o o.npy --kv 300 --pixel 0.1 " + words);
        EXPECT_EQ(done.err, err);
        ASSERT_EQ(std::filesystem::exists(bench / "o.npy"), done.code == 0);
        if (done.code != 0) continue;
        const auto out = pixels_of<complex>(bench / "o.npy");
        EXPECT_LT(std::abs(out[1] - replaced) + std::abs(out[2] - complex{3, 1}), 1e-5F);
        std::filesystem::remove(bench / "o.npy");
    }
}

TEST(Correct, TellsTheTimesOfItsSteps)
{
    const workbench bench;
    write_noise(bench / "wave.npy", 8, 9);
    const std::string run = "correct wave.npy -o o.npy --kv 300 --pixel 0.02 --timing";
    const auto matches = [](const std::string& text, const char* pattern) {
        return std::regex_search(text, std::regex{pattern});
    };
    EXPECT_TRUE(matches(bench.zentrix(run).err,
                        "zentrix: read .+ ms, load .+ ms, transform .+ ms, function .+ ms, write .+ ms\\s+"));
    EXPECT_TRUE(matches(bench.zentrix(run + " --json").out,
                        R"("seconds":."read":.+,"load":.+,"transform":.+,"function":.+,"write":.+)"));
}

#if !defined(_WIN32) && !defined(__SANITIZE_ADDRESS__)
TEST(Correct, ReportsThatMemoryRanOutAndLeavesNothing)
{
    const workbench bench;
    write_noise(bench / "wave.npy", 1021, 1031);
    const std::string run = "; exec " + support::built(ZENTRIX_PROGRAM).string() +
                            " correct wave.npy --kv 300 --pixel 0.02 --show phase --colour -o o.png";
    int refused = 0;
    for (int kilobytes = 20000; kilobytes < 38000; kilobytes += 1500) {
        const auto done = bench.run("/bin/sh", {"-c", "ulimit -v " + std::to_string(kilobytes) + run});
        ASSERT_TRUE(done.code == 0 || done.code == 1) << kilobytes << ": " << done.code << " " << done.err;
        std::filesystem::remove(bench / "o.json");
        if (std::filesystem::remove(bench / "o.png")) continue;
        ++refused;
        EXPECT_EQ(done.code, 1);
        EXPECT_EQ(done.err.substr(0, 9), "zentrix: ");
        EXPECT_EQ(bench.folder().files(), names{"wave.npy"});
    }
    EXPECT_GT(refused, 3);
}
#endif
