#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"

using support::joined;
using support::pixels_of;
using support::workbench;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

float hill(int x, int y)
{
    return 9.0F * std::exp(-static_cast<float>((x - 20) * (x - 20) + (y - 14) * (y - 14)) / 200.0F);
}

}  // namespace

TEST(functions, AreListedInTheOrderOfTheirRegistration)
{
    const workbench bench;
    const auto plain = bench.zentrix({"functions"});
    EXPECT_EQ(plain.code, 0) << plain.err;
    EXPECT_THAT(plain.out, StartsWith("void ZXSetUseSIMD(long isUseSIMD)\nlong ZXPadSize(long n)\n"));
    EXPECT_EQ(std::count(plain.out.begin(), plain.out.end(), '\n'), 64);
    EXPECT_THAT(bench.zentrix({"functions", "--json"}).out, StartsWith(R"x(["void ZXSetUseSIMD(long isUseSIMD)",")x"));
}

TEST(call, ConvertsWordsByThePrototypeAndPrintsTheResults)
{
    const workbench bench;
    support::write_real(bench / "a.npy", 3, 2, [](int x, int y) { return x - 3 * y; });
    support::write_real(bench / "bar.npy", 5, 1, [](int x, int) { return x == 1 || x == 3 ? 1 : 0; });
    for (const char* name : {"10.raw", "2.raw"}) bench.folder().write(name, "123456");
    const std::string start = "zentrix: ZXSurvey, argument 2 (double fMin): expected _ or _=START, where START is ",
                      whole =
                          "zentrix: ZXPadSize, argument 1 (long n): expected a whole number from -2147483648 to "
                          "2147483647, not ";
    struct row
    {
        std::vector<std::string> words;
        std::string out, err;  ///< one of them
    };
    for (const auto& [words, out, err] : {
             row{{"ZXPadSize", "1025"}, "1152\n", ""},
             row{{"ZXPadSize", "1025", "--json"},
                 R"({"result":1152,"outputs":{}})"
                 "\n",
                 ""},
             row{{"ZXHanningWindow", "a.npy", "-.5", "-1.5", "1", "null"},
                 "float32 3 x 2, not written (use -o FILE)\n",
                 ""},
             row{{"ZXSurvey", "a.npy", "_", "_", "_", "null"}, "fMin = -3\nfMax = 2\nfSum = -3\n", ""},
             row{{"--json", "ZXSurvey", "a.npy", "_", "_", "_", "_"},
                 R"({"result":null,"outputs":{"fMin":-3.0,"fMax":2.0,"fSum":-3.0,"fSqsum":19.0}})"
                 "\n",
                 ""},
             // Output parameters with a start: near pixel 1, near pixel 3, everywhere.
             row{{"ZXGetCenterOfMass", "bar.npy", "_=1.2", "_=0", "0.9", "9", "0"}, "2\nfX = 1\nfY = 0\n", ""},
             row{{"ZXGetCenterOfMass", "bar.npy", "_=3.2", "_=-0.1", "0.9", "9", "0"}, "2\nfX = 3\nfY = 0\n", ""},
             row{{"ZXGetCenterOfMass", "bar.npy", "_=0", "_=-.5", "inf", "9", "-.5"}, "2\nfX = 2\nfY = 0\n", ""},
             row{{"ZXGetCenterOfMass", "bar.npy", "_=0", "_=-inf", "9", "9", "0"},
                 "",
                 "zentrix: Parameters are invalid.\n"},
             row{{"ZXGetCenterOfMass", "bar.npy", "_=0", "_=0", "9", "9", "-inf"},
                 "",
                 "zentrix: Parameters are invalid.\n"},
             row{{"ZXGetCenterOfMass", "bar.npy", "_=0", "_=0", "-nan", "9", "0"},
                 "",
                 "zentrix: Parameters are invalid.\n"},
             row{{"ZXOpenImage", "a.npy", "1", "1", "1", "-1"}, "float32 3 x 2, not written (use -o FILE)\n", ""},
             row{{"ZXSelectImageFiles", "_=./*.raw", "", "_=3", "_=1", "_=2"},
                 R"([{"Name":"2.raw"},{"Name":"10.raw"}])"
                 "\npath = ./\nnW = 3\nnH = 1\neType = 2\n",
                 ""},
             row{{"ZXSortNumberedName", "list:b10,b2"},
                 R"(tFiles = ["b2","b10"])"
                 "\n",
                 ""},
             row{{"ZXMaximumFilter", "a.npy", "1", "a.npy"}, "", "zentrix: Output should be out-of-place.\n"},
             row{{"ZXPadSize", "1.5"}, "", whole + "\"1.5\"\n"},
             row{{"ZXPadSize", "2147483648"}, "", whole + "\"2147483648\"\n"},
             row{{"ZXPadSize"}, "", "zentrix: ZXPadSize does not take 0 arguments:\n  long ZXPadSize(long n)\n"},
             row{{"ZXSurvey", "a.npy", "_=x", "_", "_", "_"}, "", start + "a number; or null, not \"_=x\"\n"},
             row{{"ZXNone", "1"},
                 "",
                 "zentrix: there is no script function ZXNone; \"zentrix functions\" lists them all\n"},
             row{{"ZXMedian", "none.npy"}, "", "zentrix: none.npy: there is no such file\n"},
             row{{"ZXMedian", "a.npy", "-o", "m.npy"}, "", "zentrix: -o m.npy: ZXMedian does not return an image\n"},
             row{{"ZXMaximumFilter", "a.npy", "1", "null", "-o", "m.jpg"},
                 "",
                 "zentrix: m.jpg: cannot be written: expected a name ending in .npy or .png\n"},
             row{{"ZXMaximumFilter", "a.npy", "1", "null", "-o", "none/m.npy"},
                 "",
                 "zentrix: none/m.npy: cannot be written: No such file or directory\n"},
         }) {
#ifdef _WIN32
        if (words.front() == "ZXSelectImageFiles") continue;  // backslashes
#endif
        const auto done = bench.zentrix(joined({"call"}, words));
        EXPECT_EQ(done.code, err.empty() ? 0 : 1) << words.front();
        EXPECT_EQ(done.out, out);
        EXPECT_EQ(done.err, err);
    }
    EXPECT_EQ(bench.folder().files(), (std::vector<std::string>{"10.raw", "2.raw", "a.npy", "bar.npy"}));
}

TEST(call, WritesImagesToTheirFilesAndWorksInPlace)
{
    const workbench bench;
    support::write_real(bench / "a.npy", 40, 30, hill);
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"call", "ZXMovingAverage2", "a.npy", "2", "_", "_=a.npy", "-o", "imgDst2=sd.png", "-o",
              "imgDst1=mean.npy"},
             {"call", "ZXMovingAverage", "a.npy", "2", "null", "-o", "single.npy"},
             {"--simd", "off", "call", "ZXMaximumFilter", "a.npy", "2", "null", "-o", "plain.npy"},
             {"call", "ZXMaximumFilter", "a.npy", "2", "null", "-o", "vector.npy"}})
        ASSERT_EQ(bench.zentrix(words).err, "");
    EXPECT_EQ(pixels_of<float>(bench / "plain.npy"), pixels_of<float>(bench / "vector.npy"));
    EXPECT_LT(support::largest_difference(pixels_of<float>(bench / "mean.npy"), pixels_of<float>(bench / "single.npy")),
              1e-5);
    EXPECT_EQ(bench.folder().files(),
              (std::vector<std::string>{"a.npy", "mean.npy", "plain.npy", "sd.png", "single.npy", "vector.npy"}));

    // The spectrum shifter twice over is the identity; once, a source that is its own destination changes.
    support::write_wave(bench / "w.npy", 8, 8, [](int x, int y) { return std::complex<float>(x + 1, y); });
    const auto shift = [&](const std::string& from, const std::string& to) {
        return bench.zentrix({"call", "ZXImageShifterForSemper", from, "0", "0", "4", "4", "1", from, "-o", to}).err;
    };
    EXPECT_EQ(shift("w.npy", "once.npy"), "");
    EXPECT_EQ(shift("once.npy", "twice.npy"), "");
    EXPECT_NE(pixels_of<std::complex<float>>(bench / "once.npy"), pixels_of<std::complex<float>>(bench / "w.npy"));
    EXPECT_EQ(pixels_of<std::complex<float>>(bench / "twice.npy"), pixels_of<std::complex<float>>(bench / "w.npy"));
}

