// Makes an exit wave with known aberrations for the demonstration: a thin crystal seen along a channel direction, with
// a dislocation, a wedge-shaped edge to vacuum and a few adatoms, imaged by a misaligned lens.
//
// The aberrations are computed here in double precision by the textbook formula, not by the library, so that a wave
// corrected by the library can be compared with the original.

#include <algorithm>
#include <cmath>
#include <complex>
#include <iostream>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "host/fft/fft.h"
#include "host/files/npy.h"
#include "lens/electron.h"

namespace {

using complex = std::complex<double>;
using wave_pixel = std::complex<float>;
constexpr double pi = std::numbers::pi;

constexpr int size = 512;
constexpr double pixel = 0.02;  // nm
constexpr double kilovolts = 300;
constexpr double nm = 1, um = 1e3, mm = 1e6;

struct point
{
    double x, y;  // nm, y down
};

constexpr std::size_t index(std::size_t x, std::size_t y) { return y * size + x; }

class specimen
{
  public:
    specimen() : phase_(std::size_t{size} * size) {}

    /// Adds an atom column: a Gaussian phase of that height [rad], 0.035 nm rms for thermal motion.
    void add(point at, double height)
    {
        constexpr double rms = 0.035;
        const int reach = static_cast<int>(5 * rms / pixel);
        const int column = static_cast<int>(std::lround(at.x / pixel)),
                  row = static_cast<int>(std::lround(at.y / pixel));
        for (int y = row - reach; y <= row + reach; ++y)
            for (int x = column - reach; x <= column + reach; ++x) {
                if (x < 0 || y < 0 || x >= size || y >= size) continue;
                const double dx = x * pixel - at.x, dy = y * pixel - at.y;
                phase_[index(x, y)] += height * std::exp(-(dx * dx + dy * dy) / (2 * rms * rms));
            }
    }

    /// The exit wave: a pure phase change of the illuminating plane wave.
    std::vector<wave_pixel> wave() const
    {
        std::vector<wave_pixel> result;
        for (const double phase : phase_) result.emplace_back(std::polar(1.0, phase));
        return result;
    }

  private:
    std::vector<double> phase_;
};

/// The position of a column displaced by an edge dislocation: isotropic elasticity (Hirth, Lothe, Theory of
/// Dislocations), Burgers vector `b` along x, Poisson's ratio 0.3.
point displaced(point at, point core, double b)
{
    constexpr double poisson = 0.3;
    const double x = at.x - core.x, y = at.y - core.y, r2 = x * x + y * y + 1e-6;
    const double ux = b / (2 * pi) * (std::atan2(y, x) + x * y / (2 * (1 - poisson) * r2));
    const double uy =
        -b / (2 * pi) *
        ((1 - 2 * poisson) / (4 * (1 - poisson)) * std::log(r2) + (x * x - y * y) / (4 * (1 - poisson) * r2));
    return {at.x + ux, at.y + uy};
}

/// Dumbbells, two columns 0.136 nm apart on a centred rectangle of 0.384 x 0.543 nm, ending at a slanted edge.
specimen thin_crystal()
{
    constexpr double width = 0.384, height = 0.543, dumbbell = 0.136;
    const point core{4.6, 5.4};
    specimen crystal;
    for (int row = -4; row < 60; ++row)
        for (int column = -4; column < 40; ++column) {
            const point centre = displaced({(column + 0.5 * (row % 2)) * width, row * height / 2}, core, width);
            const double edge = 7.6 + 0.25 * centre.y - centre.x;  // nm from the edge
            if (edge < 0) continue;
            const double columns_height = 0.45 * (1 - std::exp(-(edge + 0.6) / 2.5));  // the wedge
            crystal.add({centre.x, centre.y - dumbbell / 2}, columns_height);
            crystal.add({centre.x, centre.y + dumbbell / 2}, columns_height);
        }
    std::mt19937 random{20};
    std::uniform_real_distribution<double> anywhere{0, size * pixel};
    for (int i = 0; i < 14; ++i) {
        const double x = anywhere(random), y = anywhere(random);
        if (x > 8.0 + 0.25 * y) crystal.add({x, y}, 0.2);  // adatoms on the support
    }
    return crystal;
}

/// The aberration function on the displayed image; w is the scattering angle with the imaginary part up [rad]. demo.sh
/// removes the same coefficients.
double chi(complex w)
{
    const auto turned = [](double modulus, double degrees) { return std::polar(modulus, degrees * pi / 180); };
    const complex conj = std::conj(w);
    const double s = std::norm(w);
    const complex sum = -62 * nm * s / 2.0 + turned(14 * nm, 35) * conj * conj / 2.0 +
                        turned(380 * nm, 110) * s * conj + turned(290 * nm, -20) * conj * conj * conj / 3.0 +
                        0.15 * mm * s * s / 4.0 + turned(2.5 * um, 75) * s * conj * conj;
    return 2 * pi / zentrix::lens::electron_wavelength(kilovolts) * sum.real();
}

void aberrate(std::vector<wave_pixel>& wave)
{
    const double wavelength = zentrix::lens::electron_wavelength(kilovolts);
    const double angle_per_pixel = wavelength / (size * pixel);
    constexpr int centre = size / 2;
    zentrix::host::forward_fft(wave.data(), size, size);
    for (int row = 0; row < size; ++row)
        for (int column = 0; column < size; ++column) {
            const complex w{(column - centre) * angle_per_pixel, (centre - row) * angle_per_pixel};
            wave_pixel& pixel_there = wave[index(column, row)];
            pixel_there = wave_pixel{complex{pixel_there} * std::polar(1.0, -chi(w))};
        }
    zentrix::host::backward_fft(wave.data(), size, size);
}

void save(const std::string& file, const std::vector<wave_pixel>& wave)
{
    using namespace zentrix::host;
    const std::uint32_t sizes[] = {size, size};
    const auto image = image::create("sample", HOST_ELEMENT_COMPLEX64, sizes);
    std::ranges::copy(wave, static_cast<wave_pixel*>(image->data()));
    write_npy(file, *image);
}

}  // namespace

int main(int argc, char** argv)
try {
    if (argc != 3) {
        std::cerr << "Usage: make_sample ABERRATED.npy UNDISTURBED.npy\n";
        return 2;
    }
    auto wave = thin_crystal().wave();
    save(argv[2], wave);
    aberrate(wave);
    save(argv[1], wave);
    return 0;
} catch (const std::exception& problem) {
    std::cerr << "make_sample: " << problem.what() << '\n';
    return 1;
}
