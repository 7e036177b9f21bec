#include "lens/transfer.h"

#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>

namespace zentrix::lens {

namespace {

void require(bool holds, const char* text)
{
    if (!holds) throw std::invalid_argument{text};
}

bool positive(double value) { return value > 0 && std::isfinite(value); }
bool not_negative(double value) { return value >= 0 && std::isfinite(value); }

void check(const optics& setup)
{
    require(positive(setup.wavelength_nm), "The wavelength must be a positive number of nanometres.");
    require(positive(setup.pixel_nm), "The pixel size must be a positive number of nanometres.");
    require(not_negative(setup.spread.focus_spread_nm), "The focus spread must not be negative.");
    require(not_negative(setup.spread.convergence_mrad), "The convergence must not be negative.");
    require(not_negative(setup.spread.vibration_nm), "The vibration must not be negative.");
}

/// [rad] at an angle of 1 rad. Far beyond every lens, and far from overflow in what is computed of it.
constexpr double largest_coefficient = 1e30;

/// The spectrum's zero frequency minus the function's own zero of the angle, in pixels.
double centre_offset(int size) { return size % 2 != 0 ? 0.5 : 0.0; }

}  // namespace

transfer_arguments arguments_for(const optics& setup, int width, int height, direction way, damping envelope)
{
    check(setup);
    const double sign = way == direction::remove ? -1 : 1;
    const double wave_number = 2 * std::numbers::pi / setup.wavelength_nm;
    const auto scaled = [&](coefficient which) {
        const auto value = sign * wave_number / traits(which).divisor * setup.lens.in_nanometres(which);
        if (!(std::abs(value) <= largest_coefficient))
            throw std::invalid_argument{std::string{traits(which).name} + " is too large."};
        return value;
    };

    transfer_arguments a;
    a.lambda = setup.wavelength_nm;
    a.step = setup.pixel_nm;
    a.c20 = scaled(coefficient::C1).real();
    a.c40 = scaled(coefficient::C3).real();
    a.c60 = scaled(coefficient::C5).real();
    a.c22 = scaled(coefficient::A1);
    a.c31 = scaled(coefficient::B2);
    a.c33 = scaled(coefficient::A2);
    a.c42 = scaled(coefficient::S3);
    a.c44 = scaled(coefficient::A3);
    a.c51 = scaled(coefficient::B4);
    a.c53 = scaled(coefficient::D4);
    a.c55 = scaled(coefficient::A4);
    a.c62 = scaled(coefficient::S5);
    a.c64 = scaled(coefficient::R5);
    a.c66 = scaled(coefficient::A5);

    a.c2s = std::numbers::pi * setup.spread.focus_spread_nm / setup.wavelength_nm;
    a.bdiv = setup.spread.convergence_mrad * 1e-3;
    a.vib = setup.spread.vibration_nm;
    const bool any_width = a.c2s > 0 || a.bdiv > 0 || a.vib > 0;
    a.envelope = any_width && (envelope == damping::on || (envelope == damping::automatic && way == direction::apply));

    const double angle_per_cycle = setup.wavelength_nm / setup.pixel_nm;
    a.tilt = std::conj(setup.tilt_mrad) * 1e-3 +
             angle_per_cycle * std::complex{centre_offset(width) / width, centre_offset(height) / height};
    return a;
}

}  // namespace zentrix::lens
