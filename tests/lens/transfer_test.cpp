#include "lens/transfer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <map>
#include <string>

#include "lens/electron.h"
#include "lens/panel_tags.h"
#include "tests/support/same_bytes.h"

using namespace zentrix::lens;
using support::message_of;

namespace {

optics usual_optics()
{
    optics setup;
    setup.wavelength_nm = 0.002;
    setup.pixel_nm = 0.05;
    return setup;
}

}  // namespace

TEST(ElectronWavelength, AgreesWithTextbooks)
{
    for (auto [kilovolts, picometres] : {std::pair{20.0, 8.5885}, {100.0, 3.7014}, {200.0, 2.5079}, {300.0, 1.9687}})
        EXPECT_NEAR(electron_wavelength(kilovolts) * 1e3, picometres, 6e-5) << kilovolts << " kV";
    EXPECT_THROW(electron_wavelength(0), std::invalid_argument);
}

TEST(TransferArguments, RefuseNumbersBeyondSinglePrecisionByName)
{
    for (const auto& about : all_coefficients) {
        optics setup = usual_optics();
        setup.lens[about.which].modulus = -1e10;
        EXPECT_NO_THROW(arguments_for(setup, 8, 8, direction::remove));
        setup.lens[about.which].modulus = 3e38;
        EXPECT_EQ(message_of([&] { arguments_for(setup, 8, 8, direction::remove); }),
                  std::string{about.name} + " is too large.");
    }
    const std::string angles =
        "Scattering angles would exceed 1e5 rad. Check the units of pixel size (nm), wavelength (nm) and tilt (mrad).";
    struct row
    {
        std::function<void(optics&)> change;
        std::string text;
    };
    for (const auto& [change, text] : {
             row{[](optics& o) { o.pixel_nm = 2e-11; }, angles},
             row{[](optics& o) {
                     o.tilt_mrad = {0, 1e300};
                 },
                 angles},
             row{[](optics& o) { o.pixel_nm = 1e-300; }, "The pixel size is too small."},
             row{[](optics& o) { o.pixel_nm = 0; }, "The pixel size must be a positive number of nanometres."},
             row{[](optics& o) { o.wavelength_nm = 1e300; }, "The wavelength is too large."},
             row{[](optics& o) { o.spread.focus_spread_nm = 1e300; }, "The focus spread is too large."},
             row{[](optics& o) { o.spread.convergence_mrad = -1; }, "The convergence must not be negative."},
             row{[](optics& o) { o.spread.vibration_nm = HUGE_VAL; }, "The vibration is too large."},
             // 1e17 rad at the corners.
             row{[](optics& o) { o.pixel_nm = 1e-6, o.lens[coefficient::C3].modulus = 1e-5; }, "C3 is too large."},
         }) {
        optics setup = usual_optics();
        change(setup);
        EXPECT_EQ(message_of([&] { arguments_for(setup, 8, 8, direction::apply); }), text);
    }
}

TEST(PanelTags, StartWithTheLensInWholeDegrees)
{
    aberrations lens;
    lens[coefficient::A1] = {2.5, -20};
    lens[coefficient::C3] = {-0.013, 0};
    std::map<std::string, double> tags;
    for (const auto& tag : panel_tags(lens, 5)) EXPECT_TRUE(tags.emplace(tag.key, tag.start).second) << tag.key;
    EXPECT_EQ(tags.size(), 3 * 2 + 11 * 4 + 5 + 3);
    for (const auto& [key, start] :
         {std::pair{"ModA1", 2.5}, {"AngA1", 340}, {"C3", -0.013}, {"DisplayMode", 5}, {"FifthPaneIsEnabled", 1}})
        EXPECT_EQ(tags[key], start) << key;
    for (const polar& wrong : {polar{1, 12.5}, polar{1e39, 0}}) {
        lens[coefficient::A1] = wrong;
        EXPECT_THROW(panel_tags(lens, 3), std::invalid_argument);
    }
}

TEST(ParseCoefficient, ReadsModulusAndAngleOrNamesTheExpectedForm)
{
    const polar value = parse_coefficient(coefficient::B4, "1.5e2@-30");
    EXPECT_EQ(value.modulus, 150);
    EXPECT_EQ(value.angle_degrees, -30);
    struct row
    {
        coefficient which;
        const char *text, *message;
    };
    for (auto [which, text, message] :
         {row{coefficient::C1, "12@30", "C1 is a number in nm, not \"12@30\""},
          row{coefficient::A1, "12@", "A1 is MODULUS or MODULUS@DEGREES in nm, not \"12@\""},
          row{coefficient::S5, "inf", "S5 is MODULUS or MODULUS@DEGREES in mm, not \"inf\""},
          row{coefficient::B4, "", "B4 is MODULUS or MODULUS@DEGREES in um, not \"\""}})
        EXPECT_EQ(message_of([&, which = which, text = text] { parse_coefficient(which, text); }), message);
}
