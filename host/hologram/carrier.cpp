#include "host/hologram/carrier.h"

#include <cmath>
#include <numbers>
#include <vector>

namespace zentrix::host {

namespace {

using complex = std::complex<double>;

std::vector<complex> wave_of(double periods, std::ptrdiff_t length)
{
    std::vector<complex> values(static_cast<std::size_t>(length));
    for (std::ptrdiff_t i = 0; i < length; ++i)
        values[static_cast<std::size_t>(i)] =
            std::polar(1.0, -2 * std::numbers::pi * periods * static_cast<double>(i) / static_cast<double>(length));
    return values;
}

/// The transform at three frequencies u - step, u, u + step along x and likewise along y: [y][x].
struct neighbourhood
{
    complex values[3][3];
    double log_modulus(int y, int x) const { return std::log(std::norm(values[y][x]) + 1e-300) / 2; }
};

neighbourhood transform_around(const float* pixels, std::ptrdiff_t width, std::ptrdiff_t height, complex at,
                               double step)
{
    std::vector<complex> along_x[3], along_y[3];
    for (int i = 0; i < 3; ++i) {
        along_x[i] = wave_of(at.real() + (i - 1) * step, width);
        along_y[i] = wave_of(at.imag() + (i - 1) * step, height);
    }
    neighbourhood found{};
    for (std::ptrdiff_t y = 0; y < height; ++y) {
        const float* const row = pixels + y * width;
        for (int i = 0; i < 3; ++i) {
            complex sum;
            for (std::ptrdiff_t x = 0; x < width; ++x)
                sum += static_cast<double>(row[x]) * along_x[i][static_cast<std::size_t>(x)];
            for (int j = 0; j < 3; ++j) found.values[j][i] += sum * along_y[j][static_cast<std::size_t>(y)];
        }
    }
    return found;
}

/// Where the parabola through three values at -1, 0, 1 is greatest, at most 1 away.
double vertex(double before, double middle, double after)
{
    const double curvature = before - 2 * middle + after;
    if (!(curvature < 0)) return after > before ? 1 : -1;
    return std::min(std::max((before - after) / (2 * curvature), -1.0), 1.0);
}

}  // namespace

complex refine_carrier(const float* pixels, std::ptrdiff_t width, std::ptrdiff_t height, complex start)
{
    auto at = start;
    // The logarithm of a window's transform is nearly a parabola; smaller steps make the remaining error negligible.
    for (const double step : {0.5, 0.25, 0.05, 0.01}) {
        const auto around = transform_around(pixels, width, height, at, step);
        const double middle = around.log_modulus(1, 1);
        at += step * complex{vertex(around.log_modulus(1, 0), middle, around.log_modulus(1, 2)),
                             vertex(around.log_modulus(0, 1), middle, around.log_modulus(2, 1))};
    }
    return std::abs(at - start) <= 1.5 ? at : start;
}

}  // namespace zentrix::host
