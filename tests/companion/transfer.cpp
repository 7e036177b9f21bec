#include "companion/transfer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <string>
#include <vector>

#include "companion/electron.h"

using namespace zentrix::companion;
using complex = std::complex<double>;

namespace {

/// The aberration function in the corrector's own notation, a term for each coefficient: the wave's path difference at
/// the scattering angle w as seen on the displayed image (imaginary part up), as a phase.
double chi_on_screen(const aberrations& lens, double wavelength, complex w)
{
    const auto c = [&](coefficient which) { return lens.in_nanometres(which); };
    const complex conj = std::conj(w);
    const double s = std::norm(w);
    complex sum = 0;
    sum += c(coefficient::C1) * s / 2.0 + c(coefficient::A1) * std::pow(conj, 2) / 2.0;
    sum += c(coefficient::B2) * s * conj + c(coefficient::A2) * std::pow(conj, 3) / 3.0;
    sum += c(coefficient::C3) * s * s / 4.0 + c(coefficient::S3) * s * std::pow(conj, 2) +
           c(coefficient::A3) * std::pow(conj, 4) / 4.0;
    sum += c(coefficient::B4) * s * s * conj + c(coefficient::D4) * s * std::pow(conj, 3) +
           c(coefficient::A4) * std::pow(conj, 5) / 5.0;
    sum += c(coefficient::C5) * s * s * s / 6.0 + c(coefficient::S5) * s * s * std::pow(conj, 2) +
           c(coefficient::R5) * s * std::pow(conj, 4) + c(coefficient::A5) * std::pow(conj, 6) / 6.0;
    return 2 * std::numbers::pi / wavelength * sum.real();
}

/// What the transfer function makes of its arguments at its own angle w (imaginary part down).
double chi_of_arguments(const transfer_arguments& a, complex w)
{
    const double s = std::norm(w);
    const complex rest = (a.c31 * s + a.c51 * s * s) * w + (a.c22 + a.c42 * s + a.c62 * s * s) * std::pow(w, 2) +
                         (a.c33 + a.c53 * s) * std::pow(w, 3) + (a.c44 + a.c64 * s) * std::pow(w, 4) +
                         a.c55 * std::pow(w, 5) + a.c66 * std::pow(w, 6);
    return a.c20 * s + a.c40 * s * s + a.c60 * s * s * s + rest.real();
}

/// A microscope with all fourteen coefficients, each worth some radians at 25 mrad.
optics full_setup()
{
    optics setup;
    setup.wavelength_nm = electron_wavelength(200);
    setup.pixel_nm = 0.04;
    const std::vector<std::string> values{"-30",     "25@33",  "210@-70", "140@100", "0.02",     "4@15",  "9.5@250",
                                          "60@-140", "90@300", "310@5",   "1.5",     "2.5@72.5", "3@-12", "1.1@190"};
    for (const auto& about : all_coefficients)
        setup.lens[about.which] = parse_coefficient(about.which, values[static_cast<std::size_t>(about.which)]);
    return setup;
}

}  // namespace

TEST(electron, wavelengths_are_the_tabulated_ones)
{
    // As textbooks tabulate them [pm].
    for (auto [kilovolts, picometres] : {std::pair{20.0, 8.5885}, {100.0, 3.7014}, {200.0, 2.5079}, {300.0, 1.9687}})
        EXPECT_NEAR(electron_wavelength(kilovolts) * 1e3, picometres, 6e-5) << kilovolts << " kV";
    EXPECT_THROW(electron_wavelength(0), std::invalid_argument);
}

TEST(transfer_arguments, give_the_aberration_function_of_the_displayed_image)
{
    const optics setup = full_setup();
    for (const auto& about : all_coefficients)  // each alone, so that no term hides behind a larger one
    {
        optics alone = setup;
        alone.lens = {};
        alone.lens[about.which] = setup.lens[about.which];
        const auto arguments = arguments_for(alone, 64, 48, direction::apply);
        for (double azimuth = 0.3; azimuth < 7; azimuth += 1.1) {
            const complex on_screen = std::polar(0.02, azimuth);
            const double wanted = chi_on_screen(alone.lens, alone.wavelength_nm, on_screen);
            EXPECT_NE(wanted, 0) << about.name;
            EXPECT_NEAR(chi_of_arguments(arguments, std::conj(on_screen)), wanted, 1e-9)
                << about.name << " " << azimuth;
        }
    }
}

