#include "host/files/png.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include <stb/stb_image.h>
#pragma GCC diagnostic pop

#include "host/files/file_error.h"
#include "host/pictures/zoom.h"
#include "tests/support/scratch.h"

using namespace zentrix::host;
using support::scratch_folder;

namespace {

using sizes = std::vector<std::uint32_t>;
constexpr float not_a_number = std::numeric_limits<float>::quiet_NaN();

image_ref waves(const std::vector<std::complex<float>>& values)
{
    auto made = image::create("waves", HOST_ELEMENT_COMPLEX64, sizes{static_cast<std::uint32_t>(values.size()), 1});
    std::copy(values.begin(), values.end(), static_cast<std::complex<float>*>(made->data()));
    return made;
}

std::vector<float> displayed(const image& pixels, display_mode mode)
{
    std::vector<float> values(pixels.size(0));
    displayed_row(pixels, 0, mode, values.data());
    return values;
}

/// With the limits that files have.
picture painted(const image& pixels, display_mode mode, palette shades)
{
    picture made;
    paint_picture({pixels, mode, shades, limits_of(pixels, mode)}, made);
    return made;
}

/// All channels of all pixels of a file.
std::vector<int> bytes_of(const std::filesystem::path& file, int expected_channels)
{
    int width = 0, height = 0, channels = 0;
    stbi_uc* const bytes = stbi_load(file.string().c_str(), &width, &height, &channels, 0);
    if (bytes == nullptr || channels != expected_channels) return {};
    std::vector<int> result(bytes, bytes + width * height * channels);
    stbi_image_free(bytes);
    return result;
}

}  // namespace

TEST(Picture, ShowsTheDisplayMode)
{
    const auto pixels = waves({{3, -4}, {0, 1}});
    const float half_turn = std::numbers::pi_v<float> / 2;
    struct row
    {
        const char* word;
        std::vector<float> values;
    };
    for (const auto& [word, values] :
         {row{"real", {3, 0}}, row{"imaginary", {-4, 1}}, row{"modulus", {5, 1}}, row{"log", {std::log(5.0F), 0}},
          row{"phase", {std::atan2(-4.0F, 3.0F), half_turn}}}) {
        const auto got = displayed(*pixels, parse_display_mode(word).value());
        ASSERT_EQ(got.size(), 2u);
        for (std::size_t i = 0; i < 2; ++i) EXPECT_FLOAT_EQ(got[i], values[i]) << word;
    }
    EXPECT_FALSE(parse_display_mode("Real"));
}

/// Values of every kind, odd and even numbers of them, in both precisions.
template <class Real>
void expect_every_number_shown(std::uint32_t code, Real large, Real small)
{
    const Real infinite = std::numeric_limits<Real>::infinity();
    const std::vector<std::complex<Real>> values{
        {0, 0},      {-1, 0},           {-1, Real(-0.0)},         {infinite, -infinite},  {large, 0},
        {0, -small}, {small / 1000, 0}, {Real(-3e-5), Real(1e5)}, {Real(not_a_number), 1}};
    for (const std::size_t count : {values.size(), values.size() - 1}) {
        const auto pixels = image::create("numbers", code, sizes{static_cast<std::uint32_t>(count), 1});
        std::copy_n(values.begin(), count, static_cast<std::complex<Real>*>(pixels->data()));
        const auto phases = displayed(*pixels, display_mode::phase);
        const auto logarithms = displayed(*pixels, display_mode::log_modulus);
        const auto moduli = displayed(*pixels, display_mode::modulus);
        for (std::size_t i = 0; i + 1 < values.size(); ++i) {
            const std::complex<double> value{values[i]};
            EXPECT_FLOAT_EQ(phases[i], static_cast<float>(std::arg(value))) << value;
            EXPECT_FLOAT_EQ(logarithms[i], static_cast<float>(std::log(std::abs(value)))) << value;
            EXPECT_EQ(moduli[i], static_cast<float>(std::abs(value))) << value;
        }
        EXPECT_EQ(std::isnan(phases.back()) && std::isnan(logarithms.back()), count == values.size());
    }
}

