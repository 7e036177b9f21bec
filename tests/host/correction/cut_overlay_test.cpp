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
    ASSERT_EQ(overlay.channels, 3);
    ASSERT_EQ(overlay.width, 5 * 204);
    ASSERT_EQ(overlay.height, 204);
    std::vector<std::uint8_t> shown;  // the last pixels of the enlarged ones
    for (std::size_t x = 203; x < 5 * 204; x += 204)
        for (std::size_t part = 0; part < 3; ++part) shown.push_back(overlay.bytes[3 * (203 * 5 * 204 + x) + part]);
    const auto middle = shown[3];
    EXPECT_NEAR(middle, 197, 1);
    EXPECT_EQ(shown, (std::vector<std::uint8_t>{140, 140, 140, middle, middle, middle, 255, 255, 255,  //
                                                200, 0, 0, 40, 90, 200}));
}
