#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"

using support::pixels_of;
using support::workbench;
using testing::HasSubstr;
using complex = std::complex<float>;
using names = std::vector<std::string>;
namespace fs = std::filesystem;

namespace {

const std::string lens = " --kv 300 --pixel 0.05 --C1 -40 --A1 9@30";

void write_wave(const fs::path& file, int seed)
{
    support::write_wave(file, 24, 17, [&](int x, int y) {
        return complex{1.0F + 0.1F * static_cast<float>((x * seed + y * y) % 7), 0.05F * static_cast<float>(x % 3)};
    });
}

/// Waves of the folder "in": a.npy, b.npy, c.npy, d.npy.
void write_waves(const workbench& bench)
{
    fs::create_directory(bench / "in");
    for (const char letter : {'a', 'b', 'c', 'd'}) write_wave(bench / ("in/" + std::string{letter} + ".npy"), letter);
}

names sorted_lines(const std::string& text)
{
    std::istringstream stream{text};
    names lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    std::sort(lines.begin(), lines.end());
    return lines;
}

/// How many files the summary on standard error calls done before.
std::string done_before(const support::outcome& done)
{
    const auto end = done.err.find(" done before");
    return end == std::string::npos
               ? "0"
               : done.err.substr(done.err.rfind(' ', end - 1) + 1, end - done.err.rfind(' ', end - 1) - 1);
}

/// Sets a file back in time.
void make_older(const fs::path& file)
{
    fs::last_write_time(file, fs::last_write_time(file) - std::chrono::seconds{10});
}

/// Plane z of a stack.
std::vector<complex> plane(const fs::path& file, std::size_t z, std::size_t count)
{
    const auto all = pixels_of<complex>(file);
    const auto first = all.begin() + static_cast<std::ptrdiff_t>(z * count);
    return {first, first + static_cast<std::ptrdiff_t>(count)};
}

}  // namespace

TEST(ManyFiles, GiveTheSameBitsAsOneByOneWithAnyNumberOfProcesses)
{
    const workbench bench;
    write_waves(bench);
    EXPECT_EQ(bench.zentrix("correct in -o one/" + lens).code, 0);
    const auto done = bench.zentrix("correct in/*.npy -o two/ --png two/ --jobs 2" + lens);
    EXPECT_EQ(done.code, 0);
    const auto lines = sorted_lines(done.out);
    ASSERT_EQ(lines.size(), 8U) << done.out;
    EXPECT_THAT(lines[4], HasSubstr("complex64 24 x 17 -> two"));
    for (const std::string letter : {"a", "b", "c", "d"}) {
        ASSERT_EQ(bench.zentrix("correct in/" + letter + ".npy -o single.npy" + lens).code, 0);
        const auto single = pixels_of<complex>(bench / "single.npy");
        EXPECT_EQ(pixels_of<complex>(bench / ("one/" + letter + ".npy")), single);
        EXPECT_EQ(pixels_of<complex>(bench / ("two/" + letter + ".npy")), single);
        EXPECT_TRUE(fs::exists(bench / ("two/" + letter + ".png")));
    }
}

