#include "host/files/png.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
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
        const auto got = displayed_values(*pixels, parse_display_mode(word).value());
        ASSERT_EQ(got.size(), 2u);
        for (std::size_t i = 0; i < 2; ++i) EXPECT_FLOAT_EQ(got[i], values[i]) << word;
    }
    EXPECT_FALSE(parse_display_mode("Real"));
}

TEST(Picture, PhasesAndLogarithmsAcceptEveryNumber)
{
    const double infinite = std::numeric_limits<double>::infinity();
    const std::vector<std::complex<double>> values{{0, 0},           {-1, 0},      {-1, -0.0},  {infinite, -infinite},
                                                   {1e200, 0},       {0, -1e-200}, {1e-310, 0}, {-3e-5, 1e5},
                                                   {not_a_number, 1}};
    for (const std::size_t count : {values.size(), values.size() - 1}) {  // odd and even
        const auto pixels =
            image::create("numbers", HOST_ELEMENT_COMPLEX128, sizes{static_cast<std::uint32_t>(count), 1});
        std::copy_n(values.begin(), count, static_cast<std::complex<double>*>(pixels->data()));
        const auto phases = displayed_values(*pixels, display_mode::phase);
        const auto logarithms = displayed_values(*pixels, display_mode::log_modulus);
        for (std::size_t i = 0; i + 1 < values.size(); ++i) {
            EXPECT_FLOAT_EQ(phases[i], static_cast<float>(std::arg(values[i]))) << values[i];
            EXPECT_FLOAT_EQ(logarithms[i], static_cast<float>(std::log(std::abs(values[i])))) << values[i];
        }
        EXPECT_EQ(std::isnan(phases.back()) && std::isnan(logarithms.back()), count == values.size());
    }
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
        const auto limits = robust_limits([&](const auto& use) {  // in two parts
            use(std::span{values}.first(1));
            use(std::span{values}.subspan(1));
        });
        EXPECT_EQ(limits.black, sorted[static_cast<std::size_t>(count / 1000)]) << count;
        EXPECT_EQ(limits.white, sorted[static_cast<std::size_t>(count - 1 - count / 1000)]) << count;
    }
    EXPECT_EQ(robust_limits([](const auto& use) { use(std::vector{not_a_number}); }).white, 0);
}

TEST(Picture, GreysSpanTheValuesWithoutOutliers)
{
    const scratch_folder folder;
    std::vector<std::complex<float>> values;
    for (int i = 0; i < 5000; ++i) values.emplace_back(static_cast<float>(i % 100), 0.0F);
    values[0] = 1e9F, values[1] = -1e9F, values[2] = not_a_number, values[3] = std::numeric_limits<float>::infinity();
    write_png(folder / "grey.png", *waves(values), display_mode::real);
    const auto greys = bytes_of(folder / "grey.png", 1);
    ASSERT_EQ(greys.size(), values.size());
    EXPECT_EQ((std::vector<int>{greys.begin(), greys.begin() + 4}), (std::vector<int>{255, 0, 0, 255}));
    for (std::size_t i = 4; i < greys.size(); ++i) ASSERT_EQ(greys[i], std::lround(values[i].real() / 99 * 255)) << i;

    write_png(folder / "flat.png", *waves({2.0F, 2.000002F, not_a_number}), display_mode::real);
    EXPECT_EQ(bytes_of(folder / "flat.png", 1), (std::vector<int>{128, 128, 0}));

    write_png(folder / "wide.png", *waves({-3e38F, 0.0F, 3e38F}), display_mode::real);
    EXPECT_EQ(bytes_of(folder / "wide.png", 1), (std::vector<int>{0, 128, 255}));
}

TEST(Picture, ColoursOfPhasesAreCyclic)
{
    const scratch_folder folder;
    const auto turned = [](double degrees) {
        return std::complex<float>{std::polar(2.0, degrees * std::numbers::pi / 180)};
    };
    write_png(folder / "phase.png", *waves({turned(0), turned(120), turned(240), turned(180), turned(-180)}),
              display_mode::phase, palette::cyclic);
    EXPECT_EQ(bytes_of(folder / "phase.png", 3),
              (std::vector<int>{255, 64, 64, 64, 255, 64, 64, 64, 255, 0, 191, 191, 0, 191, 191}));
}

TEST(Picture, KeepsTheOrderOfRowsAndRefusesVolumes)
{
    const scratch_folder folder;
    auto pixels = image::create("two rows", HOST_ELEMENT_UINT8, sizes{3, 2});
    for (int i = 0; i < 6; ++i) pixels->at<std::uint8_t>(i % 3, i / 3) = static_cast<std::uint8_t>(51 * i);
    write_png(folder / "rows.png", *pixels, display_mode::real);
    EXPECT_EQ(bytes_of(folder / "rows.png", 1), (std::vector<int>{0, 51, 102, 153, 204, 255}));
    EXPECT_THROW(
        write_png(folder / "volume.png", *image::create("v", HOST_ELEMENT_FLOAT32, sizes{2, 2, 2}), display_mode::real),
        file_error);
    EXPECT_EQ(folder.files(), std::vector<std::string>{"rows.png"});
}
