#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "host/files/npy.h"
#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"

/// "zentrix hologram" from a file to an unwrapped phase without the lens' aberrations.
namespace {

constexpr int size = 256;
constexpr double pi = std::numbers::pi;
constexpr double right = 59.0, down = 41.0;  ///< periods of the fringes per image

double phase_at(int x, int y) { return 5 * std::exp(-((x - 150) * (x - 150) + (y - 110) * (y - 110)) / 900.0); }

class Hologram : public ::testing::Test
{
  protected:
    Hologram()
    {
        support::write_wave(bench_ / "wave.npy", size, size,
                            [](int x, int y) { return std::polar(1.0, phase_at(x, y)); });
        bench_.zentrix("aberrate wave.npy -o seen.npy --kv 300 --pixel 0.1 --C1 -600 --A1 90@20");
        const auto seen = support::pixels_of<std::complex<float>>(bench_ / "seen.npy");
        support::write_real(bench_ / "holo.npy", size, size, [&](int x, int y) {
            const auto wave = std::complex<double>{seen[static_cast<std::size_t>(y * size + x)]};
            return 1 + std::norm(wave + std::polar(1.0, -2 * pi * (right * x + down * y) / size));
        });
        support::write_real(bench_ / "vacuum.npy", size, size,
                            [](int x, int y) { return 3 + 2 * std::cos(2 * pi * (right * x + down * y) / size); });
        bench_.folder().write("lens.json", R"({"kv": 300, "C1": -600, "A1": "90@20"})");
    }

