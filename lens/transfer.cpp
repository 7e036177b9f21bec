#include "lens/transfer.h"

#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>

namespace zentrix::lens {

namespace {

// The library computes in single precision, up to 3e38, with products such as coefficient * angle^6. These limits are
// far beyond every instrument and keep all products within that range.
constexpr double largest_length = 1e20;       // nm; also the largest 1 / length
constexpr double largest_angle = 1e5;         // rad
constexpr double largest_coefficient = 1e30;  // rad at an angle of 1 rad
constexpr double largest_phase = 1e15;        // rad, and rad per rad for its gradient
constexpr double largest_width = 1e15;

void require(bool holds, const std::string& text)
{
    if (!holds) throw std::invalid_argument{text};
}

void check_length(double value, const std::string& name)
{
    require(value > 0 && std::isfinite(value), "The " + name + " must be a positive number of nanometres.");
    require(value <= largest_length, "The " + name + " is too large.");
    require(value >= 1 / largest_length, "The " + name + " is too small.");
}

/// `scaled` is the width as the envelope uses it.
void check_width(double value, double scaled, const std::string& name)
{
    require(value >= 0, "The " + name + " must not be negative.");
    require(scaled <= largest_width, "The " + name + " is too large.");
}

/// At the corners of the spectrum. [rad]
double largest_angle_of(const optics& setup)
{
    return setup.wavelength_nm / setup.pixel_nm * std::numbers::sqrt2 / 2 + std::abs(setup.tilt_mrad) * 1e-3;
}

void check(const optics& setup)
{
    check_length(setup.wavelength_nm, "wavelength");
    check_length(setup.pixel_nm, "pixel size");
    const coherence& spread = setup.spread;
    check_width(spread.focus_spread_nm, spread.focus_spread_nm / setup.wavelength_nm, "focus spread");
    check_width(spread.convergence_mrad, spread.convergence_mrad, "convergence");
    check_width(spread.vibration_nm, spread.vibration_nm / setup.pixel_nm, "vibration");
    require(
        largest_angle_of(setup) <= largest_angle,
        "Scattering angles would exceed 1e5 rad. Check the units of pixel size (nm), wavelength (nm) and tilt (mrad).");
}

/// The spectrum's zero frequency minus the zero of the function's own angle, in pixels.
double centre_offset(int size) { return size % 2 != 0 ? 0.5 : 0.0; }

}  // namespace

transfer_arguments arguments_for(const optics& setup, int width, int height, direction way, damping envelope)
{
    check(setup);
    const double sign = way == direction::remove ? -1 : 1;
    const double wave_number = 2 * std::numbers::pi / setup.wavelength_nm;
    const double angle = largest_angle_of(setup);
    // `order` is the power of the angle in the coefficient's term.
    const auto scaled = [&](coefficient which, int order) {
        const auto value = sign * wave_number / traits(which).divisor * setup.lens.in_nanometres(which);
        const double gradient = std::abs(value) * order * std::pow(angle, order - 1);
        require(
            std::abs(value) <= largest_coefficient && gradient <= largest_phase && gradient * angle <= largest_phase,
            std::string{traits(which).name} + " is too large.");
        return value;
    };

    transfer_arguments a;
    a.lambda = setup.wavelength_nm;
    a.step = setup.pixel_nm;
    a.c20 = scaled(coefficient::C1, 2).real();
    a.c40 = scaled(coefficient::C3, 4).real();
    a.c60 = scaled(coefficient::C5, 6).real();
    a.c22 = scaled(coefficient::A1, 2);
    a.c31 = scaled(coefficient::B2, 3);
    a.c33 = scaled(coefficient::A2, 3);
    a.c42 = scaled(coefficient::S3, 4);
    a.c44 = scaled(coefficient::A3, 4);
    a.c51 = scaled(coefficient::B4, 5);
    a.c53 = scaled(coefficient::D4, 5);
    a.c55 = scaled(coefficient::A4, 5);
    a.c62 = scaled(coefficient::S5, 6);
    a.c64 = scaled(coefficient::R5, 6);
    a.c66 = scaled(coefficient::A5, 6);

    a.c2s = std::numbers::pi * setup.spread.focus_spread_nm / setup.wavelength_nm;
    a.bdiv = setup.spread.convergence_mrad * 1e-3;
    a.vib = setup.spread.vibration_nm;
    const bool has_width = a.c2s > 0 || a.bdiv > 0 || a.vib > 0;
    a.envelope = has_width && (envelope == damping::on || (envelope == damping::automatic && way == direction::apply));

    const double angle_per_cycle = setup.wavelength_nm / setup.pixel_nm;
    a.tilt = std::conj(setup.tilt_mrad) * 1e-3 +
             angle_per_cycle * std::complex{centre_offset(width) / width, centre_offset(height) / height};
    return a;
}

}  // namespace zentrix::lens
