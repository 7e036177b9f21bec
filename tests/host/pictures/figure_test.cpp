#include "host/pictures/figure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/files/file_error.h"
#include "host/files/png.h"
#include "host/objects/value.h"
#include "host/pictures/scale_bar.h"
#include "tests/support/scratch.h"

using namespace zentrix::host;

namespace {

constexpr float not_a_number = std::numeric_limits<float>::quiet_NaN();

/// A ramp from 0 to 1 with one pixel that is not a number.
image_ref ramp(std::uint32_t width, std::uint32_t height)
{
    const std::uint32_t sizes[] = {width, height};
    auto made = image::create("ramp", HOST_ELEMENT_FLOAT32, sizes);
    for (std::uint32_t i = 0; i < width * height; ++i)
        static_cast<float*>(made->data())[i] = static_cast<float>(i) / static_cast<float>(width * height - 1);
    made->at<float>(1, 0) = not_a_number;
    calibration about;
    about.axes[0] = about.axes[1] = {0.5, 0, "nm"};
    made->set_scale(about);
    return made;
}

picture painted(figure&& shown)
{
    picture all{shown.width(), shown.height(), shown.channels(), {}};
    const auto row_bytes = static_cast<std::size_t>(all.width) * static_cast<std::size_t>(all.channels);
    all.bytes.resize(row_bytes * static_cast<std::size_t>(all.height));
    for (std::size_t y = 0; y < static_cast<std::size_t>(all.height); ++y)
        shown.paint_next_row(&all.bytes[y * row_bytes]);
    return all;
}

rgb pixel(const picture& from, int x, int y)
{
    const std::uint8_t* const bytes = &from.bytes[static_cast<std::size_t>((y * from.width + x) * 3)];
    return {bytes[0], bytes[1], bytes[2]};
}

figure_style real_style()
{
    figure_style style;
    style.shown = display_mode::real;
    return style;
}

}  // namespace

TEST(ScaleBar, HasARoundLength)
{
    struct row
    {
        axis_scale along;
        double longest, pixels;
        const char* label;
    };
    for (const auto& [along, longest, pixels, label] :
         {row{{0.02, 0, "nm"}, 150, 100, "2 nm"}, row{{0.02, 0, "nm"}, 20, 10, "0.2 nm"},
          row{{0.02, 0, "nm"}, 4.9, 2.5, "50 pm"}, row{{0.1, 0, "nm"}, 50, 50, "5 nm"},
          row{{-0.91975, 0, "nm"}, 153, 100 / 0.91975, "100 nm"}, row{{6900, 0, "nm"}, 153, 1e6 / 6900, "1 mm"},
          row{{2.5, 0, "Å"}, 100, 80, "20 nm"}, row{{0.02, 0, "µm"}, 120, 100, "2 µm"},
          row{{0.0066127, 0, "1/nm"}, 300, 1 / 0.0066127, "1 nm⁻¹"}, row{{3, 0, ""}, 10, 20.0 / 3, "20"},
          row{{0, 0, "nm"}, 100, 0, ""}, row{{std::nan(""), 0, "nm"}, 100, 0, ""}}) {
        const auto bar = round_bar(along, longest);
        EXPECT_EQ(bar.label, label);
        EXPECT_NEAR(bar.pixels, pixels, 1e-9) << label;
        EXPECT_LE(bar.pixels, longest * 1.000001) << label;
    }
}

TEST(Figure, LimitsFollowTheRule)
{
    struct row
    {
        const char* name;
        display_mode mode;
        grey_limits quantiles, expected;
    };
    for (const auto& [name, mode, quantiles, expected] :
         {row{"flat modulus", display_mode::modulus, {0.985F, 1}, {0, 1.25F}},
          row{"weak modulus", display_mode::modulus, {0.97F, 1}, {0.97F, 1}},
          row{"zero modulus", display_mode::modulus, {0, 0}, {0, 0}},
          row{"flat image", display_mode::real, {100, 100.0005F}, {100, 100}},
          row{"image", display_mode::real, {100, 100.5F}, {100, 100.5F}},
          row{"flat logarithm", display_mode::log_modulus, {-2e-6F, 3e-6F}, {-2e-6F, -2e-6F}},
          row{"phase", display_mode::phase, {-2e-5F, 3e-5F}, {-2e-5F, 3e-5F}}}) {
        const auto limits = automatic_limits(quantiles, mode);
        EXPECT_FLOAT_EQ(limits.black, expected.black) << name;
        EXPECT_FLOAT_EQ(limits.white, expected.white) << name;
    }
    const auto pixels = ramp(60, 50);
    figure_style style = real_style();
    EXPECT_NEAR(figure(*pixels, style).range().limits.white, 0.999F, 1e-3F);
    style.rule = limits_rule::full;
    EXPECT_EQ(figure(*pixels, style).range().limits.white, 1.0F);
    style.rule = limits_rule::given;
    style.limits = {0.25F, 0.75F};
    EXPECT_EQ(figure(*pixels, style).range().limits.black, 0.25F);
    style.shades = palette::wave;  // the brightness of a wave is that of its modulus, from 0
    EXPECT_EQ(figure(*pixels, style).range().limits.black, 0.0F);
    EXPECT_EQ(figure(*pixels, style).range().limits.white, 0.75F);
    const auto edge = image::create("bright edge", HOST_ELEMENT_FLOAT32, {{32, 48}});
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 32; ++x) edge->at<float>(x, y) = x < 2 ? 9.0F : 0.0F;
    style.rule = limits_rule::automatic;
    EXPECT_EQ(figure(*edge, style).range().limits.white, 9.0F) << "nothing else";
    edge->at<float>(2, 3) = edge->at<float>(29, 44) = 1;
    EXPECT_EQ(figure(*edge, style).range().limits.white, 1.0F);
}

