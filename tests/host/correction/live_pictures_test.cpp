// Pictures of a live correction: the cut picture is the low-passed wave, the full one has the bits of the result.
#include "host/correction/live_pictures.h"

#include "host/correction/multiply_spectrum.h"
#include "host/correction/transfer_pictures.h"
#include "host/engine/library.h"
#include "host/fft/fft.h"
#include "lens/electron.h"
#include "tests/support/companion_package.h"
#include "tests/support/same_bytes.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <span>
#include <thread>

namespace {

using namespace zentrix::host;
using pixel = std::complex<float>;
namespace lens = zentrix::lens;

std::vector<pixel> pixels_of(const image& wave)
{
    const auto* const begin = static_cast<const pixel*>(wave.data());
    return {begin, begin + wave.count()};
}

class LivePictures : public testing::Test
{
  protected:
    static image_ref noise(std::uint32_t width, std::uint32_t height)
    {
        auto wave = image::create("noise", HOST_ELEMENT_COMPLEX64, {{width, height}});
        std::mt19937 random{1};
        std::normal_distribution<float> normal{0, 0.3F};
        auto* const pixels = static_cast<pixel*>(wave->data());
        std::generate_n(pixels, wave->count(), [&] { return pixel{1 + normal(random), normal(random)}; });
        return wave;
    }

    static lens::optics aberrated(double c1)
    {
        lens::optics setup;
        setup.wavelength_nm = lens::electron_wavelength(300);
        setup.pixel_nm = 0.05;
        setup.lens[lens::coefficient::C1] = {c1, 0};
        setup.lens[lens::coefficient::A1] = {12, 30};
        setup.lens[lens::coefficient::B2] = {200, 80};
        setup.spread = {3, 0.2, 0.02};
        return setup;
    }

    engine engine_{support::with_companion_package()};
    library library_{engine_, ZENTRIX_LIBRARY_FILE};
};

/// The wave at a place between its pixels, from the middle of its spectrum.
std::complex<double> low_passed(const std::vector<pixel>& spectrum, int width, int height, const image& shown, int i,
                                int j)
{
    const int columns = static_cast<int>(shown.size(0)), rows = static_cast<int>(shown.size(1));
    const double x = (i + 0.5) / columns - 0.5 / width, y = (j + 0.5) / rows - 0.5 / height;
    std::complex<double> sum;
    for (int v = -(rows / 2); v < rows - rows / 2; ++v)
        for (int u = -(columns / 2); u < columns - columns / 2; ++u)
            sum += std::complex<double>{spectrum[static_cast<std::size_t>((v + height / 2) * width + u + width / 2)]} *
                   std::polar(1.0, 2 * std::numbers::pi * (u * x + v * y));
    return sum / (static_cast<double>(width) * height);
}

TEST_F(LivePictures, ThePictureAtTheScreensResolutionIsTheLowPassedWave)
{
    const struct
    {
        std::uint32_t width, height;
        double zoom;
        std::uint32_t columns, rows;
    } cases[] = {{128, 128, 0.4, 54, 54}, {120, 90, 0.32, 40, 30}, {101, 101, 0.3, 32, 32}, {89, 64, 0.5, 45, 32}};
    for (const auto& [width, height, zoom, columns, rows] : cases) {
        live_correction correction{engine_, noise(width, height)};
        live_pictures pictures{correction};
        correction.set(aberrated(-40), lens::damping::on);
        const auto small = pictures.wait_for({.zoom = zoom});
        EXPECT_FALSE(small.is_full);
        ASSERT_EQ(small.values->size(0), columns) << width;
        ASSERT_EQ(small.values->size(1), rows) << height;
        auto spectrum = pixels_of(*correction.result());
        forward_fft(spectrum.data(), width, height);
        for (int k = 0; k < 20; ++k) {
            const int i = k * 7 % static_cast<int>(columns), j = k * 5 % static_cast<int>(rows);
            const auto expected =
                low_passed(spectrum, static_cast<int>(width), static_cast<int>(height), *small.values, i, j);
            const auto found = std::complex<double>{
                pixels_of(*small.values)[static_cast<std::size_t>(j) * columns + static_cast<std::size_t>(i)]};
            EXPECT_LT(std::abs(found - expected), 2e-5) << width << " x " << height << " at " << i << ", " << j;
        }
    }
}

TEST_F(LivePictures, ThePictureOfFullResolutionHasTheBitsOfTheResultAndBecomesIt)
{
    const auto wave = noise(100, 90);
    live_correction alone{engine_, wave}, correction{engine_, wave};
    live_pictures pictures{correction};
    for (const double c1 : {-40.0, 25.0}) {
        alone.set(aberrated(c1), lens::damping::off);
        correction.set(aberrated(c1), lens::damping::off);
        const auto full = pictures.wait_for({.mode = display_mode::phase, .zoom = 0.1, .full = true});
        EXPECT_TRUE(full.is_full);
        EXPECT_TRUE(support::same_bytes(pixels_of(*full.values), pixels_of(*alone.result())));
        EXPECT_EQ(correction.result().get(), full.values.get()) << "not computed twice";
        picture painted;
        const auto limits = limits_of(*full.values, display_mode::phase);
        paint_picture({*full.values, display_mode::phase, palette::grey, limits}, painted);
        EXPECT_EQ(full.shades.bytes, painted.bytes);
    }
    for (const double zoom : {0.3, 0.2, 0.3, 1.0}) EXPECT_EQ(pictures.wait_for({.zoom = zoom}).failure, "") << zoom;
    const auto kept = pixels_of(*correction.result());
    const auto before = pictures.wait_for({.uncorrected = true, .full = true});
    EXPECT_TRUE(support::same_bytes(pixels_of(*before.values), pixels_of(*correction.source())));
    EXPECT_TRUE(support::same_bytes(pixels_of(*correction.result()), kept)) << "the source is not the result";

    const auto shown = pictures.wait_for({.full = true});
    correction.set(aberrated(3), lens::damping::off);
    static_cast<void>(correction.result());
    EXPECT_TRUE(support::same_bytes(pixels_of(*shown.values), kept)) << "a picture that is in use does not change";
}

TEST_F(LivePictures, AppliedCorrectionsHaveTheBitsOfSuccessiveOnesComputedBeforeOrWhenNeeded)
{
    const auto wave = noise(100, 90);
    const auto expected = wave->clone();
    for (const double c1 : {-40.0, 25.0, 3.0})
        multiply_spectrum(engine_, expected,
                          lens::arguments_for(aberrated(c1), 100, 90, lens::direction::remove, lens::damping::on));
    live_correction correction{engine_, wave};
    live_pictures pictures{correction};
    const auto first = correction.spectrum();
    for (const bool computed_before : {false, true}) {
        correction.use_spectrum(first);
        for (const double c1 : {-40.0, 25.0}) {
            correction.set(aberrated(c1), lens::damping::on);
            if (computed_before) static_cast<void>(pictures.wait_for({.full = true}));
            correction.accept();
        }
        correction.set(aberrated(3), lens::damping::on);
        EXPECT_TRUE(support::same_bytes(pixels_of(*pictures.wait_for({.full = true}).values), pixels_of(*expected)));
    }
}

TEST_F(LivePictures, TheLibraryMultipliesOnSeveralThreadsAndRefusesTheRest)
{
    const auto spectrum = noise(64, 48);
    const auto arguments = lens::arguments_for(aberrated(-40), 64, 48, lens::direction::remove, lens::damping::on);
    const auto expected = spectrum->clone();
    multiply_by_transfer(engine_, expected, expected, arguments);
    std::atomic<int> right = 0, refused = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([&] {
                const auto product = spectrum->clone();
                for (int i = 0; i < 20; ++i) {
                    multiply_by_transfer(engine_, spectrum, product, arguments);
                    right += pixels_of(*product) == pixels_of(*expected);
                }
                try {
                    engine_.call("ZXGetMaxThreads", {});
                } catch (const script_error&) {
                    ++refused;
                }
            });
        const auto plane = image::create("plane", HOST_ELEMENT_FLOAT32, {{64, 48}});
        for (int i = 0; i < 20; ++i)
            engine_.call("ZXMedianFilter", {plane, std::int64_t{1}, script_value{}, std::int64_t{1}});
    }
    EXPECT_EQ(right, 80);
    EXPECT_EQ(refused, 4);
    const auto report = engine_.report();
    EXPECT_TRUE(report.locks.empty() && report.violations.empty()) << report.text();
}

