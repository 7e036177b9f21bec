#include "bench/estimation_waves.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>

#include "host/fft/fft.h"
#include "lens/transfer_value.h"

namespace zentrix::bench {

namespace {

constexpr double pi = std::numbers::pi;

/// A real image of `size` square pixels.
struct plane
{
    int size;
    std::vector<double> values;

    explicit plane(int pixels) : size{pixels}, values(static_cast<std::size_t>(pixels) * pixels) {}
    double& at(int x, int y) { return values[static_cast<std::size_t>(y) * size + x]; }
};

/// Adds an atom column: a Gaussian, 0.035 nm rms.
void add_column(plane& phase, double pixel, double x, double y, double height)
{
    constexpr double rms = 0.035;
    const int reach = static_cast<int>(5 * rms / pixel) + 1;
    const int column = static_cast<int>(std::lround(x / pixel)), row = static_cast<int>(std::lround(y / pixel));
    for (int j = std::max(row - reach, 0); j <= std::min(row + reach, phase.size - 1); ++j)
        for (int i = std::max(column - reach, 0); i <= std::min(column + reach, phase.size - 1); ++i)
            phase.at(i, j) +=
                height * std::exp(-(std::pow(i * pixel - x, 2) + std::pow(j * pixel - y, 2)) / (2 * rms * rms));
}

/// Dumbbells on a centred rectangle, turned, with an edge dislocation (the displacement along the Burgers vector), an
/// edge to the vacuum and adatoms; all at random places.
plane crystal(int size, double pixel, std::mt19937& random)
{
    plane phase{size};
    const double extent = size * pixel;
    std::uniform_real_distribution<double> part{0, 1};
    const double turn = part(random) * pi, c = std::cos(turn), s = std::sin(turn);
    const double core_x = (part(random) - 0.5) * 0.5 * extent, core_y = (part(random) - 0.5) * 0.5 * extent;
    const double edge = 0.45 + 0.4 * part(random), edge_turn = 2 * pi * part(random);
    constexpr double width = 0.384, height = 0.543, dumbbell = 0.136;
    const int reach = static_cast<int>(extent / width) + 2;
    for (int row = -2 * reach; row <= 2 * reach; ++row)
        for (int column = -reach; column <= reach; ++column) {
            double x = (column + 0.5 * (row % 2)) * width;
            const double y = row * height / 2;
            x += width / (2 * pi) * std::atan2(y - core_y, x - core_x);
            for (const double half : {-dumbbell / 2, dumbbell / 2}) {
                const double px = extent / 2 + c * x - s * (y + half), py = extent / 2 + s * x + c * (y + half);
                const double depth =
                    edge * extent -
                    ((px - extent / 2) * std::cos(edge_turn) + (py - extent / 2) * std::sin(edge_turn)) - 0.1 * extent;
                if (depth > 0) add_column(phase, pixel, px, py, 0.45 * (1 - std::exp(-(depth + 0.6) / 2.5)));
            }
        }
    const int adatoms = static_cast<int>(14 * extent * extent / 105);
    for (int i = 0; i < adatoms; ++i) add_column(phase, pixel, part(random) * extent, part(random) * extent, 0.2);
    return phase;
}

/// A Gaussian random field with the correlation of an atom's width.
plane amorphous(int size, double pixel, std::mt19937& random)
{
    std::normal_distribution<double> normal;
    std::vector<std::complex<float>> field(static_cast<std::size_t>(size) * size);
    for (auto& value : field) value = static_cast<float>(normal(random));
    host::forward_fft(field.data(), size, size);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            const double g2 = (std::pow(x - size / 2, 2) + std::pow(y - size / 2, 2)) / std::pow(size * pixel, 2);
            field[static_cast<std::size_t>(y) * size + x] *=
                static_cast<float>(std::exp(-2 * pi * pi * 0.035 * 0.035 * g2));
        }
    host::backward_fft(field.data(), size, size);
    plane phase{size};
    double power = 0;
    for (const auto& value : field) power += value.real() * value.real() / static_cast<double>(field.size());
    for (std::size_t i = 0; i < field.size(); ++i) phase.values[i] = 0.25 * field[i].real() / std::sqrt(power);
    return phase;
}

/// Groups of three bars of random sizes, the transmitted modulus is 0.1 in them.
plane target(int size, std::mt19937& random)
{
    plane modulus{size};
    std::ranges::fill(modulus.values, 1.0);
    std::uniform_real_distribution<double> part{0, 1};
    for (int group = 0; group < 24; ++group) {
        const int bar = 3 + static_cast<int>(part(random) * size / 40), left = static_cast<int>(part(random) * size),
                  top = static_cast<int>(part(random) * size);
        const bool upright = part(random) < 0.5;
        for (int y = 0; y < 5 * bar; ++y)
            for (int x = 0; x < 5 * bar; ++x)
                if ((upright ? x : y) / bar % 2 == 0 && left + x < size && top + y < size)
                    modulus.at(left + x, top + y) = 0.1;
    }
    return modulus;
}

/// Many groups of three bars of random sizes, from 3 pixels on, and directions; each has a modulus of its own, from 0
/// to 0.7.
plane grey_target(int size, double widest, std::mt19937& random)
{
    plane modulus{size};
    std::ranges::fill(modulus.values, 1.0);
    std::uniform_real_distribution<double> part{0, 1};
    const int groups = static_cast<int>(0.1 * size * size / (widest * widest));
    for (int group = 0; group < groups; ++group) {
        const double bar = 3 + (widest - 3) * part(random), middle_x = part(random) * size,
                     middle_y = part(random) * size;
        const auto turn = std::polar(1.0, pi * part(random));
        const double transmitted = 0.7 * part(random);
        const int reach = static_cast<int>(4 * bar), column = static_cast<int>(middle_x),
                  row = static_cast<int>(middle_y);
        for (int y = std::max(row - reach, 0); y < std::min(row + reach, size); ++y)
            for (int x = std::max(column - reach, 0); x < std::min(column + reach, size); ++x) {
                const auto from_middle = std::complex{x - middle_x, y - middle_y} * turn;
                const double across = from_middle.real() / bar + 2.5;
                const bool is_in_bar = across >= 0 && across < 5 && static_cast<int>(across) % 2 == 0;
                if (is_in_bar && std::abs(from_middle.imag()) < 2.5 * bar) modulus.at(x, y) = transmitted;
            }
    }
    return modulus;
}

std::vector<std::complex<float>> exit_wave(const simulation& how, int size, std::mt19937& random)
{
    std::vector<std::complex<float>> wave;
    if (how.object == specimen::target || how.object == specimen::grey_target) {
        const plane bars =
            how.object == specimen::target ? target(size, random) : grey_target(size, how.widest_bar, random);
        for (const double modulus : bars.values) wave.emplace_back(static_cast<float>(modulus));
        return wave;
    }
    if (how.object == specimen::vacuum) {
        wave.assign(static_cast<std::size_t>(size) * static_cast<std::size_t>(size), 1.0F);
        return wave;
    }
    const plane phase =
        how.object == specimen::amorphous ? amorphous(size, how.pixel_nm, random) : crystal(size, how.pixel_nm, random);
    const double strength = how.object == specimen::amorphous ? 1 : how.strength;
    for (const double value : phase.values)
        wave.emplace_back(std::polar(std::exp(-how.absorption * std::abs(value * strength)), value * strength));
    return wave;
}

}  // namespace

