#include "panel/rules/knob_geometry.h"
#include "panel/rules/ring.h"
#include "panel/rules/spin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>

namespace qorv::panel {

void PrintTo(const point& p, std::ostream* out) { *out << p.x << ',' << p.y; }
void PrintTo(const rectangle& r, std::ostream* out)
{
    *out << r.left << ',' << r.top << ',' << r.right << ',' << r.bottom;
}

namespace {

TEST(knob, stands_in_the_middle_with_room_for_half_a_disc)
{
    const auto page_knob = lay_out_knob({0, 0, 54, 59}, 5);
    EXPECT_EQ(page_knob.centre, (point{27, 29}));
    EXPECT_EQ(page_knob.radius, 21);
    EXPECT_EQ(lay_out_knob({0, 0, 101, 40}, 7).radius, 12);
    EXPECT_EQ(edit_rectangle(page_knob, 5, 11), (rectangle{12, 24, 42, 34}));
}

TEST(knob, shows_positions_counter_clockwise_from_the_right)
{
    const knob_layout layout{{100, 100}, 51};
    struct
    {
        dial scale;
        int position, degrees;
        point centre;
    } const cases[] = {
        {{}, 0, 0, {150, 100}},
        {{}, 90, 90, {100, 50}},
        {{}, 180, 180, {50, 100}},
        {{}, 270, 270, {99, 150}},  // cos 270 degrees is not quite 0, and the sum is cut
        {{0, 359, 90}, 300, 30, {143, 75}},
        {{0, 359, 0, true}, 90, 270, {99, 150}},
        {{0, 359, 0, true}, 0, 360, {150, 100}},
        {{10, 19}, 15, 180, {50, 100}},
        {{-2, 5}, 1, 135, {64, 64}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(angle_of_position(c.scale, c.position), c.degrees) << c.position;
        EXPECT_EQ(knob_centre(c.scale, layout, c.position), c.centre) << c.position;
    }
}

TEST(knob, takes_the_position_that_the_mouse_points_at)
{
    const knob_layout layout{{500, 500}, 100};
    struct
    {
        dial scale;
        point mouse;
        int position;
    } const cases[] = {
        {{}, {500, 500}, 0},  // the very centre
        {{5, 364}, {500, 500}, 5},
        {{}, {600, 500}, 0},
        {{}, {600, 501}, 359},
        {{}, {500, 400}, 90},
        {{}, {400, 500}, 180},
        {{}, {500, 600}, 270},
        {{}, {600, 400}, 45},
        {{0, 359, 90}, {500, 400}, 0},
        {{0, 359, 90}, {600, 500}, 270},
        {{0, 359, 0, true}, {600, 500}, 180},  // left and right change places, up stays up
        {{0, 359, 0, true}, {500, 400}, 90},
        {{10, 13}, {500, 600}, 13},
    };
    for (const auto& c : cases) EXPECT_EQ(position_of_point(c.scale, layout, c.mouse), c.position) << c.position;
    for (int degrees = 0; degrees < 360; ++degrees) {  // half a degree off the border on which rounding decides
        const double angle = (degrees + 0.5) * std::numbers::pi / 180;
        const point far{static_cast<int>(std::lround(500 + 1e5 * std::cos(angle))),
                        static_cast<int>(std::lround(500 - 1e5 * std::sin(angle)))};
        EXPECT_EQ(position_of_point({}, layout, far), degrees);
    }
}

TEST(knob, goes_round_by_keys_and_by_spin)
{
    const dial degrees, small{3, 7};
    EXPECT_EQ(degrees.wrap(355 + 10), 5);
    EXPECT_EQ(degrees.wrap(0 - 1), 359);
    EXPECT_EQ(small.wrap(3 - 12), 6);
    EXPECT_EQ((dial{5, 4}).wrap(100), 5);
    EXPECT_EQ(small.clamp(9), 7);

    struct
    {
        int angle, delta;
        shift_key shift;
        int result;
    } const spins[] = {
        {10, 30, shift_key::up, 40},    {10, -30, shift_key::up, 359},     {350, 10, shift_key::up, 0},
        {359, 1, shift_key::up, 0},     {0, -1, shift_key::up, 359},       {10, 30, shift_key::down, 11},
        {10, -30, shift_key::down, 9},  {10, 0, shift_key::down, 11},      {359, 90, shift_key::down, 0},
        {0, -90, shift_key::down, 359}, {5, 2147483647, shift_key::up, 0},
    };
    for (const auto& s : spins) EXPECT_EQ(spin_angle(s.angle, s.delta, s.shift, degrees), s.result) << s.angle;
}

/// In each row of an octant the midpoint walk takes the outermost pixel whose inner edge, half a pixel further in, is still
/// within the circle.
TEST(ring, takes_the_pixels_that_the_circle_passes)
{
    for (int radius = 0; radius <= 60; ++radius) {
        std::set<std::pair<int, int>> pixels, wanted;
        draw_ring({0, 0}, radius, 0, 0, [&](int x, int y, colour) { pixels.insert({x, y}); });
        for (int y = 0; y <= radius; ++y) {
            int x = radius;
            while (x > 0 && x * (x - 1) + y * y >= radius * radius) --x;  // (x - 1/2)^2 + y^2 >= r^2 in integers
            if (y > x) break;
            for (const auto& [px, py] : {std::pair{x, y}, {y, x}})
                for (const int sx : {-1, 1})
                    for (const int sy : {-1, 1}) wanted.insert({sx * px, sy * py});
        }
        EXPECT_EQ(pixels, wanted) << radius;
    }
    int calls = 0;
    draw_ring({0, 0}, -3, 0, 0, [&](int, int, colour) { ++calls; });
    EXPECT_EQ(calls, 0);
}

TEST(ring, fades_from_the_upper_left_to_the_lower_right)
{
    const colour light = 0x00f0c864, dark = 0x00102030;
    for (const auto& [side, corner] : {std::pair{point{-10, -10}, light},
                                       {point{10, 10}, dark},
                                       {point{10, -10}, 0x0080744au},
                                       {point{-10, 10}, 0x0080744au}}) {
        const colour mixed = ring_colour(side.x, side.y, light, dark);
        for (int shift = 0; shift < 24; shift += 8) {
            EXPECT_NEAR((mixed >> shift) & 0xff, (corner >> shift) & 0xff, 2) << side.x << ',' << side.y;
        }
    }
    EXPECT_EQ(ring_colour(5, -6, 0x00ffffff, 0x00ffffff), 0x00ffffffu);
    // Rounded turns show where the colour turns fastest: exact ones would give 0x7f and 0x80 there.
    EXPECT_EQ(ring_colour(1000, -1000, 0xff, 0), 0x7fu);
    EXPECT_EQ(ring_colour(-1000, 1000, 0xff, 0), 0x7eu);
}

TEST(ring, is_dotted_at_every_other_step)
{
    std::set<std::pair<int, int>> all, dots;
    draw_ring({3, 4}, 9, 0, 0, [&](int x, int y, colour) { all.insert({x, y}); });
    draw_dotted_circle({3, 4}, 9, [&](int x, int y) { dots.insert({x, y}); });
    EXPECT_TRUE(dots.contains({12, 4}) && dots.contains({3, 13}) && !dots.contains({12, 5}) && dots.contains({12, 6}));
    for (const auto& dot : dots) EXPECT_TRUE(all.contains(dot));
}

}  // namespace
}  // namespace qorv::panel
