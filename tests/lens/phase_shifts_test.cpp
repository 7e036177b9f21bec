#include "lens/phase_shifts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "lens/aberration_basis.h"
#include "lens/electron.h"
#include "lens/transfer_value.h"

using namespace zentrix::lens;

namespace {

using std::numbers::pi;

/// All coefficients, each of a size that an aligned microscope has.
optics microscope()
{
    optics setup{
        .wavelength_nm = electron_wavelength(300), .pixel_nm = 0.05, .lens = {}, .spread = {}, .tilt_mrad = {}};
    for (const auto& about : all_coefficients)
        setup.lens[about.which] = {(about.which == coefficient::C1 ? -3e1 : 3e1) *
                                       std::pow(100.0, order_of(about.which) - 2) / about.nanometres,
                                   about.symmetry == 0 ? 0.0 : 40.0};
    return setup;
}

TEST(PhaseShifts, AreTheLargestValuesOfTheAberrationFunctionOnTheCircle)
{
    const optics setup = microscope();
    const auto shifts = phase_shifts_of(setup);
    EXPECT_FALSE(shifts.at_information_limit);
    EXPECT_DOUBLE_EQ(shifts.frequency, 10);
    for (const auto& about : all_coefficients) {
        optics alone = setup;
        alone.lens = {};
        alone.lens[about.which] = setup.lens[about.which];
        const auto arguments = arguments_for(alone, 2, 2, direction::apply);
        double largest = 0;
        for (int degrees = 0; degrees < 360; ++degrees)
            largest = std::max(largest, std::abs(aberration_function(arguments, std::polar(10.0, degrees * pi / 180))));
        EXPECT_NEAR(shifts.of(about.which), largest, 0.001 * largest) << about.name;
    }
}

TEST(PhaseShifts, AreAtTheInformationLimitOfTheEnvelope)
{
    optics setup = microscope();
    setup.spread.focus_spread_nm = 4;
    const double limit = std::sqrt(2 / (pi * 4 * setup.wavelength_nm));  // (pi s lambda g^2)^2 / 2 = 2
    const auto shifts = phase_shifts_of(setup);
    EXPECT_TRUE(shifts.at_information_limit);
    EXPECT_NEAR(shifts.frequency, limit, 0.01);
    EXPECT_NEAR(shifts.of(coefficient::C1), pi * setup.wavelength_nm * 30 * limit * limit, 0.1);
    setup.spread.focus_spread_nm = 1;  // its limit is beyond the Nyquist frequency
    EXPECT_FALSE(phase_shifts_of(setup).at_information_limit);
    setup.pixel_nm = 0;
    EXPECT_THROW(phase_shifts_of(setup), std::invalid_argument);
}

}  // namespace