TEST(unwrap, joins_a_phase_and_says_what_it_cannot_take)
{
    const workbench bench;
    support::write_real(bench / "hill.npy", 40, 30, hill);
    support::write_wave(bench / "wave.npy", 40, 30,
                        [](int x, int y) { return std::complex<float>{std::polar(2.0F, hill(x, y))}; });
    support::write_real(bench / "phase.npy", 40, 30,
                        [](int x, int y) { return std::arg(std::polar(1.0F, hill(x, y))); });
    support::write_image_of<std::int32_t>(bench / "whole.npy", 7, 4, 4, [](int x, int) { return x; });
    const auto truth = pixels_of<float>(bench / "hill.npy");
    for (const std::vector<std::string>& words : {std::vector<std::string>{"phase.npy"},
                                                  {"wave.npy", "--phase"},
                                                  {"phase.npy", "--box", "9", "--png", "u.png"}}) {
        const auto done = bench.zentrix(joined({"unwrap", "-o", "u.npy"}, words));
        EXPECT_EQ(done.code, 0) << done.err;
        const auto got = pixels_of<float>(bench / "u.npy");
        const float offset = got[0] - truth[0];
        double largest = 0;
        for (std::size_t i = 0; i < got.size(); ++i)
            largest = std::max<double>(largest, std::abs(got[i] - truth[i] - offset));
        EXPECT_LT(largest, 1e-5) << words[0];
    }
    struct row
    {
        std::vector<std::string> words;
        std::string err;
    };
    for (const auto& [words, err] :
         {row{{"wave.npy"},
              "wave.npy: holds complex64 40 x 30; expected a real phase in radians (--phase takes the argument of a "
              "complex "
              "wave first)\n"},
          row{{"phase.npy", "--phase"}, "phase.npy: holds float32 40 x 30; --phase needs a complex wave\n"},
          row{{"whole.npy"}, "whole.npy: holds int32 4 x 4; expected float32 or float64, in radians\n"},
          row{{"phase.npy", "--png", "a.jpg"}, "a.jpg: cannot be the picture: expected a name ending in .png\n"}}) {
        const auto done = bench.zentrix(joined({"unwrap", "-o", "refused.npy"}, words));
        EXPECT_EQ(done.code, 1);
        EXPECT_EQ(done.err, "zentrix: " + err);
    }
    EXPECT_FALSE(std::filesystem::exists(bench / "refused.npy"));
}

