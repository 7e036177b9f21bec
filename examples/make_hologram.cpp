// Makes an off-axis hologram of a magnetised iron oxide sphere for the demonstration, a reference hologram without the
// sphere, and the phase that a reconstruction would give: wrapped, with noise.
//
// Phase of the mean inner potential and of the magnetisation: De Graef, Nuhfer, McCartney, J. Microscopy 194 (1999)
// 84-94, for a sphere.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <numbers>
#include <random>
#include <string>

#include "host/files/npy.h"
#include "host/objects/image.h"

namespace {

constexpr double pi = std::numbers::pi;
constexpr int size = 512;
constexpr double pixel = 0.5;      // nm
constexpr double radius = 60;      // nm
constexpr double electrons = 400;  // a pixel in vacuum
constexpr double contrast = 0.4;

/// [rad], at a position relative to the sphere's centre [nm]
double sphere_phase(double x, double y)
{
    constexpr double interaction = 6.526e-3;      // rad / (V nm), for 300 kV
    constexpr double charge_by_hbar = 1.5193e-3;  // rad / (T nm^2)
    constexpr double potential = 17;              // V
    constexpr double induction = 0.6;             // T
    constexpr double direction = 0.5;             // of the magnetisation [rad]
    const double r2 = std::max(x * x + y * y, 1e-9);
    const double inside = std::max(0.0, 1 - r2 / (radius * radius));
    const double across = y * std::cos(direction) - x * std::sin(direction);
    const double magnetic = charge_by_hbar * induction * 2 / 3 * std::pow(radius, 3) * across / r2;
    return interaction * potential * 2 * radius * std::sqrt(inside) + magnetic * (1 - std::pow(inside, 1.5));
}

/// Calls `value(x, y)` for each pixel and writes what it returns.
template <class T, class Value>
void save(const std::string& file, std::uint32_t type, const Value& value)
{
    const std::uint32_t sizes[] = {size, size};
    const auto image = zentrix::host::image::create("sample", type, sizes);
    auto* to = static_cast<T*>(image->data());
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) *to++ = static_cast<T>(value(x, y));
    zentrix::host::write_npy(file, *image);
}

}  // namespace

int main(int argc, char** argv)
try {
    if (argc != 4) {
        std::cerr << "Usage: make_hologram HOLOGRAM.npy REFERENCE.npy PHASE.npy\n";
        return 2;
    }
    std::mt19937 random{8};
    const auto object = [](int x, int y) { return sphere_phase((x - 230) * pixel, (y - 270) * pixel); };
    // Fringes 3.6 pixels apart, which lenses bend a little; the reference shows the same.
    const auto counts = [&](int x, int y, double phase) {
        const double u = (x - size / 2.0) / size, v = (y - size / 2.0) / size;
        const double fringes = 2 * pi * size / 3.6 * (0.8 * u + 0.6 * v) + 1.5 * u * u - 2.0 * u * v;
        std::poisson_distribution<int> arrived{electrons * (1 + contrast * std::cos(fringes + phase))};
        return arrived(random);
    };
    save<std::uint16_t>(argv[1], HOST_ELEMENT_UINT16, [&](int x, int y) { return counts(x, y, object(x, y)); });
    save<std::uint16_t>(argv[2], HOST_ELEMENT_UINT16, [&](int x, int y) { return counts(x, y, 0); });
    std::normal_distribution<double> noise{0, 0.3};
    save<float>(argv[3], HOST_ELEMENT_FLOAT32,
                [&](int x, int y) { return std::remainder(object(x, y) + noise(random), 2 * pi); });
    return 0;
} catch (const std::exception& problem) {
    std::cerr << "make_hologram: " << problem.what() << '\n';
    return 1;
}
