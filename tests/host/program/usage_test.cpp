#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/host/program/run.h"

using support::workbench;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

struct row
{
    std::string words, says;
};

/// The first line on standard error, without "zentrix: ".
std::string complaint(const support::outcome& done)
{
    const std::string prefix = "zentrix: ";
    return done.err.starts_with(prefix) ? done.err.substr(prefix.size(), done.err.find('\n') - prefix.size())
                                        : done.err;
}

}  // namespace

#ifndef _WIN32
TEST(Usage, OutputThatIsLostIsAFailure)
{
    for (const char* const words : {"functions", "functions --json", "--help", "--version"})
        EXPECT_EQ(std::system((std::string{ZENTRIX_PROGRAM " "} + words + " >/dev/full 2>/dev/null").c_str()), 1 << 8);
}

TEST(Usage, WorkerWhoseParentHasEndedSaysNothing)
{
    EXPECT_EQ(std::system("said=$(" ZENTRIX_PROGRAM " --worker </dev/null 2>&1); test $? = 1 -a -z \"$said\""), 0);
}
#endif

TEST(Usage, ErrorsNameTheWordAndWhatWasProbablyMeant)
{
    const workbench bench;
    const std::string correct = "correct w.npy -o o.npy ";
    for (const auto& [words, says] : {
             row{"", "expected a command: info, correct, "},
             {"--jsno", "there is no option --jsno. Did you mean --json?"},
             {"corect w.npy --kv 3", "there is no command \"corect\". Did you mean correct?"},
             {"help corect", "there is no command \"corect\". Did you mean correct?"},
             {"FFT w.npy", "there is no command \"FFT\". Did you mean fft?"},
             {"version", "there is no command \"version\". zentrix --version prints the versions"},
             {"w.npy info", "\"w.npy\" comes after the command: zentrix info w.npy"},
             {"ZXMedianFilter w.npy", "there is no command \"ZXMedianFilter\". Did you mean \"zentrix call "},
             {correct + "--c1 -62", "there is no option --c1. Did you mean --C1?"},
             {correct + "-kv 300", "\"-kv\" needs two hyphens: --kv"},
             {correct + "--kv300", "there is no option --kv300. Did you mean --kv 300?"},
             {correct + "--defocus=62",
              "there is no option --defocus. Defocus is --C1 in nm, and C1 < 0 is underfocus"},
             {correct + "--focus 62", "there is no option --focus. Defocus is --C1 in nm"},
             {correct + "--Voltage 300000", "there is no option --Voltage. The accelerating voltage is --kv, in kV"},
             {correct + "--pixel_size 1", "there is no option --pixel_size. The pixel size is --pixel, in nm"},
             {correct + "--C12 14", "there is no option --C12. The coefficients are C1, A1, B2 and so on"},
             {correct + "--color", "there is no option --color. Did you mean --colour?"},
             {correct + "--box 3", "there is no option --box of \"zentrix correct\"; \"zentrix unwrap\" has it"},
             {"correct w.npy -output o.npy --kv 300", "\"-output\" needs two hyphens: --output"},
             {"functions \xe2\x80\x93json more", "unexpected argument \"more\"; expected: zentrix functions TEXT"},
             {"functions median \xe2\x80\x93json",
              "unexpected argument \"\xe2\x80\x93json\": its dash is not a hyphen (-)"},
             {"correct", "WAVE is required (Complex waves"},
             {correct + "--kv", "--kv (Accelerating voltage [kV]"},
             {"estimate w.npy --free C1,A1,C1", "--free: C1 is there twice"},
             {"estimate w.npy --free A1 --range C1=-9:9", "--range is that of C1, which is not among --free"},
             {correct + "--kv 0,02", "--kv: expected a positive number, not \"0,02\": numbers have a decimal point"},
             {correct + "--C1 5 --C1 6", "--C1 is given 2 times; it takes one value"},
             {correct + "--kv 300 --wavelength 1", "--kv and --wavelength exclude each other; give one of them"},
             {correct + "--show phaze", "--show: expected real, imaginary, modulus, log"},
             {"simulate w.npy", "there is no command \"simulate\". \"zentrix aberrate\" applies aberrations"},
             {correct + "--kv 300 --pixel 1 --A1 14 35", "unexpected argument \"35\": an angle follows as in 14@35"},
             {"unwrap p.npy -o u.npy --box -3", "--box: expected a number from 0 to 2147483647, not \"-3\""},
             {correct + "--wavelength 2e-12", "--wavelength: The wavelength is 2e-12 nm: are these metres?"},
             {"hologram h.npy -o \"\" --wave w.npy", "-o expects the name of a file or folder"},
             {"unwrap p.npy -o \"\"", "-o expects the name of a file or folder"},
             {"--simd maybe functions", "--simd: expected"},
             {correct + "--C1 5@20", "C1 is a number in nm, not \"5@20\""},
             {correct + "--C1 -inf", "C1 is a number in nm, not \"-inf\""},
             {correct + "--remove", "--remove no longer exists: \"correct\" removes aberrations"},
             {correct + "--kv nan", "--kv: expected a positive number, not \"nan\""},
             {correct + "--kv 300000", "--kv: 300000 kV: are these volts? kv is in"},
             {correct + "--kv 0.3", "--kv: 0.3 kV: are these megavolts? kv is in"},
             {correct + "--pixel 5e-11", "--pixel: The pixel size is 5e-11 nm: are these metres? pixel is in"},
             {correct + "--vibration -1", "--vibration: expected a number of 0 or more, not \"-1\""},
         }) {
        const auto done = bench.zentrix(words);
        EXPECT_EQ(done.code, 2) << words;
        EXPECT_THAT(complaint(done), StartsWith(says)) << words;
        EXPECT_EQ(done.out, "");
    }
    EXPECT_THAT(bench.zentrix("correct w.npy -o o.npy --show phaze").err, HasSubstr(". Did you mean phase?"));
    EXPECT_TRUE(bench.folder().files().empty());
}

