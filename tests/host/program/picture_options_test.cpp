#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"

/// Every option of a picture is checked before anything is written.
namespace {

using testing::HasSubstr;

const std::string microscope = "--kv 300 --pixel 0.05 --C1 -40 ";

class PictureOptions : public ::testing::Test
{
  protected:
    PictureOptions()
    {
        support::write_wave(bench_ / "wave.npy", 64, 64, [](int x, int y) {
            return std::polar(1.0, std::exp(-((x - 30) * (x - 30) + (y - 32) * (y - 32)) / 50.0));
        });
        support::write_real(bench_ / "phase.npy", 64, 64, [](int x, int y) { return std::sin(0.1 * x + 0.2 * y); });
        support::write_real(bench_ / "holo.npy", 64, 64,
                            [](int x, int) { return 3 + 2 * std::cos(0.5 * std::numbers::pi * x); });
        std::filesystem::create_directory(bench_ / "out");
    }

    /// The command fails with this message and leaves nothing in "out".
    void expect_refused(const std::string& words, int code, const std::string& text) const
    {
        const auto done = bench_.zentrix(words);
        EXPECT_EQ(done.code, code) << words << ": " << done.out << done.err;
        EXPECT_THAT(done.err, HasSubstr(text)) << words;
        EXPECT_TRUE(std::filesystem::is_empty(bench_ / "out")) << words;
    }

    support::workbench bench_;
};

TEST_F(PictureOptions, AreRefusedWithoutAPicture)
{
    const std::string commands[] = {"correct wave.npy -o out/r.npy " + microscope,
                                    "aberrate wave.npy -o out/ " + microscope,
                                    "fft wave.npy -o out/r.npy ",
                                    "ifft wave.npy -o out/r.npy ",
                                    "unwrap phase.npy -o out/r.npy --pixel 0.1 --cuts out/cuts.png ",
                                    "hologram holo.npy -o out/r.npy --pixel 0.1 ",
                                    "hologram holo.npy -o out/r.npy --unwrap --wave out/w.npy --pixel 0.1 ",
                                    "estimate wave.npy -o out/r.json --kv 300 --pixel 0.05 "};
    const std::pair<std::string, std::string> looks[] = {{"--scale-bar", "--scale-bar"},   {"--title T", "--title"},
                                                         {"--colour-bar", "--colour-bar"}, {"--show phase", "--show"},
                                                         {"--limits 0,1", "--limits"},     {"--zoom 2", "--zoom"}};
    for (const auto& command : commands)
        for (const auto& [words, name] : looks)
            expect_refused(command + words, 2, name + " is for pictures, and none is written");
    expect_refused("ctf -o out/ctf.csv --title T " + microscope, 2, "--title is for figures, and none is written");
    expect_refused("correct wave.npy -o out/r.npy --suffix _c " + microscope, 2, "--suffix is for results in a folder");
}

TEST_F(PictureOptions, AreCheckedBeforeAnythingIsWritten)
{
    const std::string no_scale = "out/p.png: a scale bar needs the pixel size";
    const std::string both = " -o out/r.npy --png out/p.png ";
    for (const char* const command : {"fft wave.npy", "ifft wave.npy", "unwrap phase.npy", "hologram holo.npy",
                                      "hologram holo.npy --phase --wave out/w.npy"})
        expect_refused(std::string{command} + both + "--scale-bar", 1, no_scale);
    const std::string commands[] = {"correct wave.npy " + microscope, "aberrate wave.npy " + microscope, "fft wave.npy",
                                    "unwrap phase.npy", "hologram holo.npy"};
    for (const auto& command : commands) {
        expect_refused(command + both + "--limits-of missing.png", 1, "missing.png");
        expect_refused(command + " -o out/r.npy --png none/p.png", 1,
                       "none/p.png: cannot be written: there is no folder");
        expect_refused(command + " -o none/r.npy --png out/p.png", 1,
                       "none/r.npy: cannot be written: there is no folder");
    }
    expect_refused("estimate wave.npy -o out/r.json --png none/p.png --kv 300 --pixel 0.05", 1,
                   "there is no folder none");
    expect_refused("ctf -o out/ctf.csv -o none/ctf.png " + microscope, 1, "there is no folder none");
    expect_refused("ctf -o out/ctf.csv -o out/ctf.csv " + microscope, 1, "two results would have this name");
    expect_refused("call MovingAverage2 phase.npy 2 _ _ -o imgDst1=out/mean.npy -o imgDst2=none/deviation.npy", 1,
                   "there is no folder none");
    expect_refused("call MedianFilter phase.npy 2 null 1 -o phase.npy", 1, "phase.npy: is an input and cannot be");
}

TEST_F(PictureOptions, ScaleBarHasTheGivenPixelSize)
{
    for (const char* const command :
         {"estimate wave.npy --free C1 -o out/r.json --kv 300 --pixel 0.05",
          "unwrap phase.npy -o out/u.npy --pixel 0.1", "hologram holo.npy -o out/h.npy --pixel 0.1",
          "correct wave.npy -o out/c.npy --kv 300 --pixel 0.05"})
        EXPECT_NE(bench_.zentrix(std::string{command} + " --png out/p.png --scale-bar").code, 1) << command;
    EXPECT_THAT(bench_.zentrix("info out/u.npy").out, HasSubstr("pixel 0.1 nm"));
}

}  // namespace