TEST(ManyFiles, GoOnAfterABadFileAndListItAtTheEnd)
{
    const workbench bench;
    write_waves(bench);
    bench.folder().write("in/bad.npy", "no array");
    for (const std::string jobs : {"1", "2"}) {
        const auto done = bench.zentrix("correct in/*.npy in/missing.npy -o out/ --suffix _c --jobs " + jobs + lens);
        EXPECT_EQ(done.code, 1);
        EXPECT_THAT(done.err, HasSubstr("zentrix: failed:\n"));
        EXPECT_THAT(done.err, HasSubstr("bad.npy: it is not a .npy file"));
        EXPECT_TRUE(done.err.ends_with("zentrix: 2 of 6 files failed\n")) << done.err;
        EXPECT_EQ(sorted_lines(done.out).size(), 4U);
        EXPECT_TRUE(fs::exists(bench / "out/d_c.npy") && !fs::exists(bench / "out/bad_c.npy"));
        fs::remove_all(bench / "out");
    }
    EXPECT_THAT(bench.zentrix("correct in -o out/ --json" + lens).out,
                HasSubstr(R"(bad.npy","error":{"kind":"failure","message":")"));
}

TEST(ManyFiles, ContinueSkipsWhatIsDoneAndNothingElse)
{
    const workbench bench;
    write_waves(bench);
    const std::string all = "correct in -o out/ --jobs 2 --continue";
    EXPECT_EQ(done_before(bench.zentrix(all + lens)), "0");
    EXPECT_EQ(done_before(bench.zentrix(all + lens)), "4");
    fs::remove(bench / "out/a.json");   // no record
    make_older(bench / "out/b.json");   // the record is of an earlier result
    write_wave(bench / "in/c.npy", 5);  // another input of the same size
    fs::remove(bench / "out/d.npy");    // no result
    EXPECT_EQ(done_before(bench.zentrix(all + lens)), "0");
    EXPECT_EQ(done_before(bench.zentrix(all + lens)), "4");
    for (const std::string other : {" --C5 2", " --tilt 1,0", " --C3 0.1", " --nan zero"}) {
        EXPECT_EQ(done_before(bench.zentrix(all + lens + other)), "0") << other;
        EXPECT_EQ(done_before(bench.zentrix(all + lens + other)), "4") << other;
    }
    EXPECT_EQ(done_before(bench.zentrix("aberrate in -o out/ --continue" + lens)), "0");
}

TEST(ManyFiles, AreRefusedBeforeAnyWork)
{
    const workbench bench;
    write_waves(bench);
    fs::create_directory(bench / "out");
    const struct
    {
        std::string words, error;
    } rows[] = {
        {"correct in -o out.npy", "out.npy: several results need a folder: end its name with /"},
        {"correct in -o out/ --suffix .txt", "cannot be written"},
        {"correct in -o out/ --suffix .tif", "TIFF files have no complex numbers"},
        {"correct missing.npy -o out/x.tif", "TIFF files have no complex numbers"},
        {"correct in/a.npy -o in/a.npy", "is an input and cannot be the result, too"},
        {"correct in -o out/ --png out/x.png", "out/x.png: several results need a folder"},
        {"correct in -o out/ --suffix .png --png out/", "two results would have this name"},
        {"correct in -o out/ --A1 1:2:1@30 --C3 0:1:1", "--A1 and --C3 are both sweeps; one at a time is possible"},
        {"correct in -o out/ --C1 0:10:-5", "--C1: the step of 0:10:-5 does not lead from the start to the stop"},
        {"correct in -o out/ --C1 0:10", "--C1: a sweep is START:STOP:STEP, not \"0:10\""},
        {"correct in -o out/ --C1 0:1:1e-9", "--C1: 0:1:1e-9 are more than 10000 values"},
        {"correct in -o out/ --C1 0:1:1 --png out/", "a sweep makes a stack, which cannot be shown as one picture"},
        {"call ZXMedianFilter {} 2 null 1", "{} among the arguments needs --each FILE..."},
    };
    for (const auto& [words, error] : rows) {
        const auto done = bench.zentrix(words + (words.starts_with("correct") ? lens.substr(0, 23) : ""));
        EXPECT_NE(done.code, 0) << words;
        EXPECT_THAT(done.err, HasSubstr(error)) << words;
    }
    EXPECT_TRUE(fs::is_empty(bench / "out"));
}

TEST(ManyFiles, ResultsInTheFolderOfTheInputsAreNoInputs)
{
    const workbench bench;
    write_waves(bench);
    for (int run = 0; run < 2; ++run)
        EXPECT_THAT(bench.zentrix("correct in -o in/ --suffix _c" + lens).err, HasSubstr("zentrix: 4 files in "));
    // In another folder, results are inputs.
    EXPECT_THAT(bench.zentrix("correct in -o out/" + lens).err, HasSubstr("zentrix: 4 files in "));
    EXPECT_THAT(bench.zentrix("aberrate out -o back/ --C1 -40").err, HasSubstr("zentrix: 4 files in "));
}

TEST(ManyFiles, SweepsAndStacksHaveThePlanesOfSingleWaves)
{
    const workbench bench;
    write_wave(bench / "a.npy", 3);
    const std::string rest = " --kv 300 --pixel 0.05 --C1 -40";
    const std::size_t count = 24 * 17;
    const struct
    {
        std::string swept, last;
        std::size_t planes;
    } rows[] = {{"A1 4:-2:-3@35", "-2@35", 3},
                {"A1 0:0.3:0.1", "0.30000000000000004", 4},
                {"C3 1:1:1", "1", 1},
                {"C5 -1:1.9:2", "1", 2}};
    for (const auto& [swept, last, planes] : rows) {
        ASSERT_EQ(bench.zentrix("correct a.npy -o s.npy --" + swept + rest).code, 0) << swept;
        ASSERT_EQ(pixels_of<complex>(bench / "s.npy").size(), planes * count) << swept;
        // A stack of one plane keeps its shape and is one picture; others are refused one.
        for (const std::string words : {"aberrate s.npy -o t.npy --png t.png", "fft s.npy -o t.npy --png t.png",
                                        "unwrap s.npy --phase -o t.npy --png t.png"}) {
            const auto shown = bench.zentrix(words);
            EXPECT_EQ(shown.code, planes == 1 ? 0 : 1) << words << shown.err;
            if (planes > 1) continue;
            EXPECT_EQ(zentrix::host::read_npy(bench / "t.npy")->dimensions(), 3U) << words;
        }
        ASSERT_EQ(bench.zentrix("correct a.npy -o x.npy --" + swept.substr(0, 2) + " " + last + rest).code, 0);
        EXPECT_EQ(plane(bench / "s.npy", planes - 1, count), pixels_of<complex>(bench / "x.npy")) << swept;
    }
    // The stack, plane by plane, with the scale of its record.
    ASSERT_EQ(bench.zentrix("correct a.npy -o s.npy --A1 4:-2:-3@35" + rest).code, 0);
    EXPECT_THAT(bench.folder().read("s.json"), HasSubstr("\"coefficient\": \"A1\""));
    ASSERT_EQ(bench.zentrix("aberrate s.npy -o back.npy --C1 7").code, 0);
    ASSERT_EQ(bench.zentrix("aberrate x.npy -o y.npy --C1 7 --params back.json").code, 0);
    ASSERT_EQ(bench.zentrix("correct a.npy -o x.npy --A1 1@35" + rest).code, 0);
    ASSERT_EQ(bench.zentrix("aberrate x.npy -o y.npy --C1 7").code, 0);
    EXPECT_EQ(plane(bench / "back.npy", 1, count), pixels_of<complex>(bench / "y.npy"));
    EXPECT_THAT(bench.zentrix("correct s.npy -o t.npy --C1 0:1:1").err, HasSubstr("a sweep needs a single wave"));
}

TEST(ManyFiles, NumbersComeFromTheCommandLineTheFileOfParametersOrTheWave)
{
    const workbench bench;
    write_wave(bench / "a.npy", 3);
    bench.folder().write("p.json", R"({"kv": 200, "pixel": {"value": 0.4, "unit": "A"}, "C1": -40, "A1": "9@30"})");
    EXPECT_THAT(bench.zentrix("correct a.npy -o x.npy").err,
                HasSubstr("a.npy: --pixel is required: the file does not contain it"));
    EXPECT_THAT(bench.zentrix("correct a.npy -o x.npy --pixel 0.1").err,
                HasSubstr("a.npy: --kv or --wavelength is required: the file does not contain the voltage"));
    EXPECT_EQ(bench.zentrix("correct a.npy -o x.npy --params p.json --C1 -41").out,
              "removed C1 -41 nm, A1 9@30 nm, wavelength 2.5079 pm, pixel 0.04 nm from p.json, 200 kV from p.json: "
              "complex64 24 x 17 -> x.npy\n");
    ASSERT_EQ(bench.zentrix("correct a.npy -o y.npy --kv 200 --pixel 0.04 --C1 -41 --A1 9@30").code, 0);
    EXPECT_EQ(pixels_of<complex>(bench / "x.npy"), pixels_of<complex>(bench / "y.npy"));
    // The record of x.npy gives its scale.
    const auto overridden = bench.zentrix("aberrate x.npy -o z.npy --kv 300");
    EXPECT_EQ(overridden.err, "zentrix: x.npy: voltage 300 kV is used, the file has 200 kV\n");
    EXPECT_THAT(overridden.out, HasSubstr("wavelength 1.9687 pm, pixel 0.04 nm from x.npy: "));
}
