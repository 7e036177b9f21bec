#include "lens/contrast_profile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using namespace zentrix::lens;

namespace {

constexpr double wavelength = 0.002, pixel = 0.05, limit = 0.5 / pixel, distance = 2 * limit / 512;

contrast_profile profile_for(const optics& setup)
{
    return profile_of(arguments_for(setup, 2, 2, direction::apply), limit, 4001, distance);
}

optics with_defocus(double nanometres)
{
    optics setup;
    setup.wavelength_nm = wavelength;
    setup.pixel_nm = pixel;
    setup.lens[coefficient::C1].modulus = nanometres;
    return setup;
}

}  // namespace

TEST(ContrastProfile, ZerosAndLimitsAreThoseOfClosedForms)
{
    const double defocus = 80;  // chi = pi * wavelength * C1 * q^2
    const auto plain = profile_for(with_defocus(-defocus));
    ASSERT_GT(plain.zeros.size(), 10u);
    for (std::size_t i = 0; i < plain.zeros.size(); ++i)
        EXPECT_NEAR(plain.zeros[i], std::sqrt((static_cast<double>(i) + 1) / (wavelength * defocus)), 1e-4) << i;
    EXPECT_EQ(plain.information_limit, 0);
    EXPECT_EQ(plain.undersampled_from, 0);
    EXPECT_LT(plain.contrast[400], 0);  // underfocus

    optics damped = with_defocus(-defocus);  // ln envelope = -(pi * wavelength * spread * q^2)^2 / 2
    damped.spread.focus_spread_nm = 5;
    const auto limited = profile_for(damped);
    const double end = std::sqrt(2 / (std::numbers::pi * wavelength * 5));
    EXPECT_NEAR(limited.information_limit, end, 1e-3);
    EXPECT_LT(limited.zeros.back(), end);

    const double far = 3000;  // chi' * distance = 2 pi * wavelength * C1 * q * distance
    const auto coarse = profile_for(with_defocus(far));
    EXPECT_NEAR(coarse.undersampled_from, 1 / (2 * wavelength * far * distance) - distance / 2, 0.02);
    EXPECT_LT(coarse.zeros.back(), coarse.undersampled_from);

    optics oblique = with_defocus(-defocus);  // the mean of directions with more and with less defocus
    oblique.lens[coefficient::A1] = {40, 25};
    const double q2 = 9;
    double mean = 0;
    for (int k = 0; k < 3600; ++k)
        mean += std::sin(std::numbers::pi * wavelength * q2 * (-defocus + 40 * std::cos(k * std::numbers::pi / 1800)));
    EXPECT_NEAR(profile_for(oblique).contrast[1200], mean / 3600, 1e-3);
}
