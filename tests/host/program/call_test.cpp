#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"

using support::pixels_of;
using support::workbench;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

float hill(int x, int y)
{
    return 9.0F * std::exp(-static_cast<float>((x - 20) * (x - 20) + (y - 14) * (y - 14)) / 200.0F);
}

/// A command and what it prints: to standard error if it fails.
struct row
{
    std::string command, printed;
};

}  // namespace

TEST(Functions, AreListedInTheOrderOfTheirRegistration)
{
    const workbench bench;
    const auto plain = bench.zentrix("functions");
    EXPECT_EQ(plain.code, 0) << plain.err;
    EXPECT_THAT(plain.out, StartsWith("void ZXSetUseSIMD(long isUseSIMD)\nlong ZXPadSize(long n)\n"));
    std::string listed = bench.zentrix("functions --json").out;  // ["first","second"]
    for (std::size_t at; (at = listed.find("\",\"")) != std::string::npos;) listed.replace(at, 3, "\n");
    EXPECT_EQ(listed, "[\"" + plain.out.substr(0, plain.out.size() - 1) + "\"]\n");
}

TEST(Call, ConvertsWordsByThePrototypeAndPrintsTheResults)
{
    const workbench bench;
    support::write_real(bench / "a.npy", 3, 2, [](int x, int y) { return x - 3 * y; });
    support::write_real(bench / "bar.npy", 5, 1, [](int x, int) { return x == 1 || x == 3 ? 1 : 0; });
    for (const char* name : {"10.raw", "2.raw"}) bench.folder().write(name, "123456");
    const std::string image = "float32 3 x 2, not written (use -o FILE)\n",
                      invalid = "ZXGetCenterOfMass: Parameters are invalid.\n  long ZXGetCenterOfMass(",
                      whole =
                          "ZXPadSize, argument 1 (long n): expected a whole number from -2147483648 to 2147483647, "
                          "not ",
                      names = "[{\"Name\":\"2.raw\"},{\"Name\":\"10.raw\"}]\n";
    const row good[] = {
        {"ZXPadSize 1025", "1152\n"},
        {"ZXPadSize 1025 --json", "{\"result\":1152,\"outputs\":{}}\n"},
        {"ZXHanningWindow a.npy -.5 -1.5 1 null", image},
        {"ZXSurvey a.npy _ _ _ null", "fMin = -3\nfMax = 2\nfSum = -3\n"},
        {"--json ZXSurvey a.npy _ _ null null", "{\"result\":null,\"outputs\":{\"fMin\":-3.0,\"fMax\":2.0}}\n"},
        // Start values: near pixel 1, near pixel 3, everywhere.
        {"ZXGetCenterOfMass bar.npy _=1.2 _=0 0.9 9 0", "2\nfX = 1\nfY = 0\n"},
        {"ZXGetCenterOfMass bar.npy _=3.2 _=-0.1 0.9 9 0", "2\nfX = 3\nfY = 0\n"},
        {"ZXGetCenterOfMass bar.npy _=0 _=-.5 inf 9 -.5", "2\nfX = 2\nfY = 0\n"},
        {"ZXOpenImage a.npy 1 1 1 -1", image},
#ifndef _WIN32  // backslashes
        {"ZXSelectImageFiles _=./*.raw * _=3 _=1 _=2", names + "path = ./\nnW = 3\nnH = 1\neType = 2\n"},
#endif
        {"ZXSortNumberedName list:b10,b2", "tFiles = [\"b2\",\"b10\"]\n"}};
    const row bad[] = {
        {"ZXGetCenterOfMass bar.npy _=0 _=-inf 9 9 0", invalid},
        {"ZXGetCenterOfMass bar.npy _=0 _=0 9 9 -inf", invalid},
        {"ZXGetCenterOfMass bar.npy _=0 _=0 -nan 9 0", invalid},
        {"ZXMaximumFilter a.npy 1 a.npy",
         "ZXMaximumFilter: Output should be out-of-place.\n  ImageRef ZXMaximumFilter("},
        {"ZXPadSize 1.5", whole + "\"1.5\"\n"},
        {"ZXPadSize 2147483648", whole + "\"2147483648\"\n"},
        {"ZXPadSize", "ZXPadSize does not take 0 arguments:\n  long ZXPadSize(long n)\n"},
        {"ZXGetCenterOfMass a.npy _=x _ 9 9 0",
         "ZXGetCenterOfMass, argument 2 (double fX): expected _ or _=START, where "
         "START is a number; or null, not \"_=x\"\n"},
        {"NoSuch 1", "there is no script function NoSuch; \"zentrix functions\" lists them all\n"},
        {"MedianFiltre 1", "there is no script function MedianFiltre. Did you mean ZXMedianFilter?\n"},
        {"ZXMedian none.npy", "none.npy: there is no such file\n"},
        {"ZXMedian a.npy -o m.npy", "-o m.npy: ZXMedian does not return an image\n"},
        {"ZXMaximumFilter a.npy 1 null -o m.jpg",
         "m.jpg: cannot be written: expected a name ending in .npy, .mrc, .tif or .png\n"},
        {"ZXMaximumFilter a.npy 1 null -o none/m.npy", "none/m.npy: cannot be written: there is no folder none\n"}};
    for (const auto& [command, printed] : good) EXPECT_EQ(bench.zentrix("call " + command).text(), "0 " + printed);
    for (const auto& [command, printed] : bad)
        EXPECT_THAT(bench.zentrix("call " + command).text(), testing::StartsWith("1 zentrix: " + printed));
    EXPECT_EQ(bench.folder().files(), (std::vector<std::string>{"10.raw", "2.raw", "a.npy", "bar.npy"}));
}

