// zentrix estimate: its options, what it prints and writes, its exit code.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "host/parameters/json_file.h"
#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"

namespace {

using testing::HasSubstr;
using pixel = std::complex<float>;

constexpr int side = 96;

/// A phase object without symmetry.
pixel specimen_at(int x, int y)
{
    double phase = 0;
    for (int i = 0; i < 24; ++i) {
        const double dx = x - (i * 37 + i * i * 11) % side, dy = y - (i * 53 + i * i * 7) % side;
        phase += 0.9 * std::exp(-(dx * dx + dy * dy) / (2.4 + 0.1 * (i % 9)));
    }
    return pixel{std::polar(1.0, phase)};
}

/// In "seen.npy" the specimen twice, side by side, seen by two lenses.
class Estimate : public testing::Test
{
  protected:
    Estimate()
    {
        std::vector<pixel> halves[2];
        support::write_wave(bench / "one.npy", side, side, specimen_at);
        for (int i = 0; i < 2; ++i) {
            const std::string lens = i == 0 ? "--C1 -40 --A1 9@30" : "--C1 -400";
            bench.zentrix("aberrate one.npy -o seen.npy --kv 300 --pixel 0.05 " + lens);
            halves[i] = support::pixels_of<pixel>(bench / "seen.npy");
        }
        support::write_wave(bench / "seen.npy", 2 * side, side, [&](int x, int y) {
            return halves[x / side][static_cast<std::size_t>(y * side + x % side)];
        });
    }

    support::outcome estimate(const std::string& options)
    {
        return bench.zentrix("estimate seen.npy --kv 300 --pixel 0.05 --vibration 0 " + options);
    }

    const support::workbench bench;
};

TEST_F(Estimate, ParametersOfARegionAreForCorrect)
{
    const auto done = estimate("--region 0,0,96,96 --free C1,A1 -o found.json");
    ASSERT_EQ(done.code, 0) << done.err;
    for (const char* part : {"phase object, ", "  C1  -40.0", " degrees +- ", "\nparameters -> found.json\n"})
        EXPECT_THAT(done.out, HasSubstr(part));
    EXPECT_EQ(bench.zentrix("correct seen.npy -o out.npy --params found.json").code, 0);
    const auto corrected = support::pixels_of<pixel>(bench / "out.npy");
    for (const int at : {30 * 192 + 40, 50 * 192 + 50, 60 * 192 + 30}) EXPECT_NEAR(std::abs(corrected[at]), 1, 0.05);
}

TEST_F(Estimate, StartGivesTheOtherCoefficientsAndRangeWhereC1IsSearched)
{
    const auto known = nlohmann::json::parse(estimate("--region 0,0,96,96 --free C1 --start A1=9@30 --json").out);
    EXPECT_NEAR(known["parameters"]["C1"]["value"].get<double>(), -40, 0.3) << known;
    EXPECT_EQ(known["parameters"]["A1"]["modulus"], 9);
    const auto far = estimate("--region 96,0,96,96 --free C1 --range C1=-460:-340");
    EXPECT_THAT(far.out, HasSubstr("  C1  -400.")) << far.err;
    const auto missed = estimate("--region 96,0,96,96 --free C1 --range C1=-60:60 --start C1=7 --json");
    EXPECT_EQ(missed.code, 3) << "nothing is determined";
    const auto facts = nlohmann::json::parse(missed.out);
    EXPECT_EQ(facts["parameters"]["C1"]["value"], 7);
    EXPECT_THAT(facts["estimate"]["coefficients"]["C1"]["reason"], HasSubstr("the modulus varies at every focus"));
}

TEST_F(Estimate, ObjectChoosesTheCriterionAndRegionsAreChecked)
{
    EXPECT_THAT(estimate("--free C1 --object amplitude").out, HasSubstr("amplitude object, greatest sharpness"));
    EXPECT_EQ(estimate("--region 100,0,96,96 --free C1").text(),
              "1 zentrix: The region is not within the wave of 192 x 96 pixels.\n");
    for (const std::string region : {"0,0,96", "0,0,96,96,"})
        EXPECT_THAT(estimate("--region " + region).text(), HasSubstr("2 zentrix: --region is X,Y,WIDTH,HEIGHT"));
    EXPECT_THAT(estimate("--start C1=-40,C1=10").text(), HasSubstr("2 zentrix: --start: C1 is there twice"));
}

}  // namespace
