// The radial profile of a diffractogram, the mask of a transfer function that is sampled too coarsely, and the marks of
// its zeros.
#include "host/correction/contrast_plot.h"
#include "host/correction/diffractogram_pictures.h"
#include "host/correction/undersampled.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <complex>

namespace {

using namespace zentrix::host;
namespace lens = zentrix::lens;

TEST(RadialPower, IsTheMeanOverRingsOfFrequencyInAnOblongSpectrumToo)
{
    const auto spectrum = image::create("spectrum", HOST_ELEMENT_COMPLEX64, {{8, 4}});
    auto* const pixels = static_cast<std::complex<float>*>(spectrum->data());
    const auto at = [&](int x, int y) -> std::complex<float>& { return pixels[8 * y + x]; };
    std::fill_n(pixels, spectrum->count(), 0.0F);
    at(4, 2) = 7;        // frequency zero
    at(3, 2) = 2;        // one of 2 pixels in ring 1
    at(4, 1) = {3, -4};  // ring 2, which has 8: a row is two columns away from the next
    at(0, 0) = 1000;     // in a corner, beyond the last ring
    EXPECT_EQ(radial_power(*spectrum), (std::vector<double>{49, 2, 25 / 8.0, 0, 0}));
}

lens::transfer_arguments with_defocus(double nanometres)
{
    lens::optics setup;
    setup.wavelength_nm = 0.002;
    setup.pixel_nm = 0.02;
    setup.lens[lens::coefficient::C1].modulus = nanometres;
    return lens::arguments_for(setup, 2, 2, lens::direction::apply);
}

TEST(MaskUndersampled, BeginsWherePhaseStepsExceedPi)
{
    // chi = pi q^2. From q to q + 0.05 1/nm it changes by more than pi from 9.975 1/nm and below -10.025 1/nm.
    for (const auto& [width, height] : {std::pair{600, 1}, {1, 600}}) {
        picture line{width, height, 1, std::vector<std::uint8_t>(600, 90)};
        mask_undersampled(line, with_defocus(500), 0.05, 0.05);
        ASSERT_EQ(line.channels, 3);
        ASSERT_EQ(line.bytes.size(), 1800u);
        for (int i = 0; i < 600; ++i) {
            const int frequency = height == 1 ? i - 300 : 300 - i;  // upwards
            const bool masked = frequency >= 200 || frequency <= -201;
            const rgb expected = masked ? undersampled_ink : rgb{90, 90, 90};
            EXPECT_TRUE(std::equal(expected.begin(), expected.end(), &line.bytes[3 * static_cast<std::size_t>(i)]))
                << i;
        }
    }
    picture grey{600, 1, 1, std::vector<std::uint8_t>(600, 90)};
    mask_undersampled(grey, with_defocus(300), 0.05, 0.05);
    EXPECT_EQ(grey.channels, 1) << "without undersampling nothing changes";
}

TEST(PlotContrast, MarksZerosByCirclesOrABar)
{
    lens::contrast_profile profile;
    profile.step = 0.01;
    profile.contrast.assign(1001, 0.5);  // away from the marks
    profile.envelope.assign(1001, 1);
    profile.zeros = {1, 1.07, 4, 4.03, 4.06};  // 7 and 3 pixels apart
    drawing on{1000, 210};
    on.fill({0, 0, 1000, 210}, white_paper);
    plot_contrast(on, {0, 0, 1000, 210}, profile, 10, 20);
    const picture shown = picture_of(on);
    const auto is_white = [&](int x) { return shown.bytes[3 * (105 * 1000 + static_cast<std::size_t>(x))] == 255; };
    for (const int x : {100, 107, 400, 401, 403, 405, 406}) EXPECT_TRUE(is_white(x)) << x;
    for (const int x : {90, 103, 112, 395, 411}) EXPECT_FALSE(is_white(x)) << x;
}

}  // namespace
