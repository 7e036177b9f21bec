#include "panel/rules/spin.h"

namespace qorv::panel {

std::int32_t spin_angle(std::int32_t angle, int delta, shift_key shift, const dial& dial)
{
    // Increments come from tags, so the sum can exceed 32 bits.
    const std::int64_t step = shift == shift_key::up ? delta : delta < 0 ? -1 : 1;
    const std::int64_t moved = angle + step;
    if (moved < dial.minimum) return dial.maximum;
    if (moved > dial.maximum) return dial.minimum;
    return static_cast<std::int32_t>(moved);
}

}  // namespace qorv::panel
