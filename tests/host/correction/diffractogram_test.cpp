// Diffractograms of a wave whose spectrum is known.
#include "host/correction/diffractogram_pictures.h"

#include "host/engine/library.h"
#include "lens/electron.h"
#include "tests/support/companion_package.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

using namespace zentrix::host;
namespace lens = zentrix::lens;
using pixel = std::complex<float>;

lens::optics in_focus()
{
    lens::optics setup;
    setup.wavelength_nm = lens::electron_wavelength(300);
    setup.pixel_nm = 0.05;
    return setup;
}

/// 1 + 0.1 i cos(2 pi 8 x / 64) on 64 x 32 pixels: a weak phase grating with 8 periods along x.
image_ref grating()
{
    auto wave = image::create("grating", HOST_ELEMENT_COMPLEX64, {{64, 32}});
    for (std::uint32_t y = 0; y < 32; ++y)
        for (std::uint32_t x = 0; x < 64; ++x)
            wave->at<pixel>(x, y) = {1, 0.1F * std::cos(2 * std::numbers::pi_v<float> * static_cast<float>(x) / 8)};
    return wave;
}

TEST(Diffractograms, HaveThePowerOfTheWaveOrOfWhatIsDisplayed)
{
    engine host{support::with_companion_package()};
    library loaded{host, ZENTRIX_LIBRARY_FILE};
    live_correction correction{host, grating()};
    correction.set(in_focus(), lens::damping::off);
    diffractogram_pictures pictures{correction};
    EXPECT_TRUE(pictures.profile().empty());
    /// Powers of the middle, of the peaks at 8 periods to the right and to the left, and of another pixel.
    const auto powers = [&](std::optional<display_mode> displayed) {
        pictures.set_displayed(displayed);
        const auto picture = pictures.wait_for({.mode = display_mode::log_modulus});
        EXPECT_EQ(picture.failure, "");
        const auto* const spectrum = static_cast<const pixel*>(picture.values->data());
        std::vector<float> found;
        for (const std::size_t x : {32U, 40U, 24U, 37U}) found.push_back(std::norm(spectrum[16 * 64 + x]));
        return found;
    };
    const float all = 64 * 32, peak = 0.05F * all;
    const auto of_wave = powers(std::nullopt);
    EXPECT_NEAR(std::sqrt(of_wave[0]) / all, 1, 1e-5);
    for (const std::size_t side : {1U, 2U}) EXPECT_NEAR(std::sqrt(of_wave[side]) / peak, 1, 1e-4);
    EXPECT_LT(of_wave[3], 1e-4F);
    const auto& profile = pictures.profile();
    ASSERT_EQ(profile.size(), 33U);
    EXPECT_NEAR(profile[0] / (double{all} * double{all}), 1, 1e-5);
    EXPECT_GT(profile[8], 1e6 * (profile[7] + profile[9])) << "the ring at 8 / 64 of a pixel^-1";

    const auto of_phase = powers(display_mode::phase);
    EXPECT_NEAR(std::sqrt(of_phase[1]) / peak, 1, 0.01) << "weak: the phase is the imaginary part";
    EXPECT_LT(of_phase[0], 1e-4F) << "without the mean";
    const auto of_real_part = powers(display_mode::real);
    for (const float power : of_real_part) EXPECT_LT(power, 1e-4F) << "constant";
}

}  // namespace
