#include "host/correction/phase_gaps.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

constexpr float gap = std::numeric_limits<float>::quiet_NaN();

TEST(PhaseGaps, TakeTheValueOfTheNearestPixel)
{
    std::vector<float> phase{1, gap, gap, 2,    //
                             3, gap, gap, gap,  //
                             4, 5,   6,   gap};
    EXPECT_EQ(zentrix::host::fill_gaps(phase, 4), 6u);
    EXPECT_EQ(phase, (std::vector<float>{1, 1, 2, 2, 3, 3, 6, 2, 4, 5, 6, 6}));
    std::vector<float> nothing(4, gap);
    EXPECT_EQ(zentrix::host::fill_gaps(nothing, 2), 4u);
    EXPECT_NE(nothing[3], nothing[3]);
}

}  // namespace