    support::workbench bench_;
};

TEST_F(Hologram, OneCommandGivesTheUnwrappedCorrectedPhase)
{
    const auto done = bench_.zentrix(
        "hologram holo.npy --reference vacuum.npy --pixel 0.1 --params lens.json --unwrap --degrees --full-size "
        "-o phase.npy --png phase.png --wave out.npy");
    ASSERT_EQ(done.code, 0) << done.err;
    EXPECT_NE(done.out.find("sideband at 59,41"), std::string::npos) << done.out;
    EXPECT_NE(done.out.find("fringes: 3.563 pixels (0.3563 nm)"), std::string::npos) << done.out;
    const auto phase = support::pixels_of<float>(bench_ / "phase.npy");
    ASSERT_EQ(phase.size(), std::size_t{size * size});
    double largest = 0;
    for (int y = 20; y < size - 20; ++y)
        for (int x = 20; x < size - 20; ++x) {
            const double found = (phase[static_cast<std::size_t>(y * size + x)] - phase[30 * size + 30]) * pi / 180;
            largest = std::max(largest, std::abs(found - phase_at(x, y)));
        }
    EXPECT_LT(largest, 0.02);
    EXPECT_TRUE(std::filesystem::exists(bench_ / "phase.png"));
    EXPECT_EQ(support::pixels_of<std::complex<float>>(bench_ / "out.npy").size(), phase.size());
}

TEST_F(Hologram, WaveNextToAPhaseHasItsScaleAndVoltageForOtherCommands)
{
    for (const std::string wave : {"small.npy", "phase.mrc"}) {
        ASSERT_EQ(
            bench_.zentrix("hologram holo.npy --pixel 0.1 --kv 300 --radius 30 --phase -o phase.npy --wave " + wave)
                .code,
            0);
        for (const std::string& file : {std::string{"phase.npy"}, wave}) {
            const auto facts = bench_.zentrix("info " + file).out;
            EXPECT_NE(facts.find("pixel 0.4 nm"), std::string::npos) << facts;
            EXPECT_NE(facts.find("300 kV"), std::string::npos) << facts;
        }
    }
}

TEST_F(Hologram, GivenPlaceWithoutFringesIsDoubtful)
{
    const auto aside = bench_.zentrix("hologram holo.npy --sideband=56,41 -o w.npy");  // the flank of the sideband
    EXPECT_NE(aside.err.find("warning: holo.npy: there is no clear peak at the given position"), std::string::npos);
    EXPECT_NE(aside.out.find("times its surroundings (doubtful)"), std::string::npos) << aside.out;
    const auto near_it = bench_.zentrix("hologram holo.npy --sideband 58,42 -o w.npy");
    EXPECT_EQ(near_it.err, "");
    EXPECT_NE(near_it.out.find("(given)"), std::string::npos) << near_it.out;
}

TEST_F(Hologram, ContinueRepeatsWhatWouldDifferAndNothingElse)
{
    std::filesystem::create_directory(bench_ / "series");
    for (const char* const name : {"holo.npy", "vacuum.npy"})
        std::filesystem::copy_file(bench_ / name, bench_ / ("series/" + std::string{name}));
    std::filesystem::copy_file(bench_ / "holo.npy", bench_ / "series/twin.npy");
    const std::string all =
        "hologram series --reference series/vacuum.npy --pixel 0.1 -o out/ --png out/ --wave out/ --phase --continue ";
    const auto first = bench_.zentrix(all + "--jobs 2");
    EXPECT_EQ(first.code, 0) << first.err;
    EXPECT_FALSE(std::filesystem::exists(bench_ / "out/vacuum.npy"));
    bench_.zentrix("hologram holo.npy vacuum.npy --reference vacuum.npy -o named/");
    EXPECT_NE(bench_.folder()
                  .read("named/vacuum.json")
                  .find(R"("hologram", "--reference", "vacuum.npy", "vacuum.npy", "-o")"),
              std::string::npos);
    const auto twin = support::pixels_of<std::complex<float>>(bench_ / "out/twin_wave.npy");
    ASSERT_EQ(bench_.zentrix("hologram holo.npy --reference vacuum.npy -o one.npy").code, 0);
    EXPECT_EQ(support::pixels_of<std::complex<float>>(bench_ / "one.npy"), twin);
    for (const char* const other : {"--despike", "--flank 2", "--full-size", "--window hann", "--radius 20",
                                    "--sideband other", "--sideband 59,41", "--degrees", "--unwrap", "--title T",
                                    "--show phase --limits -1,1", "--params lens.json"}) {
        const auto changed = bench_.zentrix(all + other);
        EXPECT_EQ(changed.code, 0) << changed.err;
        EXPECT_EQ(changed.err.find("done before"), std::string::npos) << other << changed.err;
    }
    const auto same = bench_.zentrix(all + "--params lens.json");
    EXPECT_NE(same.err.find("2 done before"), std::string::npos) << same.err;
}

TEST_F(Hologram, PictureOfAPhaseIsCalledAPhase)
{
    const auto degrees = bench_.zentrix("hologram holo.npy --unwrap --degrees -o d.npy --png d.png --colour");
    EXPECT_NE(degrees.out.find("picture: phase in cyclic colours"), std::string::npos) << degrees.text();
    const auto greys = bench_.zentrix("hologram holo.npy --unwrap --degrees -o d.npy --png grey.png");
    EXPECT_NE(greys.out.find("picture: phase (\u00b0) from"), std::string::npos) << greys.text();
    bench_.zentrix("hologram holo.npy --unwrap -o r.npy --png r.png --colour");
    const auto pixels = [&](const char* png) {  // without the texts, which have the command
        const auto bytes = bench_.folder().read(png);
        return bytes.substr(bytes.find("IDAT"));
    };
    EXPECT_EQ(pixels("d.png"), pixels("r.png"));
}

TEST_F(Hologram, Refusals)
{
    std::mt19937 random;
    support::write_real(bench_ / "gap.npy", size, size, [](int x, int y) { return x + y == 0 ? NAN : 1.0; });
    const std::uint32_t rgb[] = {3, size, size};
    zentrix::host::write_npy(bench_ / "rgb.npy", *zentrix::host::image::create("rgb", HOST_ELEMENT_UINT8, rgb));
    support::write_real(bench_ / "flat.npy", size, size, [&](int, int) { return 100 + random() % 17; });
    const std::pair<const char*, const char*> refusals[] = {
        {"wave.npy -o w.npy", "this is a wave already"},
        {"holo.npy -o holo.npy", "holo.npy: is an input and cannot be the result, too"},
        {"holo.npy -o w.npy --reference vacuum.npy --png w.png --wave vacuum.npy", "vacuum.npy: is an input"},
        {"holo.npy --phase -o w.npy --wave w.npy", "w.npy: two results would have this name"},
        {"holo.npy --phase -o w.npy --wave w.png", "w.png: a picture does not keep the wave"},
        {"holo.npy -o w.npy --reference gap.npy", "gap.npy: 1 of 65536 pixels of the reference are infinite"},
        {"holo.npy -o w.npy --reference missing.npy", "missing.npy"},
        {"holo.npy wave.npy -o out/ --jobs 2 --reference flat.npy", "1 zentrix: flat.npy: No fringes were found"},
        {"gap.npy -o w.npy --reference vacuum.npy", "gap.npy: 1 of 65536 pixels of the hologram are infinite"},
        {"rgb.npy -o w.npy", "This image has 3, as colour pictures have"},
        {"holo.npy --unwrap -o w.npy --png w.png --show wave", "2 zentrix: --show is for waves"},
        {"holo.npy --phase -o w.npy --png w.png --show modulus", "2 zentrix: --show is for waves"},
        {"missing.npy -o w.tif", "TIFF files have no complex numbers"},
        {"holo.npy --phase -o w.npy --wave kept.npy", "kept.npy: cannot be written: it is read-only"},
        {"holo.npy -o w.npy --window hann --flank 2", "2 zentrix: --flank is that of --window disk; hann has none"},
        {"holo.npy -o w.npy --degrees", "2 zentrix: --degrees needs --phase or --unwrap"},
        {"holo.npy -o w.npy --sideband left", "--sideband is auto, other or X,Y in pixels, not \"left\""},
        {"holo.npy -o w.npy --params lens.json", "--pixel is required to remove aberrations"},
        {"holo.npy -o w.npy --pixel 0.1 --C1 5", "--kv is required to remove aberrations"},
    };
    bench_.folder().write("kept.npy", "");
    std::filesystem::permissions(bench_ / "kept.npy", std::filesystem::perms::owner_read);
    for (const auto& [words, text] : refusals) {
        const auto result = bench_.zentrix(std::string{"hologram "} + words).text();
        EXPECT_NE(result.find(text), std::string::npos) << words << ": " << result;
        EXPECT_FALSE(std::filesystem::exists(bench_ / "w.npy")) << words;
    }
}

}  // namespace