TEST(Picture, ShowsEveryNumber)
{
    expect_every_number_shown<double>(HOST_ELEMENT_COMPLEX128, 1e200, 1e-200);
    expect_every_number_shown<float>(HOST_ELEMENT_COMPLEX64, 1e30F, 1e-30F);
}

TEST(Picture, LimitsAreQuantilesOfTheFiniteValues)
{
    std::mt19937 random{3};
    std::normal_distribution<float> normal;
    for (const int count : {1, 2, 999, 1000, 4321}) {
        std::vector<float> values;
        for (int i = 0; i < count; ++i) values.push_back(std::ldexp(normal(random), i % 40 - 20));
        auto sorted = values;
        std::sort(sorted.begin(), sorted.end());
        values.push_back(not_a_number);
        values.push_back(-std::numeric_limits<float>::infinity());
        const auto survey = survey_of([&](const auto& use) {  // in two parts
            use(std::span{values}.first(1));
            use(std::span{values}.subspan(1));
        });
        EXPECT_EQ(survey.quantiles.black, sorted[static_cast<std::size_t>(count / 1000)]) << count;
        EXPECT_EQ(survey.quantiles.white, sorted[static_cast<std::size_t>(count - 1 - count / 1000)]) << count;
        EXPECT_EQ(survey.extremes.black, sorted.front());
        EXPECT_EQ(survey.extremes.white, sorted.back());
        EXPECT_EQ(survey.not_a_number, 1u);
    }
    EXPECT_EQ(survey_of([](const auto& use) { use(std::vector{not_a_number}); }).quantiles.white, 0);
}

/// A sample in a regular grid would see one value of the lattice only.
TEST(Picture, SampledLimitsAreNearTheQuantiles)
{
    const auto lattice = [](int x, int y) { return static_cast<float>(x % 3 == 1 && y % 3 == 2 && (x + y) % 4 == 0); };
    const auto slope = [](int x, int y) { return static_cast<float>(x + 3 * y); };
    struct row
    {
        std::uint32_t width, height;
        std::function<float(int, int)> value;
        float tolerance;
    };
    for (const auto& [width, height, value, tolerance] : {row{1000, 1000, lattice, 0}, row{1001, 701, slope, 20},
                                                          row{1, 400000, slope, 200}, row{300, 400, slope, 0}}) {
        const auto pixels = image::create("large", HOST_ELEMENT_FLOAT32, sizes{width, height});
        for (int y = 0; y < static_cast<int>(height); ++y)
            for (int x = 0; x < static_cast<int>(width); ++x) pixels->at<float>(x, y) = value(x, y);
        const auto exact = limits_of(*pixels, display_mode::real), near = sampled_limits(*pixels, display_mode::real);
        EXPECT_NEAR(near.black, exact.black, tolerance) << width;
        EXPECT_NEAR(near.white, exact.white, tolerance) << width;
        EXPECT_LT(near.black, near.white);
    }
}

TEST(Picture, GreysSpanTheValuesWithoutOutliers)
{
    std::vector<std::complex<float>> values;
    for (int i = 0; i < 5000; ++i) values.emplace_back(static_cast<float>(i % 100), 0.0F);
    values[0] = 1e9F, values[1] = -1e9F, values[2] = not_a_number, values[3] = std::numeric_limits<float>::infinity();
    const auto greys = painted(*waves(values), display_mode::real, palette::grey).bytes;
    ASSERT_EQ(greys.size(), values.size());
    EXPECT_EQ((std::vector<int>{greys[0], greys[1], greys[2], greys[3]}), (std::vector<int>{255, 0, 0, 255}));
    for (std::size_t i = 4; i < greys.size(); ++i) ASSERT_EQ(greys[i], std::lround(values[i].real() / 99 * 255)) << i;

    const auto greys_of = [](const image_ref& pixels) {
        return painted(*pixels, display_mode::real, palette::grey).bytes;
    };
    EXPECT_EQ(greys_of(waves({2.0F, 2.000002F, not_a_number})), (std::vector<std::uint8_t>{128, 128, 0}));
    EXPECT_EQ(greys_of(waves({-3e38F, 0.0F, 3e38F})), (std::vector<std::uint8_t>{0, 128, 255}));
}

