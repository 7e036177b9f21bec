#include "lens/notation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>

#include "lens/transfer_value.h"
#include "tests/support/same_bytes.h"

using namespace zentrix::lens;
using std::conj;
using support::message_of;

namespace {

constexpr double pi = std::numbers::pi;
constexpr double wavelength = 0.002;

using values = std::map<std::string, double>;

/// The published aberration functions without the factor 2 pi / lambda, in nanometres; w is the other program's angle.
double krivanek(const values& c, std::complex<double> w, bool cartesian)
{
    double sum = 0;
    for (int n = 1; n <= 5; ++n)
        for (int m = (n + 1) % 2; m <= n + 1; m += 2) {
            const std::string indices = std::to_string(n) + std::to_string(m);
            const double radial = std::pow(std::abs(w), n + 1) / (n + 1), azimuth = std::arg(w);
            if (m == 0)
                sum += radial * c.at("C" + indices);
            else if (cartesian)
                sum += radial * (c.at("C" + indices + "a") * std::cos(m * azimuth) +
                                 c.at("C" + indices + "b") * std::sin(m * azimuth));
            else
                sum += radial * c.at("C" + indices) * std::cos(m * (azimuth - c.at("phi" + indices)));
        }
    return sum;
}

double uhlemann(const values& c, std::complex<double> w)
{
    const auto k = [&](const std::string& name) { return std::polar(1.0, c.at("phi" + name)) * c.at(name); };
    const double r2 = std::norm(w);
    const auto v = conj(w);
    const std::complex<double> sum = c.at("C1") * r2 / 2 + k("A1") * v * v / 2. + k("B2") * w * w * v +
                                     k("A2") * v * v * v / 3. + c.at("C3") * r2 * r2 / 4 + k("S3") * w * w * w * v +
                                     k("A3") * v * v * v * v / 4. + k("B4") * w * w * w * v * v +
                                     k("D4") * w * w * w * w * v + k("A4") * v * v * v * v * v / 5. +
                                     c.at("C5") * r2 * r2 * r2 / 6 + k("S5") * w * w * w * w * v * v +
                                     k("R5") * w * w * w * w * w * v + k("A5") * v * v * v * v * v * v / 6.;
    return sum.real();
}

/// The frames: none of the other program's conventions coincides with ours in the second.
const notation_frame frames[] = {{1, true, false, 0}, {0.1, true, true, -70}};

}  // namespace

TEST(Notation, EachCoefficientHasTheSameAberrationFunction)
{
    for (const auto& about : all_coefficients)
        for (const notation other : {notation::polar, notation::cartesian, notation::corrector})
            for (const auto& frame : frames) {
                optics setup{wavelength, 0.025, {}, {}, {}};
                const double order = about.name[1] - '0';
                // One radian or so at 25 mrad.
                setup.lens[about.which] = {3e-4 * std::pow(0.025, -order - 1) / about.nanometres,
                                           about.symmetry == 0 ? 0 : 77.0};
                const auto arguments = arguments_for(setup, 2, 2, direction::apply);
                const auto numbers = to_notation(setup.lens, other, frame);
                ASSERT_EQ(numbers.size(), 25U);
                const values named{numbers.begin(), numbers.end()};
                for (const double radius : {0.01, 0.025})
                    for (int degrees = 3; degrees < 360; degrees += 24) {
                        const auto ours = std::polar(radius, degrees * pi / 180);
                        auto theirs = std::polar(radius, (degrees - frame.zero_degrees) * pi / 180);
                        if (frame.clockwise) theirs = conj(theirs);
                        const double path = other == notation::corrector
                                                ? uhlemann(named, theirs)
                                                : krivanek(named, theirs, other == notation::cartesian);
                        const double chi = 2 * pi / wavelength * path * frame.length_nm;
                        const auto expected = std::polar(1.0, -chi);
                        ASSERT_LT(std::abs(transfer_value(arguments, ours / wavelength) - expected), 1e-6)
                            << about.name << " in notation " << static_cast<int>(other);
                    }
                const polar back = from_notation(numbers, other, frame)[about.which];
                EXPECT_NEAR(back.modulus / setup.lens[about.which].modulus, 1, 1e-14) << about.name;
                EXPECT_NEAR(back.angle_degrees, setup.lens[about.which].angle_degrees, 1e-10) << about.name;
            }
}

TEST(Notation, RefusesNamesThatItDoesNotHave)
{
    for (const auto& [numbers, text] : std::vector<std::pair<named_numbers, std::string>>{
             {{{"C22", 1}}, "C22 is not a coefficient of this notation."},
             {{{"C12a", 1}}, "C12a is not a coefficient of this notation."},
             {{{"C10", 1}, {"C10", 1}}, "A coefficient is given twice."},
             {{{"C10", 1}, {"defocus", 1}}, "defocus is another name of C10: give one of them."},
             {{{"Cs", 0}, {"C30", 1}}, "Cs is another name of C30: give one of them."}})
        EXPECT_EQ(message_of([&] { from_notation(numbers, notation::polar, {}); }), text);
    const aberrations lens = from_notation({{"defocus", 50}, {"Cs", 1.2}}, notation::polar, {});
    EXPECT_EQ(lens[coefficient::C1].modulus, -50);
    EXPECT_EQ(lens[coefficient::C3].modulus, 1.2);
}
