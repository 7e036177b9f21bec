#pragma once

#include <cstdint>
#include <initializer_list>
#include "panel/rules/knob_geometry.h"

/// The shaded rings and the dotted circle of the round slider, pixel by pixel.
namespace qorv::panel {

/// 0x00bbggrr, as in COLORREF.
using colour = std::uint32_t;

/// The colour at an offset from the ring's centre (y downwards): `light` at the upper left fades to `dark` at the lower
/// right. Each channel is truncated.
colour ring_colour(int dx, int dy, colour light, colour dark);

/// Visits one octant of a circle, (radius, 0) first: the midpoint circle algorithm (Pitteway 1967, Bresenham 1977).
/// visit(x, y, step) with 0 <= y <= x, step counting from 0.
template <class F>
void walk_octant(int radius, F visit)
{
    int x = radius, y = 0, error = -radius;
    for (int step = 0; y <= x; ++step) {
        visit(x, y, step);
        error += 2 * y + 1;
        ++y;
        if (error >= 0) {
            --x;
            error -= 2 * x;
        }
    }
}

/// Calls put(dx, dy) for the eight mirror images of a pixel. At the ends of the octant some of them coincide.
template <class F>
void for_eight(int x, int y, F put)
{
    for (const point p : {point{x, y}, {y, x}, {-y, x}, {-x, y}, {-x, -y}, {-y, -x}, {y, -x}, {x, -y}}) put(p.x, p.y);
}

/// Calls put(x, y, colour) for each pixel of a shaded ring. A negative radius draws nothing.
template <class F>
void draw_ring(point centre, int radius, colour light, colour dark, F put)
{
    walk_octant(radius, [&](int x, int y, int) {
        for_eight(x, y, [&](int dx, int dy) { put(centre.x + dx, centre.y + dy, ring_colour(dx, dy, light, dark)); });
    });
}

/// Calls put(x, y) for each pixel of a dotted circle, which has the pixels of every other step of the walk.
template <class F>
void draw_dotted_circle(point centre, int radius, F put)
{
    walk_octant(radius, [&](int x, int y, int step) {
        if (step % 2 == 0) for_eight(x, y, [&](int dx, int dy) { put(centre.x + dx, centre.y + dy); });
    });
}

}  // namespace qorv::panel
