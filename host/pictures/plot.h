#pragma once

#include <string>

#include "host/pictures/drawing.h"

namespace zentrix::host {

struct interval
{
    double low, high;
};

/// A frame with two axes on a drawing.
class plot
{
  public:
    /// area     inside of the frame, in whole pixels
    /// letters  size, see text_width
    plot(drawing& on, const box& area, interval x, interval y, double letters);

    const box& area() const { return area_; }
    /// The place of a pair of values on the drawing.
    point at(double x, double y) const;

    /// Ticks and numbers at the bottom and at the left, with the names of the axes; and the frame, which should be
    /// drawn last.
    void axes(const std::string& x_name, const std::string& y_name);

    double line_width() const { return line_; }

  private:
    drawing& on_;
    box area_;
    interval x_, y_;
    double letters_, line_;
};

}  // namespace zentrix::host