TEST(Call, WritesImagesToTheirFilesAndWorksInPlace)
{
    const workbench bench;
    support::write_real(bench / "a.npy", 40, 30, hill);
    for (const char* command : {"call ZXMovingAverage2 a.npy 2 _ _=a.npy -o imgDst2=sd.png -o imgDst1=mean.npy",
                                "call ZXMovingAverage a.npy 2 null -o single.npy",
                                "--simd off call ZXMaximumFilter a.npy 2 null -o plain.npy",
                                "call ZXMaximumFilter a.npy 2 null -o vector.npy"})
        ASSERT_EQ(bench.zentrix(command).err, "");
    EXPECT_EQ(pixels_of<float>(bench / "plain.npy"), pixels_of<float>(bench / "vector.npy"));
    EXPECT_LT(support::largest_difference(pixels_of<float>(bench / "mean.npy"), pixels_of<float>(bench / "single.npy")),
              1e-5);
    EXPECT_EQ(bench.folder().files(),
              (std::vector<std::string>{"a.npy", "mean.npy", "plain.json", "plain.npy", "sd.json", "sd.png",
                                        "single.json", "single.npy", "vector.json", "vector.npy"}));

    // The shifter twice is the identity; its source changes when it is also the destination.
    support::write_wave(bench / "w.npy", 8, 8, [](int x, int y) { return std::complex<float>(x + 1, y); });
    EXPECT_EQ(bench.zentrix("call ZXImageShifterForSemper w.npy 0 0 4 4 1 w.npy -o once.npy").err, "");
    EXPECT_EQ(bench.zentrix("call ZXImageShifterForSemper once.npy 0 0 4 4 1 once.npy -o twice.npy").err, "");
    EXPECT_NE(pixels_of<std::complex<float>>(bench / "once.npy"), pixels_of<std::complex<float>>(bench / "w.npy"));
    EXPECT_EQ(pixels_of<std::complex<float>>(bench / "twice.npy"), pixels_of<std::complex<float>>(bench / "w.npy"));
}

