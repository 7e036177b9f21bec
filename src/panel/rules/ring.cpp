#include "panel/rules/ring.h"

#include <cmath>

namespace qorv::panel {

colour ring_colour(int dx, int dy, colour light, colour dark)
{
    // These rounded multiples of pi are part of the look. Exact ones would change a few pixels near the seam.
    double turn = -2.356 - std::atan2(dy, dx);
    if (turn < -3.1415) {
        turn += 6.293;
    } else if (turn > 3.1415) {
        turn = 6.293 - turn;
    }
    const double weight = 0.5 * (std::cos(turn) + 1);
    colour mixed = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const auto from_light = static_cast<double>((light >> shift) & 0xff);
        const auto from_dark = static_cast<double>((dark >> shift) & 0xff);
        mixed |= static_cast<colour>(weight * from_light + (1 - weight) * from_dark) << shift;
    }
    return mixed;
}

}  // namespace qorv::panel