TEST_F(LivePictures, AFailureIsReportedOnceUntilTheCorrectionChanges)
{
    live_correction correction{engine_, noise(32, 32)};
    live_pictures pictures{correction};
    correction.set(aberrated(1), lens::damping::off);
    engine_.faults().plan({fault_point::call, 0, "void ImageDataChanged( ImageRef )"});
    const auto first = pictures.wait_for({});
    engine_.faults().clear();
    EXPECT_EQ(first.failure, "This host call was made to fail.");
    EXPECT_FALSE(first.is_known);
    EXPECT_TRUE(pictures.wait_for({}).is_known);
    EXPECT_THROW(correction.result(), script_error);
    correction.set(aberrated(2), lens::damping::off);
    EXPECT_EQ(pictures.wait_for({}).failure, "");
}

TEST_F(LivePictures, AWaveThatIsTooLargeForSinglePrecisionHasNoPictureAndNoResult)
{
    const auto wave = noise(16, 16);
    std::ranges::for_each(std::span{static_cast<pixel*>(wave->data()), wave->count()}, [](pixel& p) { p *= 2e37F; });
    live_correction correction{engine_, wave};
    live_pictures pictures{correction};
    correction.set(aberrated(3), lens::damping::off);
    EXPECT_THAT(pictures.wait_for({.zoom = 0.5}).failure, testing::StartsWith("The result is not finite"));
    correction.set(aberrated(4), lens::damping::off);
    EXPECT_THROW(correction.result(), script_error);
}

TEST_F(LivePictures, TheTransferFunctionHasItsRangeInEachResolution)
{
    transfer_pictures pictures{engine_, 128, 128, [] { return aberrated(-30); }};
    const auto full = pictures.wait_for({.mode = display_mode::real, .full = true});
    const auto half = pictures.wait_for({.mode = display_mode::real, .zoom = 0.5});
    ASSERT_EQ(half.values->size(0), 64U);
    for (std::uint32_t y = 0; y < 64; y += 7)
        for (std::uint32_t x = 0; x < 64; x += 5)
            EXPECT_NEAR(static_cast<const float*>(half.values->data())[y * 64 + x],
                        static_cast<const float*>(full.values->data())[2 * y * 128 + 2 * x], 2e-4);
}

}  // namespace
