#include "host/correction/unwrap_report.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

using zentrix::host::unwrap_report;

constexpr float gap = std::numeric_limits<float>::quiet_NaN();
constexpr float turn = 6.2831853F;

struct reported
{
    unwrap_report report;
    std::vector<std::int32_t> labels;
};

reported report_on(const std::vector<float>& phase, const std::vector<float>& unwrapped, std::uint32_t width)
{
    std::vector<std::int32_t> labels(phase.size());
    const auto report = zentrix::host::report_on_unwrapping(phase, unwrapped, width, labels);
    return {report, labels};
}

TEST(UnwrapReport, AVortexIsAResidueAndACutWithinItsRegion)
{
    // Clockwise on the left; on the right, after a gap, a larger region that goes around another gap.
    const std::vector<float> phase{-2.3F, -0.8F, gap, 1, gap, 1,  //
                                   2.3F,  0.8F,  gap, 1, 1,   1};
    const auto [report, labels] = report_on(phase, phase, 6);
    EXPECT_EQ(labels, (std::vector<std::int32_t>{2, 2, 0, 1, 0, 1,  //
                                                 2, 2, 0, 1, 1, 1}));
    EXPECT_EQ(report.positive_residues, 1u);
    EXPECT_EQ(report.negative_residues, 0u);
    EXPECT_EQ(report.cut_pixels, 2u);
    EXPECT_EQ(report.unreached, 0u);
    const std::vector<float> mirrored{-0.8F, -2.3F, 0.8F, 2.3F};
    EXPECT_EQ(report_on(mirrored, mirrored, 2).report.negative_residues, 1u);
}

TEST(UnwrapReport, RegionsAreSeparatedByCutsAndGaps)
{
    // A gap separates the last column. The pixel in the middle was not unwrapped, the left column was.
    const std::vector<float> phase{1, 1, 1, 1, gap, 2,  //
                                   1, 1, 1, 1, gap, 2,  //
                                   1, 1, 1, 1, gap, 2};
    const float up = 1 + turn;
    const std::vector<float> unwrapped{1 - turn, up, up, up, gap, 2,  //
                                       1 - turn, up, 1,  up, gap, 2,  //
                                       1 - turn, up, up, up, gap, 2};
    const auto [report, labels] = report_on(phase, unwrapped, 6);
    EXPECT_EQ(labels, (std::vector<std::int32_t>{2, 1, 1, 1, 0, 3,  //
                                                 2, 1, 4, 1, 0, 3,  //
                                                 2, 1, 1, 1, 0, 3}));
    EXPECT_EQ(report.regions, 4u);
    EXPECT_EQ(report.left_out, 3u);
    EXPECT_EQ(report.unreached, 1u);
    EXPECT_EQ(report.cut_pixels,
              10u);  // the left column, its neighbours, the pixel in the middle, three more around it
    EXPECT_EQ(report.positive_residues + report.negative_residues, 0u);
}

TEST(UnwrapReport, AnImageWithoutCutsIsOneRegion)
{
    const auto [report, labels] = report_on({3, -3, 3, -3}, {3, turn - 3, 3, turn - 3}, 2);
    EXPECT_EQ(labels, (std::vector<std::int32_t>{1, 1, 1, 1}));
    EXPECT_EQ(report.regions, 1u);
    const auto [none, no_labels] = report_on({gap}, {gap}, 1);
    EXPECT_EQ(no_labels, std::vector<std::int32_t>{0});
    EXPECT_EQ(none.left_out, 1u);
}

}  // namespace
