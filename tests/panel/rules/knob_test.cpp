#include "panel/rules/knob_geometry.h"
#include "panel/rules/ring.h"
#include "panel/rules/spin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>

namespace qorv::panel {
namespace {

TEST(Knob, IsCentredWithAMarginForItsDisc)
{
    const auto page_knob = lay_out_knob({0, 0, 54, 59}, 5);
    EXPECT_TRUE(page_knob.centre == (point{27, 29}) && page_knob.radius == 21);
    EXPECT_EQ(lay_out_knob({0, 0, 101, 40}, 7).radius, 12);
    EXPECT_EQ(edit_rectangle(page_knob, 5, 11), (rectangle{12, 24, 42, 34}));
}

TEST(Knob, DrawsPositionsCounterClockwiseFromTheRight)
{
    const knob_layout layout{{100, 100}, 51};
    const struct
    {
        dial scale;
        int position, degrees;
        point centre;
    } cases[] = {{{}, 0, 0, {150, 100}},
                 {{}, 90, 90, {100, 50}},
                 {{}, 270, 270, {99, 150}},  // the cosine is slightly negative and the sum is truncated
                 {{0, 359, 90}, 300, 30, {143, 75}},
                 {{0, 359, 0, true}, 90, 270, {99, 150}},
                 {{0, 359, 0, true}, 0, 360, {150, 100}},
                 {{-2, 5}, 1, 135, {64, 64}}};
    for (const auto& c : cases) {
        EXPECT_EQ(angle_of_position(c.scale, c.position), c.degrees) << c.position;
        EXPECT_EQ(knob_centre(c.scale, layout, c.position), c.centre) << c.position;
    }
}

TEST(Knob, MovesToTheAngleOfThePointer)
{
    const knob_layout layout{{500, 500}, 100};
    const struct
    {
        dial scale;
        point mouse;
        int position;
    } cases[] = {{{5, 364}, {500, 500}, 5},  // the centre
                 {{}, {600, 500}, 0},
                 {{}, {600, 501}, 359},
                 {{0, 359, 90}, {600, 500}, 270},
                 {{0, 359, 0, true}, {600, 500}, 180},  // mirrored left-right
                 {{10, 13}, {500, 600}, 13}};
    for (const auto& c : cases) EXPECT_EQ(position_of_point(c.scale, layout, c.mouse), c.position) << c.position;
    for (int degrees = 0; degrees < 360; ++degrees) {  // half a degree away from where rounding decides
        const double angle = (degrees + 0.5) * std::numbers::pi / 180;
        const point far{static_cast<int>(std::lround(500 + 1e5 * std::cos(angle))),
                        static_cast<int>(std::lround(500 - 1e5 * std::sin(angle)))};
        EXPECT_EQ(position_of_point({}, layout, far), degrees);
    }
}

TEST(Knob, WrapsAtTheEndsOfItsRange)
{
    const dial degrees, small{3, 7};
    EXPECT_TRUE(degrees.wrap(355 + 10) == 5 && degrees.wrap(0 - 1) == 359);
    EXPECT_TRUE(small.wrap(3 - 12) == 6 && small.clamp(9) == 7 && (dial{5, 4}).wrap(100) == 5);
    const struct
    {
        int angle, delta;
        shift_key shift;
        int result;
    } spins[] = {{10, 30, shift_key::up, 40},   {10, -30, shift_key::up, 359},    {350, 10, shift_key::up, 0},
                 {0, -1, shift_key::up, 359},   {10, -30, shift_key::down, 9},    {10, 0, shift_key::down, 11},
                 {359, 90, shift_key::down, 0}, {5, 2147483647, shift_key::up, 0}};
    for (const auto& s : spins) EXPECT_EQ(spin_angle(s.angle, s.delta, s.shift, degrees), s.result) << s.angle;
}

/// In each row of an octant, the midpoint circle has the outermost pixel whose inner edge is inside the circle.
TEST(Ring, IsTheMidpointCircle)
{
    for (int radius = 0; radius <= 60; ++radius) {
        std::set<std::pair<int, int>> pixels, expected;
        draw_ring({0, 0}, radius, 0, 0, [&](int x, int y, colour) { pixels.insert({x, y}); });
        for (int y = 0; y <= radius; ++y) {
            int x = radius;
            while (x > 0 && x * (x - 1) + y * y >= radius * radius) --x;  // (x - 1/2)^2 + y^2 >= r^2 in integers
            if (y > x) break;
            for (const auto& [px, py] : {std::pair{x, y}, {y, x}})
                for (const int sx : {-1, 1})
                    for (const int sy : {-1, 1}) expected.insert({sx * px, sy * py});
        }
        EXPECT_EQ(pixels, expected) << radius;
    }
    draw_ring({0, 0}, -3, 0, 0, [](int, int, colour) { FAIL(); });
    std::set<int> columns;  // the dotted circle has every other pixel of an octant
    draw_dotted_circle({0, 0}, 9, [&](int x, int y) {
        if (x > 0 && y >= 0 && y < x) columns.insert(y);
    });
    EXPECT_EQ(columns, (std::set{0, 2, 4, 6}));
}

TEST(Ring, FadesFromUpperLeftToLowerRight)
{
    const colour light = 0x00f0c864, dark = 0x00102030;
    const std::pair<point, colour> corners[] = {
        {{-10, -10}, light}, {{10, 10}, dark}, {{10, -10}, 0x0080744a}, {{-10, 10}, 0x0080744a}};
    for (const auto& [side, corner] : corners) {
        const colour mixed = ring_colour(side.x, side.y, light, dark);
        for (int shift = 0; shift < 24; shift += 8)
            EXPECT_NEAR((mixed >> shift) & 0xff, (corner >> shift) & 0xff, 2) << side.x << ',' << side.y;
    }
    EXPECT_EQ(ring_colour(5, -6, 0x00ffffff, 0x00ffffff), 0x00ffffffu);
    // The rounded multiples of pi show here: exact ones would give 0x7f and 0x80.
    EXPECT_EQ(ring_colour(1000, -1000, 0xff, 0), 0x7fu);
    EXPECT_EQ(ring_colour(-1000, 1000, 0xff, 0), 0x7eu);
}

}  // namespace
}  // namespace qorv::panel