host::image_ref simulate(const simulation& how)
{
    std::mt19937 random{how.seed};
    const int full = how.is_cropped ? how.size * 3 / 2 : how.size, first = (full - how.size) / 2;
    auto wave = exit_wave(how, full, random);
    const lens::optics setup{how.wavelength_nm, how.pixel_nm, how.lens, how.spread, {}};
    const auto arguments = lens::arguments_for(setup, full, full, lens::direction::apply);
    host::forward_fft(wave.data(), full, full);
    const double step = 1 / (full * how.pixel_nm);
    for (int y = 0; y < full; ++y)
        for (int x = 0; x < full; ++x) {
            auto& value = wave[static_cast<std::size_t>(y) * full + x];
            const std::complex<double> g{(x - full / 2) * step, (full / 2 - y) * step};
            const bool passes = how.aperture == 0 || std::abs(g) <= how.aperture;
            value = passes ? std::complex<float>{std::complex<double>{value} * lens::transfer_value(arguments, g)} : 0;
        }
    host::backward_fft(wave.data(), full, full);
    std::normal_distribution<float> normal{0, static_cast<float>(how.noise / std::numbers::sqrt2)};
    const std::uint32_t sizes[] = {static_cast<std::uint32_t>(how.size), static_cast<std::uint32_t>(how.size)};
    auto recorded = host::image::create("simulated", HOST_ELEMENT_COMPLEX64, sizes);
    for (int y = 0; y < how.size; ++y)
        for (int x = 0; x < how.size; ++x) {
            const auto value = wave[static_cast<std::size_t>(y + first) * full + x + first];
            const float re = how.noise > 0 ? normal(random) : 0, im = how.noise > 0 ? normal(random) : 0;
            recorded->at<std::complex<float>>(x, y) = value + std::complex<float>{re, im};
        }
    return recorded;
}

lens::aberrations random_lens(std::uint32_t seed)
{
    std::mt19937 random{seed * 7919 + 17};
    std::uniform_real_distribution<double> part{0, 1};
    lens::aberrations lens;
    const auto either = [&](double most) { return (2 * part(random) - 1) * most; };
    const auto turned = [&](double most) {
        const double modulus = part(random) * most;
        return lens::polar{modulus, part(random) * 360};
    };
    lens[lens::coefficient::C1] = {either(100), 0};
    lens[lens::coefficient::A1] = turned(30);
    lens[lens::coefficient::B2] = turned(500);
    lens[lens::coefficient::A2] = turned(400);
    lens[lens::coefficient::C3] = {either(0.2), 0};
    lens[lens::coefficient::S3] = turned(3);
    return lens;
}

lens::aberrations light_lens(const lens::aberrations& electrons)
{
    constexpr double scale = 5e5;
    lens::aberrations lens;
    for (const auto which : {lens::coefficient::C1, lens::coefficient::A1}) {
        lens[which] = electrons[which];
        lens[which].modulus *= scale;
    }
    return lens;
}

}  // namespace zentrix::bench
