#include "lens/transfer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <iterator>
#include <map>
#include <numbers>
#include <string>

#include "lens/electron.h"
#include "lens/panel_tags.h"
#include "tests/support/same_bytes.h"

using namespace zentrix::lens;
using complex = std::complex<double>;

namespace {

/// What the transfer function makes of its arguments at its own angle w (imaginary part down).
double chi_of_arguments(const transfer_arguments& a, complex w)
{
    const double s = std::norm(w);
    const complex rest = (a.c31 * s + a.c51 * s * s) * w + (a.c22 + a.c42 * s + a.c62 * s * s) * std::pow(w, 2) +
                         (a.c33 + a.c53 * s) * std::pow(w, 3) + (a.c44 + a.c64 * s) * std::pow(w, 4) +
                         a.c55 * std::pow(w, 5) + a.c66 * std::pow(w, 6);
    return a.c20 * s + a.c40 * s * s + a.c60 * s * s * s + rest.real();
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
    // The path difference of each: modulus * nanometres * factor * angle^order * cos(its angle - symmetry * azimuth).
    const struct
    {
        coefficient which;
        double nanometres, factor;
        int order, symmetry;
    } terms[] = {
        {coefficient::C1, 1, 1.0 / 2, 2, 0},   {coefficient::A1, 1, 1.0 / 2, 2, 2},
        {coefficient::B2, 1, 1, 3, 1},         {coefficient::A2, 1, 1.0 / 3, 3, 3},
        {coefficient::C3, 1e6, 1.0 / 4, 4, 0}, {coefficient::S3, 1e3, 1, 4, 2},
        {coefficient::A3, 1e3, 1.0 / 4, 4, 4}, {coefficient::B4, 1e3, 1, 5, 1},
        {coefficient::D4, 1e3, 1, 5, 3},       {coefficient::A4, 1e3, 1.0 / 5, 5, 5},
        {coefficient::C5, 1e6, 1.0 / 6, 6, 0}, {coefficient::A5, 1e6, 1.0 / 6, 6, 6},
        {coefficient::R5, 1e6, 1, 6, 4},       {coefficient::S5, 1e6, 1, 6, 2},
    };
    ASSERT_EQ(std::size(terms), coefficient_count);
    for (const auto& term : terms) {  // each alone, so that no term hides behind a larger one
        optics setup;
        setup.wavelength_nm = 0.002;
        setup.pixel_nm = 0.05;
        setup.lens[term.which] = {3, 40};
        const double degrees = term.symmetry == 0 ? 0 : 40;  // a round one has none
        const auto arguments = arguments_for(setup, 64, 48, direction::apply);
        for (double azimuth : {0.0, 25.0, 170.0, 311.0}) {
            constexpr double degree = std::numbers::pi / 180;
            const double wanted = 2 * std::numbers::pi / 0.002 * 3 * term.nanometres * term.factor *
                                  std::pow(0.03, term.order) * std::cos((degrees - term.symmetry * azimuth) * degree);
            // On the displayed image the angle's imaginary part is up, in the function's own angle it is down.
            EXPECT_NEAR(chi_of_arguments(arguments, std::polar(0.03, -azimuth * degree)), wanted,
                        1e-9 * std::abs(wanted) + 1e-12)
                << traits(term.which).name << " at " << azimuth;
        }
    }
}

TEST(transfer_arguments, removal_negates_the_phase_and_keeps_the_tilt)
{
    optics setup;
    setup.wavelength_nm = 0.002;
    setup.pixel_nm = 0.04;
    setup.tilt_mrad = {1.5, -0.7};
    for (const auto& about : all_coefficients) setup.lens[about.which] = {1.5, 33};
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

TEST(transfer_arguments, refuse_a_coefficient_beyond_every_lens_by_name)
{
    for (const auto& about : all_coefficients) {
        optics setup;
        setup.wavelength_nm = 0.002, setup.pixel_nm = 0.05;
        setup.lens[about.which].modulus = -1e20;
        EXPECT_NO_THROW(arguments_for(setup, 8, 8, direction::remove));
        setup.lens[about.which].modulus = 3e38;
        try {
            arguments_for(setup, 8, 8, direction::remove);
            FAIL() << about.name;
        } catch (const std::invalid_argument& problem) {
            EXPECT_EQ(problem.what(), std::string{about.name} + " is too large.");
        }
    }
}

TEST(panel_tags, start_with_the_lens_in_whole_degrees)
{
    aberrations lens;
    lens[coefficient::A1] = {2.5, -20};
    lens[coefficient::C3] = {-0.013, 0};
    std::map<std::string, double> tags;
    for (const auto& tag : panel_tags(lens, 5)) EXPECT_TRUE(tags.emplace(tag.key, tag.start).second) << tag.key;
    EXPECT_EQ(tags.size(), 3 * 2 + 11 * 4 + 5 + 3);
    EXPECT_EQ(tags["ModA1"], 2.5);
    EXPECT_EQ(tags["AngA1"], 340);
    EXPECT_EQ(tags["C3"], -0.013);
    EXPECT_EQ(tags["DisplayMode"], 5);
    EXPECT_EQ(tags["FifthPaneIsEnabled"], 1);
    for (const polar& wrong : {polar{1, 12.5}, polar{1e39, 0}}) {
        lens[coefficient::A1] = wrong;
        EXPECT_THROW(panel_tags(lens, 3), std::invalid_argument);
    }
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
        const char *text, *said;
    };
    for (auto [which, text, said] : {row{coefficient::C1, "12@30", "C1 is a number in nm, not \"12@30\""},
                                     row{coefficient::A1, "12@", "A1 is MODULUS or MODULUS@DEGREES in nm, not \"12@\""},
                                     row{coefficient::C3, "1,2", "C3 is a number in mm, not \"1,2\""},
                                     row{coefficient::S5, "inf", "S5 is MODULUS or MODULUS@DEGREES in mm, not \"inf\""},
                                     row{coefficient::B4, "", "B4 is MODULUS or MODULUS@DEGREES in um, not \"\""}})
        EXPECT_EQ(support::message_of([&, which = which, text = text] { parse_coefficient(which, text); }), said);
}
