#pragma once

#include <cstdint>

/// Geometry of the round slider: what stands where, and how a position, an angle and a point on the screen belong
/// together. Client pixels, x to the right, y downwards; angles in degrees, counter-clockwise from the right.
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
    int radius;  ///< of the ring; negative in a window too small for the knob
};

/// The ring leaves room for half a knob and one pixel around it.
knob_layout lay_out_knob(const rectangle& client, int knob_radius);

/// The room inside the ring for text of the given height.
rectangle edit_rectangle(const knob_layout& layout, int knob_radius, int font_height);

/// Where the inline edit ends up, whatever the geometry: it suits the size that all pages use.
inline constexpr rectangle edit_place{17, 20, 17 + 22, 20 + 15};

/// The values a slider can take and the way in which they run round.
struct dial
{
    int minimum = 0;
    int maximum = 359;
    int zero = 0;           ///< [degrees] added to the drawn angle
    bool inverted = false;  ///< the drawing mirrors up and down, the mouse left and right

    int count() const { return maximum + 1 - minimum; }
    int clamp(int position) const;
    /// Brings a position into the range by going round.
    int wrap(int position) const;
};

/// The angle at which a position is drawn, [degrees] in [0, 360] (360 only for an inverted 0).
int angle_of_position(const dial& dial, int position);

/// The centre of the small disc that shows a position, one pixel inside the ring, truncated toward zero.
point knob_centre(const dial& dial, const knob_layout& layout, int position);

/// The position that the mouse means; the very centre counts as the angle 0.
int position_of_point(const dial& dial, const knob_layout& layout, point mouse);

}  // namespace qorv::panel