TEST(transfer_arguments, follow_the_cosine_of_angle_minus_symmetry_times_azimuth)
{
    struct term
    {
        coefficient which;
        double factor;
        int order;
    };
    for (auto [which, factor, order] : {term{coefficient::A1, 0.5, 2}, term{coefficient::B2, 1, 3},
                                        term{coefficient::D4, 1, 5}, term{coefficient::A5, 1.0 / 6, 6}}) {
        optics setup;
        setup.wavelength_nm = 0.002;
        setup.pixel_nm = 0.05;
        setup.lens[which] = {3, 40};
        const auto arguments = arguments_for(setup, 32, 32, direction::apply);
        for (double azimuth : {0.0, 25.0, 170.0, 311.0}) {
            const double degree = std::numbers::pi / 180;
            const double wanted = 2 * std::numbers::pi / 0.002 * 3 * traits(which).nanometres * factor *
                                  std::pow(0.03, order) * std::cos((40 - traits(which).symmetry * azimuth) * degree);
            EXPECT_NEAR(chi_of_arguments(arguments, std::polar(0.03, -azimuth * degree)), wanted,
                        1e-9 * std::abs(wanted) + 1e-12)
                << traits(which).name << " at " << azimuth;
        }
    }
}

TEST(transfer_arguments, removal_negates_the_phase_and_keeps_the_tilt)
{
    optics setup = full_setup();
    setup.tilt_mrad = {1.5, -0.7};
    const auto there = arguments_for(setup, 65, 48, direction::apply);
    const auto back = arguments_for(setup, 65, 48, direction::remove);
    EXPECT_EQ(there.tilt, back.tilt);
    for (const complex w : {complex{0.01, 0.003}, complex{-0.02, 0.015}})
        EXPECT_EQ(chi_of_arguments(there, w), -chi_of_arguments(back, w));
}

TEST(transfer_arguments, tilt_points_up_and_odd_sizes_are_centred)
{
    optics setup;
    setup.wavelength_nm = 0.002;
    setup.pixel_nm = 0.05;
    setup.tilt_mrad = {2, 3};
    for (auto [width, height] : {std::pair{64, 32}, {65, 32}, {64, 33}, {7, 5}}) {
        const auto a = arguments_for(setup, width, height, direction::apply);
        // The angle that the function gives the pixel of zero frequency has to be the tilt alone, imaginary part down.
        const complex centre{(width / 2) / double(width) - 0.5, (height / 2) / double(height) - 0.5};
        EXPECT_LT(std::abs(centre * a.lambda / a.step + a.tilt - complex{0.002, -0.003}), 1e-15);
    }
}

TEST(transfer_arguments, widths_are_rms_and_removal_leaves_the_envelope_out)
{
    optics setup;
    setup.wavelength_nm = electron_wavelength(300);
    setup.pixel_nm = 0.05;
    EXPECT_FALSE(arguments_for(setup, 8, 8, direction::apply).envelope);
    setup.spread = {4, 0.3, 0.02};
    const auto a = arguments_for(setup, 8, 8, direction::apply);
    // Frank's envelope of a Gaussian focus spread: exp(-(pi sigma lambda g^2)^2 / 2).
    const double g = 7, s = std::pow(g * a.lambda, 2);
    EXPECT_NEAR(s * a.c2s, std::numbers::pi * 4 * a.lambda * g * g, 1e-12);
    EXPECT_DOUBLE_EQ(a.bdiv, 0.3e-3);
    EXPECT_DOUBLE_EQ(a.vib, 0.02);

    struct row
    {
        direction way;
        damping envelope;
        bool wanted;
    };
    for (auto [way, envelope, wanted] :
         {row{direction::apply, damping::automatic, true}, row{direction::apply, damping::off, false},
          row{direction::remove, damping::automatic, false}, row{direction::remove, damping::on, true}})
        EXPECT_EQ(arguments_for(setup, 8, 8, way, envelope).envelope, wanted);
}

TEST(parse_coefficient, reads_modulus_and_angle_and_says_what_it_expected)
{
    const polar value = parse_coefficient(coefficient::B4, "1.5e2@-30");
    EXPECT_EQ(value.modulus, 150);
    EXPECT_EQ(value.angle_degrees, -30);
    EXPECT_EQ(parse_coefficient(coefficient::A1, "-4").modulus, -4);
    struct row
    {
        coefficient which;
        const char* text;
        const char* said;
    };
    for (auto [which, text, said] : {row{coefficient::C1, "12@30", "C1 is a number in nm, not \"12@30\""},
                                     row{coefficient::A1, "12@", "A1 is MODULUS or MODULUS@DEGREES in nm, not \"12@\""},
                                     row{coefficient::C3, "1,2", "C3 is a number in mm, not \"1,2\""},
                                     row{coefficient::S5, "inf", "S5 is MODULUS or MODULUS@DEGREES in mm, not \"inf\""},
                                     row{coefficient::B4, "", "B4 is MODULUS or MODULUS@DEGREES in um, not \"\""}}) {
        try {
            parse_coefficient(which, text);
            ADD_FAILURE() << text;
        } catch (const std::invalid_argument& problem) {
            EXPECT_STREQ(problem.what(), said);
        }
    }
}
