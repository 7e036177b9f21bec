#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"

using support::pixels_of;
using support::workbench;
using testing::HasSubstr;
using complex = std::complex<float>;

TEST(FourierTransform, TransformsEachPlaneOfAStack)
{
    const workbench bench;
    const auto stack = zentrix::host::image::create("s", HOST_ELEMENT_COMPLEX128, std::vector<std::uint32_t>{6, 4, 2});
    for (int z = 0; z < 2; ++z)
        for (int i = 0; i < 24; ++i) stack->at<std::complex<double>>(i % 6, i / 6, z) = z + 1;
    zentrix::host::write_npy(bench / "s.npy", *stack);
    EXPECT_EQ(bench.zentrix("fft s.npy -o t.npy").err, "");
    const auto spectra = pixels_of<complex>(bench / "t.npy");
    for (std::size_t i = 0; i < spectra.size(); ++i)
        EXPECT_EQ(spectra[i], i % 24 == 15 ? complex(24.0F * static_cast<float>(i / 24 + 1)) : complex{}) << i;
    EXPECT_EQ(bench.zentrix("ifft t.npy -o back.npy --real").err, "");
    const auto back = pixels_of<float>(bench / "back.npy");
    for (std::size_t i = 0; i < back.size(); ++i) EXPECT_NEAR(back[i], static_cast<float>(i / 24 + 1), 1e-6) << i;
    EXPECT_EQ(bench.zentrix("fft back.npy -o again.npy").err, "");  // of real pixels
    EXPECT_LT(support::largest_difference(pixels_of<complex>(bench / "again.npy"), spectra), 1e-4);
    EXPECT_THAT(bench.zentrix("fft s.npy -o t.png").err, HasSubstr("a stack cannot be shown as one picture"));
}

TEST(FourierTransform, ConvertsTheScaleAndBack)
{
    const workbench bench;
    support::write_wave(bench / "w.npy", 64, 64, [](int, int) { return 1; });
    ASSERT_EQ(bench.zentrix("aberrate w.npy -o scaled.npy --kv 300 --pixel 0.05").code, 0);  // recorded in scaled.json
    EXPECT_EQ(
        bench.zentrix("fft scaled.npy -o s.npy").out,
        "transformed: complex64 64 x 64 -> s.npy, zero frequency at (32, 32), not scaled, 0.3125 1/nm per pixel\n");
    EXPECT_EQ(bench.zentrix("ifft s.npy -o back.npy").out,
              "transformed back: complex64 64 x 64 -> back.npy, scaled by 1 / (width * height), 0.05 nm per pixel\n");
}

TEST(FourierTransform, RefusesWhatWouldSpread)
{
    const workbench bench;
    support::write_real(bench / "torn.npy", 4, 4, [](int x, int y) { return x == 1 && y == 2 ? NAN : 1; });
    support::write_real(bench / "large.npy", 4, 4, [](int, int) { return 3e38F; });
    for (const auto& [file, why] : {std::pair{"torn.npy",
                                              "1 of 16 pixels are infinite or not a number; --nan zero or "
                                              "--nan mean replaces them"},
                                    {"large.npy", "the result is too large for single precision"}})
        EXPECT_EQ(bench.zentrix(std::string{"fft -o s.npy "} + file).text(),
                  std::string{"1 zentrix: "} + file + ": " + why + "\n");
    EXPECT_FALSE(std::filesystem::exists(bench / "s.npy"));
    EXPECT_EQ(bench.zentrix("fft torn.npy -o s.npy --nan mean").code, 0);
}
