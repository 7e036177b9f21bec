#include "panel/rules/knob_geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qorv::panel {

knob_layout lay_out_knob(const rectangle& client, int knob_radius)
{
    const int diameter = std::min(client.width(), client.height());
    return {{(client.left + client.right) / 2, (client.top + client.bottom) / 2}, diameter / 2 - (knob_radius + 1)};
}

rectangle edit_rectangle(const knob_layout& layout, int knob_radius, int font_height)
{
    const auto [centre, radius] = layout;
    return {centre.x - radius + knob_radius + 1, centre.y - font_height / 2, centre.x + radius - knob_radius - 1,
            centre.y + font_height / 2};
}

int dial::clamp(int position) const { return std::clamp(position, minimum, std::max(minimum, maximum)); }

int dial::wrap(int position) const
{
    if (count() <= 0) return minimum;
    while (position < minimum) position += count();
    while (position > maximum) position -= count();
    return position;
}

int angle_of_position(const dial& dial, int position)
{
    const int degrees = ((position - dial.minimum) * 360 / dial.count() + dial.zero + 360) % 360;
    return dial.inverted ? 360 - degrees : degrees;
}

point knob_centre(const dial& dial, const knob_layout& layout, int position)
{
    const double angle = angle_of_position(dial, position) * std::numbers::pi / 180;
    const double radius = layout.radius - 1;
    return {static_cast<int>(layout.centre.x + radius * std::cos(angle)),
            static_cast<int>(layout.centre.y - radius * std::sin(angle))};
}

int position_of_point(const dial& dial, const knob_layout& layout, point mouse)
{
    const int dx = dial.inverted ? layout.centre.x - mouse.x : mouse.x - layout.centre.x;
    const int up = layout.centre.y - mouse.y;
    double degrees = std::atan2(up, dx) * 180 / std::numbers::pi - dial.zero;
    while (degrees < 0) degrees += 360;
    while (degrees >= 360) degrees -= 360;
    return dial.minimum + static_cast<int>(degrees * dial.count() / 360);
}

}  // namespace qorv::panel