TEST(command_line, bad_usage_is_code_2_and_touches_nothing)
{
    const workbench bench;
    support::write_wave(bench / "w.npy", 4, 4, [](int, int) { return 1; });
    const std::vector<std::string> correct{"correct", "w.npy", "-o", "o.npy", "--pixel", "0.1"};
    struct row
    {
        std::vector<std::string> words;
        const char* said;
    };
    for (const auto& [words, said] :
         {row{{}, "expected a command: functions, call, info, correct"},
          row{{"corect"}, "expected a command: functions, call, info, correct"},
          row{{"call", "ZXPadSize", "3", "--jsno"}, "--jsno"}, row{{"--simd", "maybe", "functions"}, "maybe"},
          row{{"correct", "w.npy", "-o", "o.npy", "--kv", "300"}, "--pixel is required"},
          row{correct, "--kv is required"}}) {
        const auto done = bench.zentrix(words);
        EXPECT_EQ(done.code, 2) << said;
        EXPECT_THAT(done.err, HasSubstr(said));
        EXPECT_EQ(done.out, "");
    }
    for (const auto& [words, said] :
         {row{{"--kv", "300", "--C1", "5@20"}, "C1 is a number in nm, not \"5@20\""},
          row{{"--kv", "300", "--tilt", "3"}, "--tilt is RIGHT,UP in mrad, not \"3\""},
          row{{"--kv", "300", "--show", "colour"}, "colour"},
          row{{"--kv", "-300"}, "--kv: expected a positive number, not \"-300\""},
          row{{"--kv", "nan"}, "--kv: expected a positive number, not \"nan\""},
          row{{"--kv", "300", "--vibration", "-1"}, "--vibration: expected a number that is not negative, not \"-1\""},
          row{{"--kv", "300", "--wavelength", "0.002"}, "--wavelength"}}) {
        const auto done = bench.zentrix(joined(correct, words));
        EXPECT_EQ(done.code, 2) << said;
        EXPECT_THAT(done.err, HasSubstr(said));
    }
    EXPECT_EQ(bench.folder().files(), std::vector<std::string>{"w.npy"});
    EXPECT_EQ(bench.zentrix({"correct", "--help"}).code, 0);
}

TEST(command_line, names_the_file_that_it_cannot_use)
{
    const workbench bench;
    support::write_real(bench / "real.npy", 4, 4, [](int, int) { return 1; });
    bench.folder().write("torn.npy", "\x93NUMPY");
    const auto correct = [&](const std::string& file) {
        return bench.zentrix({"correct", file, "-o", "o.npy", "--kv", "300", "--pixel", "0.1"});
    };
    EXPECT_EQ(correct("real.npy").err, "zentrix: real.npy: holds float32 4 x 4; expected a complex wave\n");
    EXPECT_EQ(correct("torn.npy").err,
              "zentrix: torn.npy: it is not a .npy file: expected the first bytes \\x93NUMPY\n");
    EXPECT_EQ(correct("wave.tiff").err, "zentrix: wave.tiff: there is no such file\n");
    const auto no_library = bench.zentrix({"functions", "--library", "none.so"});
    EXPECT_EQ(no_library.code, 1);
    EXPECT_THAT(no_library.err, HasSubstr("none.so"));
    const auto info = bench.zentrix({"info", "real.npy", "--json"});
    EXPECT_EQ(
        info.out,
        R"({"type":"float32","size":[4,4],"file":"real.npy","of":"value","min":1.0,"max":1.0,"mean":1.0,"not_finite":0})"
        "\n");
    EXPECT_EQ(bench.folder().files(), (std::vector<std::string>{"real.npy", "torn.npy"}));
}