TEST(Figure, AnnotationsLeaveThePixelsAsTheyAre)
{
    const auto pixels = ramp(100, 80);
    figure_style style = real_style();
    const picture plain = painted({*pixels, style});
    ASSERT_EQ(plain.channels, 3);  // because of the missing pixel
    EXPECT_EQ(pixel(plain, 1, 0), missing_in_grey);
    const auto grey = static_cast<std::uint8_t>(std::lround(255 * 0.5));
    EXPECT_NEAR(pixel(plain, 0, 40)[0], grey, 1);

    style.scale_bar = style.colour_bar = true;
    style.title = "Phase \u03c8, \xff";
    for (const int zoom : {1, 3}) {
        style.enlargement = zoom;
        const picture shown = painted({*pixels, style});
        int left = 0, top = 0;  // of the image: the missing pixel is the second
        while (pixel(shown, left, top) != missing_in_grey)
            if (++left == shown.width) left = 0, ++top;
        left -= zoom;
        for (int y = 0; y < 50; y += 7)  // the scale bar is below
            for (int x = 0; x < 100; x += 9)
                for (const int part : {0, zoom - 1})
                    EXPECT_EQ(pixel(shown, left + x * zoom + part, top + y * zoom + part), pixel(plain, x, y))
                        << x << ' ' << y;
        const int bar_row = top + 80 * zoom - 10;
        int white = 0;
        for (int x = left; x < left + 100 * zoom; ++x) white += pixel(shown, x, bar_row) == white_paper ? 1 : 0;
        EXPECT_NEAR(white, 20 * zoom, 1) << zoom;  // 10 nm
    }
    EXPECT_EQ(painted({*ramp(64, 64), style}).channels, 3);
    style.enlargement = 0;
    EXPECT_GT(painted({*pixels, style}).width, 500);
}

TEST(Figure, BreaksLongTitlesAtBlanks)
{
    const auto pixels = ramp(300, 80);
    figure_style style = real_style();
    style.enlargement = 1;
    style.title = "One line";
    const picture one = painted({*pixels, style});
    style.title = "A title of so many words that they do not fit into one line";
    const picture two = painted({*pixels, style});
    EXPECT_EQ(two.width, one.width);
    EXPECT_GT(two.height, one.height + 10);
    const int first_image_row = two.height - one.height + 20;
    for (int y = 0; y < first_image_row; ++y) EXPECT_EQ(pixel(two, two.width - 2, y), white_paper) << y;
}

TEST(Figure, RefusesWhatCannotBeShown)
{
    figure_style style = real_style();
    style.scale_bar = true;
    const auto pixels = ramp(2000, 2);
    pixels->set_scale({});
    EXPECT_THROW((figure{*pixels, style}), script_error);
    style.scale_bar = false;
    style.enlargement = 64;
    EXPECT_THROW((figure{*pixels, style}), script_error);
}

TEST(Figure, TextsAreReadBackFromTheFile)
{
    const support::scratch_folder folder;
    const picture_texts texts{{"Command", "zentrix correct wave.npy"}, {"Author", "J. Böhm, 2 µm"}, {"Empty", ""}};
    figure_style style = real_style();
    style.rule = limits_rule::given;
    style.limits = {-0.1F, 1e-7F};
    const auto range = write_png(folder / "a.png", *ramp(9, 9), style, texts);
    picture_texts expected = texts;
    expected.push_back({"Shown", "real"});
    expected.push_back({"Limits", "-0.1,1e-07"});
    EXPECT_EQ(read_png_texts(folder / "a.png"), expected);
    EXPECT_EQ(limits_in(folder / "a.png", range).white, 1e-7F);

    shown_range other = range;
    other.shown = display_mode::phase;
    EXPECT_THROW(limits_in(folder / "a.png", other), file_error);
    write_png(folder / "b.png", picture{1, 1, 1, {0}});
    EXPECT_THROW(limits_in(folder / "b.png", range), file_error);
    const std::string whole = folder.read("a.png");
    for (const std::size_t length : {0u, 7u, 8u, 20u, 60u, 100u}) {
        folder.write("cut.png", whole.substr(0, length));
        EXPECT_THROW(read_png_texts(folder / "cut.png"), file_error) << length;
    }
}