TEST(Picture, IsReducedToMeansAndEnlargedWithEdges)
{
    const picture grey{3, 2, 1, {0, 90, 240, 30, 60, 120}}, colours{2, 1, 3, {10, 20, 30, 110, 120, 130}};
    struct row
    {
        const picture& from;
        int width, height;
        std::vector<std::uint32_t> pixels;
    };
    for (const auto& [from, width, height, pixels] :
         {row{grey, 3, 2, {0, 0x5A5A5A, 0xF0F0F0, 0x1E1E1E, 0x3C3C3C, 0x787878}},
          row{grey, 2, 1, {0x232323, 0x919191}},  // (0 + 90/2 + 30 + 60/2) / 3 and (90/2 + 240 + 60/2 + 120) / 3
          row{grey, 1, 2, {0x6E6E6E, 0x464646}}, row{colours, 1, 1, {0x3C4650}},
          row{colours, 4, 2, {0x0A141E, 0x0A141E, 0x6E7882, 0x6E7882, 0x0A141E, 0x0A141E, 0x6E7882, 0x6E7882}}}) {
        std::vector<std::uint32_t> zoomed(static_cast<std::size_t>(width * height));
        zoom(from, width, height, zoomed.data());
        EXPECT_EQ(zoomed, pixels) << width;
    }
    const auto blocks = image::create("large", HOST_ELEMENT_FLOAT32, sizes{800, 800});  // for several threads
    std::vector<std::uint32_t> expected(160000), zoomed(160000);
    for (std::uint32_t y = 0; y < 800; ++y)
        for (std::uint32_t x = 0; x < 800; ++x) {
            const std::uint32_t shade = (x / 2 + y / 2 * 7) % 256;
            blocks->at<float>(x, y) = static_cast<float>(shade);
            expected[y / 2 * 400 + x / 2] = shade * 0x010101U;
        }
    picture large;
    paint_picture({*blocks, display_mode::real, palette::grey, {0, 255}}, large);
    zoom(large, 400, 400, zoomed.data());
    EXPECT_EQ(zoomed, expected);
}

TEST(Picture, FilesHoldTheSamePixelsAndVolumesAreRefused)
{
    const scratch_folder folder;
    std::mt19937 random{3};
    auto wave = image::create("wave", HOST_ELEMENT_COMPLEX64, sizes{301, 403});  // a noisy ramp, noise, blank rows
    for (int i = 0; i < 301 * 403; ++i) {
        const int x = i % 301, y = i / 301;
        const float noise = static_cast<float>(random()) * 1e-9F;
        const float turns = y < 130 ? static_cast<float>(x + y) * 5e-3F + noise * 0.05F : noise;
        wave->at<std::complex<float>>(x, y) = y > 300 ? 0.0F : std::polar(1.0F, turns);
    }
    for (const palette shades : {palette::grey, palette::cyclic}) {
        write_png(folder / "a.png", *wave, display_mode::phase, shades);
        const picture whole = painted(*wave, display_mode::phase, shades);
        EXPECT_EQ(bytes_of(folder / "a.png", whole.channels),
                  (std::vector<int>{whole.bytes.begin(), whole.bytes.end()}));
        write_png(folder / "b.png", whole, read_png_texts(folder / "a.png"));
        EXPECT_TRUE(folder.read("a.png") == folder.read("b.png"));
    }
    const auto volume = image::create("v", HOST_ELEMENT_FLOAT32, sizes{2, 2, 2});
    EXPECT_THROW(write_png(folder / "c.png", *volume, display_mode::real), file_error);
    EXPECT_EQ(folder.files(), (std::vector<std::string>{"a.png", "b.png"}));
}
