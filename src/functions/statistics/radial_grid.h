#pragma once

#include <cmath>
#include <cstddef>

namespace qorv::functions {

/// Radii around a pixel, with a scale for each axis:
/// radius(x, y) = sqrt(((x - center_x) * scale_x)^2 + ((y - center_y) * scale_y)^2).
struct radial_grid
{
    std::ptrdiff_t center_x, center_y;  ///< [pixel], inside the image or not
    double scale_x, scale_y;            ///< [radius unit per pixel]

    double square_x(std::ptrdiff_t x) const { return square(static_cast<double>(x - center_x) * scale_x); }
    double square_y(std::ptrdiff_t y) const { return square(static_cast<double>(y - center_y) * scale_y); }
    double radius(std::ptrdiff_t x, std::ptrdiff_t y) const { return std::sqrt(square_x(x) + square_y(y)); }

  private:
    static double square(double v) { return v * v; }
};

}  // namespace qorv::functions
