#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"

using support::pixels_of;
using support::workbench;
using testing::HasSubstr;

namespace {

constexpr int width = 40, height = 30;

/// Wraps to -pi to pi.
float wrapped(double phase) { return static_cast<float>(std::arg(std::polar(1.0, phase))); }
double ramp(int x, int y) { return 0.4 * x - 0.3 * y; }
/// A vortex in the middle of four pixels.
double vortex(int x, int y) { return std::atan2(y - 14.5, x - 10.5); }

}  // namespace

TEST(Unwrap, LeavesOutMaskedPixelsAndThoseThatAreNotFiniteAndKeepsAreasApart)
{
    const workbench bench;
    const auto is_gap = [](int x, int y) { return x == 25 || (y > 9 && y < 20 && x > 5 && x < 15); };
    support::write_image_of<std::uint8_t>(bench / "m.npy", HOST_ELEMENT_UINT8, width, height, is_gap);
    for (const std::string mask : {" --mask m.npy", ""}) {
        const auto value = [&](int x, int y) {  // noise, fill values and not-a-number under the mask
            if (!is_gap(x, y)) return wrapped(ramp(x, y));
            return y % 2 == 0 ? NAN : mask.empty() ? INFINITY : x == 25 ? -9999.0F : wrapped(2.3 * x * y);
        };
        support::write_real(bench / "phase.npy", width, height, value);
        const auto done = bench.zentrix("unwrap phase.npy -o u.npy" + mask);
        EXPECT_EQ(done.err, !mask.empty() ? ""
                                          : "zentrix: phase.npy: 120 of 1200 pixels are infinite or not a number; they "
                                            "are left out and stay as they are\n");
        EXPECT_THAT(done.out,
                    HasSubstr("residues: 0 positive, 0 negative; pixels at cuts: 0; regions with an offset of "
                              "their own: 2; pixels not reached: 0; pixels left out: 120\n"
                              "The 2 regions carry unrelated multiples of 2 pi"));
        const auto after = pixels_of<float>(bench / "u.npy");
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const float got = after[static_cast<std::size_t>(y * width + x)], before = value(x, y);
                if (is_gap(x, y))
                    ASSERT_TRUE(got == before || (std::isnan(got) && std::isnan(before))) << x << " " << y;
                else  // the first pixel of each side keeps its wrapped value
                    ASSERT_NEAR(got - ramp(x, y), x < 25 ? 0 : wrapped(ramp(26, 0)) - ramp(26, 0), 1e-4);
            }
    }
}

TEST(Unwrap, RefusesMasksThatDoNotFit)
{
    const workbench bench;
    support::write_real(bench / "phase.npy", 4, 4, [](int, int) { return 1; });
    support::write_real(bench / "wide.npy", 5, 4, [](int, int) { return 0; });
    support::write_wave(bench / "wave.npy", 4, 4, [](int, int) { return 0; });
    for (const auto& [mask, why] : {std::pair{"wide.npy",
                                              "wide.npy: contains float32 5 x 4; the mask for an image of "
                                              "float32 4 x 4 has its size, or that of one plane"},
                                    {"wave.npy",
                                     "wave.npy: contains complex64 4 x 4; expected a mask: not 0 where a "
                                     "pixel is left out"},
                                    {"phase.npy",
                                     "phase.npy: leaves out every pixel (pixels that are not 0 are left "
                                     "out)"}})
        EXPECT_EQ(bench.zentrix(std::string{"unwrap phase.npy -o u.npy --mask "} + mask).text(),
                  std::string{"1 zentrix: "} + why + "\n");
    EXPECT_THAT(bench.zentrix("unwrap phase.npy -o u.npy --mask wide.npy --cuts wide.npy").err,
                HasSubstr("wide.npy: is an input and cannot be the result, too"));
    EXPECT_FALSE(std::filesystem::exists(bench / "u.npy"));
}

TEST(Unwrap, WritesTheCutsOfEachPlane)
{
    const workbench bench;
    const auto volume =
        zentrix::host::image::create("v", HOST_ELEMENT_FLOAT32, std::vector<std::uint32_t>{width, height, 2});
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            volume->at<float>(x, y, 0) = wrapped(ramp(x, y));
            volume->at<float>(x, y, 1) = wrapped(vortex(x, y));
        }
    zentrix::host::write_npy(bench / "v.npy", *volume);
    EXPECT_THAT(bench.zentrix("unwrap v.npy -o u.npy --cuts c.npy").out, HasSubstr("residues: 1 positive"));
    const auto cuts = pixels_of<std::uint8_t>(bench / "c.npy");
    ASSERT_EQ(cuts.size(), 2u * width * height);
    const auto second = cuts.begin() + width * height;
    EXPECT_EQ(std::count(cuts.begin(), second, 1), 0);
    // The shortest way from the vortex to an edge is to the left: 11 pixels above and 11 below the cut.
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            EXPECT_EQ(second[y * width + x], (y == 14 || y == 15) && x < 11) << x << " " << y;
    EXPECT_THAT(bench.zentrix("unwrap v.npy -o u.npy --cuts c.png").err,
                HasSubstr("a volume cannot be shown as one picture"));
}
