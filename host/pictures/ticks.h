#pragma once

#include <string>
#include <vector>

namespace zentrix::host {

/// A round number of an axis.
struct tick
{
    double value;
    std::string label;
};

struct axis_ticks
{
    std::vector<tick> ticks;
    std::string factor;  ///< " × 10⁻⁶" if the labels are without a common power of ten; otherwise empty
};

/// Round numbers from `low` to `high`, at most `room` of them but two if possible; one if both are equal.
axis_ticks ticks_between(double low, double high, int room);

/// The width of the widest label. size: see text_width
double widest_label(const axis_ticks& axis, double size);

}  // namespace zentrix::host
