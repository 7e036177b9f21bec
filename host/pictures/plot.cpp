#include "host/pictures/plot.h"

#include <algorithm>
#include <cmath>

#include "host/pictures/font.h"
#include "host/pictures/ticks.h"

namespace zentrix::host {

plot::plot(drawing& on, const box& area, interval x, interval y, double letters)
    : on_{on}, area_{area}, x_{x}, y_{y}, letters_{letters}, line_{std::max(1.0, std::round(letters / 18))}
{}

point plot::at(double x, double y) const
{
    return {area_.left + (area_.right - area_.left) * (x - x_.low) / (x_.high - x_.low),
            area_.bottom + (area_.top - area_.bottom) * (y - y_.low) / (y_.high - y_.low)};
}

void plot::axes(const std::string& x_name, const std::string& y_name)
{
    const double half = line_ / 2, mark = std::round(0.3 * letters_), capital = capital_height(letters_);
    const auto across = ticks_between(x_.low, x_.high, static_cast<int>((area_.right - area_.left) / (3 * letters_)));
    for (const auto& [value, label] : across.ticks) {
        const double x = at(value, y_.low).x;
        on_.fill({x - half, area_.bottom, x + half, area_.bottom + mark + line_}, black_ink);
        on_.text({x, area_.bottom + 1.6 * mark + line_ + capital}, letters_, alignment::centre, label, black_ink);
    }
    const auto up = ticks_between(y_.low, y_.high, static_cast<int>((area_.bottom - area_.top) / (2.5 * letters_)));
    const double label_end = area_.left - line_ - 1.6 * mark;
    for (const auto& [value, label] : up.ticks) {
        const double y = at(x_.low, value).y;
        on_.fill({area_.left - mark - line_, y - half, area_.left, y + half}, black_ink);
        on_.text({label_end, y + capital / 2}, letters_, alignment::right, label, black_ink);
    }
    const point middle{(area_.left + area_.right) / 2, (area_.top + area_.bottom) / 2};
    on_.text({middle.x, area_.bottom + 1.6 * mark + 1.5 * letters_ + capital}, letters_, alignment::centre,
             x_name + across.factor, black_ink);
    on_.rising_text({label_end - widest_label(up, letters_) - 0.6 * letters_, middle.y}, letters_, y_name + up.factor,
                    black_ink);
    on_.frame({area_.left - half, area_.top - half, area_.right + half, area_.bottom + half}, line_, black_ink);
}

}  // namespace zentrix::host
