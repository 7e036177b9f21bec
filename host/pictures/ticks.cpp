#include "host/pictures/ticks.h"

#include <algorithm>
#include <cmath>

#include "host/pictures/font.h"
#include "host/pictures/scale_bar.h"

namespace zentrix::host {

axis_ticks ticks_between(double low, double high, int room)
{
    const double largest = std::max(std::abs(low), std::abs(high));
    const int exponent = largest > 0 ? static_cast<int>(std::floor(std::log10(largest))) : 0;
    const bool is_common = exponent >= -3 && exponent < 5;
    const double factor = is_common ? 1 : std::pow(10, exponent);
    axis_ticks axis{{}, is_common ? "" : " \u00d7 10" + superscript(exponent)};
    if (!(high > low)) {
        axis.ticks = {{low, number_label(low / factor, 4)}};
        return axis;
    }
    const double span = (high - low) / factor;
    double step = round_number_below(span / 2);
    for (double finer = step; span / finer + 1 <= room; finer = round_number_below(step * 0.6)) step = finer;
    for (double i = std::ceil(low / factor / step - 1e-6); i * step <= high / factor + 1e-6 * step; ++i)
        axis.ticks.push_back({i * step * factor, number_label(i * step, digits_for(step))});
    return axis;
}

double widest_label(const axis_ticks& axis, double size)
{
    double width = 0;
    for (const tick& one : axis.ticks) width = std::max(width, text_width(one.label, size));
    return width;
}

}  // namespace zentrix::host
