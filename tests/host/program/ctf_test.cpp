#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "host/files/png.h"
#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"

using support::workbench;
using testing::HasSubstr;
using testing::StartsWith;

TEST(Ctf, WritesTheSameNumbersAsImageAndProfile)
{
    const workbench bench;
    const auto done = bench.zentrix(
        "ctf -o c.npy -o c.csv -o c.png --size 64 --kv 300 --pixel 0.05 --C1 -60 --C3 1.2 "
        "--focus-spread 4");
    EXPECT_THAT(done.text(), StartsWith("0 contrast transfer, 300 kV, C1 \u221260 nm"));
    EXPECT_THAT(done.out, HasSubstr("first zero: 5.08 nm\u207b\u00b9 (0.197 nm)"));
    EXPECT_THAT(done.out, HasSubstr("undersampled from"));
    const auto square = zentrix::host::read_npy(bench / "c.npy");
    std::ifstream lines{bench / "c.csv"};
    std::string line;
    std::getline(lines, line);
    for (int i = 0; std::getline(lines, line); ++i) {
        double frequency = 0, contrast = 0;
        char comma = 0;
        std::istringstream{line} >> frequency >> comma >> contrast;
        ASSERT_NEAR(frequency, i * 0.0025, 1e-9);
        if (i % 125 != 0 || i == 4000) continue;  // a pixel is 10 / 32
        EXPECT_NEAR(square->at<float>(32 + i / 125, 32), contrast, 1e-6) << i;
    }
    EXPECT_EQ(zentrix::host::read_png_texts(bench / "c.png").back().first, "Title");
    EXPECT_THAT(bench.zentrix("ctf -o again.npy --size 64 --params c.json").text(), StartsWith("0 contrast transfer"));
    EXPECT_EQ(zentrix::host::read_npy(bench / "again.npy")->fingerprint(), square->fingerprint());

    for (const auto& [words, text] :
         {std::pair{"ctf -o c.txt --kv 300 --pixel 0.05", "1 zentrix: c.txt: cannot be written"},
          {"ctf -o c.png --kv 300", "2 zentrix: --pixel is required"},
          {"ctf -o c.png --pixel 0.05", "2 zentrix: --kv or --wavelength is required"}})
        EXPECT_THAT(bench.zentrix(words).text(), StartsWith(text));
}

TEST(Pictures, TakeTheLimitsOfOthersAndSayThem)
{
    const workbench bench;
    support::write_wave(bench / "w.npy", 64, 48, [](int x, int y) { return std::polar(1.0 + 0.01 * x, 0.02 * y); });
    const std::string correct = "correct w.npy --kv 300 --pixel 0.05 --show phase ";
    EXPECT_THAT(bench.zentrix(correct + "-o a.png --limits -0.5,0.75 --scale-bar --colour-bar").out,
                HasSubstr("picture: phase (rad) from -0.5 (black) to 0.75 (white)"));
    EXPECT_THAT(bench.zentrix(correct + "-o b.png --limits-of a.png --json").out,
                HasSubstr(R"("black":-0.5,"white":0.75)"));
    struct row
    {
        std::string words;
        const char* text;
    };
    for (const auto& [words, text] :
         {row{correct + "-o c.png --limits 1,0", "2 zentrix: --limits is LOW,HIGH with LOW < HIGH, auto or full"},
          row{correct + "-o c.png --limits-of w.npy", "1 zentrix: w.npy: is not a PNG file"},
          row{"correct w.npy --kv 300 --pixel 0.05 -o c.png --limits-of a.png",
              "1 zentrix: a.png: has limits of: phase; expected: modulus"},
          row{"correct w.npy --kv 300 --pixel 0.05 -o c.png --show log --colour",
              "2 zentrix: --colour is for phases: use it with --show phase"}})
        EXPECT_THAT(bench.zentrix(words).text(), StartsWith(text));
}
