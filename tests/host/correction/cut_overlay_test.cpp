#include "host/correction/cut_overlay.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <numbers>

TEST(CutOverlay, CutsAreRedGapsBlueAndThePhaseGreyFromMinusPiToPi)
{
    constexpr auto pi = static_cast<float>(std::numbers::pi);
    const std::array<std::uint32_t, 2> sizes{5, 1};
    const auto phase = zentrix::host::image::create("phase", HOST_ELEMENT_FLOAT32, sizes);
    const float values[] = {-pi, 0, pi, 0, std::numeric_limits<float>::quiet_NaN()};
    for (int x = 0; x < 5; ++x) phase->at<float>(x) = values[x];
    const std::uint8_t cuts[] = {0, 0, 0, 1, 0};
    const auto overlay = zentrix::host::paint_cuts(*phase, cuts);
    EXPECT_EQ(overlay.channels, 3);
    const auto middle = overlay.bytes[3];
    EXPECT_NEAR(middle, 127, 1);
    EXPECT_EQ(overlay.bytes, (std::vector<std::uint8_t>{0, 0, 0, middle, middle, middle, 255, 255, 255,  //
                                                        230, 30, 30, 40, 90, 200}));
}