TEST(Unwrap, UnwrapsPhasesWavesAndVolumes)
{
    const workbench bench;
    const auto wrapped = [](int x, int y) { return std::arg(std::polar(1.0F, hill(x, y))); };
    support::write_wave(bench / "wave.npy", 40, 30, [](int x, int y) { return std::polar(2.0F, hill(x, y)); });
    support::write_real(bench / "phase.npy", 40, 30, wrapped);
    support::write_real(bench / "degrees.npy", 40, 30, hill);
    const auto volume = zentrix::host::image::create("v", HOST_ELEMENT_FLOAT64, std::vector<std::uint32_t>{40, 30, 2});
    for (int i = 0; i < 2400; ++i) volume->at<double>(i % 40, i / 40 % 30, i / 1200) = wrapped(i % 40, i / 40 % 30);
    zentrix::host::write_npy(bench / "volume.npy", *volume);
    for (const std::string words : {"phase.npy", "wave.npy --phase", "phase.npy --box 9", "volume.npy"}) {
        EXPECT_EQ(bench.zentrix("unwrap -o u.npy " + words).err, "");
        const auto got = pixels_of<float>(bench / "u.npy");
        ASSERT_EQ(got.size(), words == "volume.npy" ? 2400u : 1200u);
        for (int i = 0; i < static_cast<int>(got.size()); ++i)
            ASSERT_NEAR(got[static_cast<std::size_t>(i)] - got[0], hill(i % 40, i / 40 % 30) - hill(0, 0), 1e-5) << i;
    }
    EXPECT_THAT(bench.zentrix("unwrap -o u.npy degrees.npy").err, HasSubstr("are beyond -pi to pi"));
    EXPECT_THAT(
        bench.zentrix("unwrap -o u.npy volume.npy").out,
        HasSubstr("residues: 0 positive, 0 negative; pixels at cuts: 0; regions with an offset of their own: 2; "
                  "pixels not reached: 0\n"));
}

TEST(CommandLine, NamesTheFileAndTheProblem)
{
    const workbench bench;
    support::write_real(bench / "real.npy", 4, 4, [](int, int) { return 1; });
    support::write_wave(bench / "wave.npy", 4, 4, [](int, int) { return 1; });
    support::write_image_of<std::int32_t>(bench / "whole.npy", HOST_ELEMENT_INT32, 4, 4, [](int x, int) { return x; });
    zentrix::host::write_npy(bench / "volume.npy", *zentrix::host::image::create("v", HOST_ELEMENT_FLOAT32,
                                                                                 std::vector<std::uint32_t>{4, 4, 2}));
    bench.folder().write("torn.npy", "\x93NUMPY");
    const auto before = bench.folder().files();
    const std::string correct = "correct -o o.npy --kv 300 --pixel .1 ", unwrap = "unwrap -o o.npy ";
    for (const auto& [command, printed] :
         {row{correct + "real.npy", "real.npy: contains float32 4 x 4; expected a complex wave"},
          {correct + "torn.npy", "torn.npy: it is not a .npy file: expected the first bytes \\x93NUMPY"},
          {correct + "wave.tiff", "wave.tiff: there is no such file"},
          {"correct wave.npy -o o.npy --kv 300 --pixel 1e-3 --C3 1e6",
           "warning: C3 is 1e+06 mm: are these nanometres?\nzentrix: C3 is too large."},
          {unwrap + "wave.npy",
           "wave.npy: contains complex64 4 x 4; expected a real phase in radians (--phase computes it "
           "from a complex wave)"},
          {unwrap + "real.npy --phase", "real.npy: contains float32 4 x 4; --phase needs a complex wave"},
          {unwrap + "whole.npy", "whole.npy: contains int32 4 x 4; expected float32 or float64, in radians"},
          {unwrap + "real.npy --png a.jpg", "a.jpg: cannot be written: expected a name ending in .png"},
          {unwrap + "volume.npy --png a.png",
           "volume.npy: contains float32 4 x 4 x 2; a volume cannot be shown as one picture"}})
        EXPECT_EQ(bench.zentrix(command).text(), "1 zentrix: " + printed + "\n");
    EXPECT_EQ(bench.folder().files(), before);
    EXPECT_THAT(bench.zentrix("functions --library none.so").err, HasSubstr("none.so"));
    EXPECT_EQ(bench.zentrix("info real.npy --json").out,
              "{\"type\":\"float32\",\"size\":[4,4],\"file\":\"real.npy\",\"format\":\"NumPy\",\"name\":\"real\","
              "\"axes\":[null,null],\"of\":\"value\",\"min\":1.0,\"max\":1.0,\"mean\":1.0,\"not_finite\":0}\n");
}