TEST(Usage, ErrorsAreJsonOnRequestAndKeepTheirExitCode)
{
    const workbench bench;
    for (const auto& [words, code, kind, message] :
         {std::tuple{"--json corect", 2, "usage", "there is no command \"corect\". Did you mean correct?"},
          {"info none.npy --json", 1, "failure", "none.npy: there is no such file"},
          {"estimate w.npy --params p.json -o p.json --json", 1, "failure",
           "p.json: is an input and cannot be the result, too"},
          {"correct a.npy -o o.npy --tilt 3 --json", 2, "usage", "--tilt is X,Y in mrad, not \"3\""}}) {
        const auto done = bench.zentrix(words);
        EXPECT_EQ(done.code, code);
        const auto error = nlohmann::json::parse(done.out).at("error");
        EXPECT_EQ(error.at("kind"), kind);
        EXPECT_EQ(error.at("message"), message);
        EXPECT_EQ(error.at("exit_code"), code);
        EXPECT_THAT(done.err, StartsWith(std::string{"zentrix: "} + message + "\n"));
    }
}

TEST(Usage, VersionAndHelpWorkEverywhere)
{
    const workbench bench;
    for (const std::string words : {"--version", "-V", "correct --version"})
        EXPECT_THAT(bench.zentrix(words).text(), StartsWith("0 zentrix 0."));
    const auto facts = nlohmann::json::parse(bench.zentrix("--version --json").out);
    EXPECT_TRUE(facts.at("compiler").is_string());
    for (const char* name : {"FFTW", "zlib", "LibTIFF", "NLopt"})
        EXPECT_GT(facts.at("libraries").at(name).get<std::string>(), "1.");
    EXPECT_EQ(bench.zentrix("help unwrap").text(), bench.zentrix("unwrap --help").text());
    EXPECT_EQ(bench.zentrix("help").text(), bench.zentrix("--help").text());
}
