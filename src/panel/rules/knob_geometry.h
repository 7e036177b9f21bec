#pragma once

#include <cstdint>

/// Geometry of the round slider: its layout, and conversions between position, angle and point. Points are client
/// pixels, x to the right, y downwards. Angles are in degrees, counter-clockwise from the right.
namespace qorv::panel {

struct point
{
    int x, y;
    friend bool operator==(const point&, const point&) = default;
};

struct rectangle
{
    int left, top, right, bottom;
    int width() const { return right - left; }
    int height() const { return bottom - top; }
    friend bool operator==(const rectangle&, const rectangle&) = default;
};

struct knob_layout
{
    point centre;
    int radius;  ///< of the ring; negative if the window is too small for the knob
};

/// Centres the ring, with a margin of the knob's radius and one pixel.
knob_layout lay_out_knob(const rectangle& client, int knob_radius);

/// The rectangle inside the ring for a text of the given height.
rectangle edit_rectangle(const knob_layout& layout, int knob_radius, int font_height);

/// The place of the inline edit at 96 dots per inch. It is fixed; it fits the knob size that all pages use.
inline constexpr rectangle edit_place{17, 20, 17 + 22, 20 + 15};

/// A length on a screen of another resolution, where dialogs and their fonts are larger.
constexpr int at_resolution(int dots_per_inch, int pixels) { return (pixels * dots_per_inch + 48) / 96; }

constexpr rectangle at_resolution(int dots_per_inch, const rectangle& place)
{
    return {at_resolution(dots_per_inch, place.left), at_resolution(dots_per_inch, place.top),
            at_resolution(dots_per_inch, place.right), at_resolution(dots_per_inch, place.bottom)};
}

/// The range of a slider and its orientation on the circle.
struct dial
{
    int minimum = 0;
    int maximum = 359;
    int zero = 0;           ///< [degrees] added to the drawn angle
    bool inverted = false;  ///< mirrors the drawing vertically and the mouse horizontally

    int count() const { return maximum + 1 - minimum; }
    int clamp(int position) const;
    /// Adds or subtracts full turns until the position is in the range.
    int wrap(int position) const;
};

/// The angle at which a position is drawn, [degrees] in [0, 360] (360 only for an inverted 0).
int angle_of_position(const dial& dial, int position);

/// The centre of the small disc that shows a position, one pixel inside the ring, truncated toward zero.
point knob_centre(const dial& dial, const knob_layout& layout, int position);

/// The position at the angle of a point. The centre counts as angle 0.
int position_of_point(const dial& dial, const knob_layout& layout, point mouse);

}  // namespace qorv::panel
