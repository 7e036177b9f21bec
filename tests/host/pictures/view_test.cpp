// What a window shows of an image: zoom and pan, annotations, limits in a histogram, texts on pixels.
#include "host/pictures/histogram_strip.h"
#include "host/pictures/overlay.h"
#include "host/pictures/pointer_text.h"
#include "host/pictures/view_map.h"
#include "host/pictures/zoom.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <random>
#include <vector>

using namespace zentrix::host;

namespace {

view_map made(extent image, extent area)
{
    view_map map;
    map.resize(image, area);
    return map;
}

TEST(ViewMap, KeepsThePointUnderTheMouseWhenItZooms)
{
    auto map = made({1024, 512}, {640, 480});
    EXPECT_TRUE(map.is_fitted());
    EXPECT_EQ(map.zoom(), 0.625);
    const pixel_box fitting = map.whole();
    EXPECT_EQ(fitting.left, 0);
    EXPECT_EQ(fitting.top, 80);
    const point at{200, 240};
    std::vector<double> zooms;
    for (int i = 0; i < 20; ++i) {
        const point before = map.in_image(at);
        map.step(1, at);
        zooms.push_back(map.zoom());
        const point now = map.in_image(at);
        if (map.zoom() < 1) continue;  // does not cover the area in both directions
        EXPECT_NEAR(now.x, before.x, 1.01 / map.zoom()) << map.zoom();
        EXPECT_NEAR(now.y, before.y, 1.01 / map.zoom()) << map.zoom();
    }
    EXPECT_NEAR(zooms[0], std::sqrt(0.5), 1e-12);
    EXPECT_EQ(zooms[1], 1);
    EXPECT_EQ(zooms[3], 2);
    EXPECT_EQ(zooms.back(), 64) << "the limit";
    for (int i = 0; i < 40; ++i) map.step(-1, at);
    EXPECT_EQ(map.zoom(), 0.625) << "not smaller than fitted";
    EXPECT_EQ(map.whole().left, fitting.left);
    EXPECT_EQ(map.whole().top, fitting.top);
}

TEST(ViewMap, PansByScreenPixelsUpToTheEdges)
{
    auto map = made({100, 100}, {50, 200});
    map.set_zoom(1, map.middle_of_area());
    EXPECT_EQ(map.whole().left, -25);
    EXPECT_EQ(map.whole().top, 50) << "in the middle where it is smaller";
    map.pan(10, 10);
    EXPECT_EQ(map.whole().left, -15);
    EXPECT_EQ(map.whole().top, 50);
    EXPECT_EQ(map.pixel_at(0, 50)->x, 15U);
    EXPECT_EQ(map.pixel_at(49, 149)->y, 99U);
    EXPECT_FALSE(map.pixel_at(10, 49));
    EXPECT_FALSE(map.pixel_at(10, 150));
    map.pan(1000, 0);
    EXPECT_EQ(map.whole().left, 0);
    map.pan(-1000, 0);
    EXPECT_EQ(map.whole().right, 50);
    const point middle = map.in_image({25, 100});
    map.resize({100, 100}, {70, 90});
    EXPECT_NEAR(map.in_image({35, 45}).y, middle.y, 0.5) << "a window of another size keeps the middle";
    EXPECT_FALSE(map.is_fitted());
    map.fit();
    map.resize({100, 100}, {300, 400});
    EXPECT_EQ(map.zoom(), 3);
}

TEST(Zoom, APartHasThePixelsOfTheWhole)
{
    std::mt19937 random{1};
    for (const int channels : {1, 3}) {
        picture from{23, 17, channels, std::vector<std::uint8_t>(static_cast<std::size_t>(23 * 17 * channels))};
        for (auto& byte : from.bytes) byte = static_cast<std::uint8_t>(random());
        for (const extent size : {extent{70, 51}, extent{11, 9}, extent{23, 17}}) {
            std::vector<std::uint32_t> all(static_cast<std::size_t>(size.width * size.height)), some(4 * 5);
            zoom(from, size.width, size.height, all.data());
            const pixel_box part{3, 2, 7, 7};
            zoom_part(from, {-2, -1, size.width - 2, size.height - 1}, part, some.data());
            for (int y = 0; y < 5; ++y)
                for (int x = 0; x < 4; ++x)
                    EXPECT_EQ(some[static_cast<std::size_t>(4 * y + x)],
                              all[static_cast<std::size_t>((y + 3) * size.width + x + 5)]);
        }
    }
}

TEST(Overlay, RingsAreAtTheirFrequencies)
{
    EXPECT_EQ(ring_frequencies(10), (std::vector<double>{2, 4, 6, 8, 10}));
    EXPECT_EQ(ring_frequencies(12.5), (std::vector<double>{5, 10}));
    EXPECT_EQ(ring_frequencies(0.49).size(), 4U);
    EXPECT_TRUE(ring_frequencies(0).empty());
    // 400 x 200 pixels of 0.05 nm: 10 /nm at the edges, rings as ellipses around pixel (200, 100).
    const extent spectrum{400, 200};
    const auto scale = frequencies_of(spectrum, 0.05);
    const auto map = made(spectrum, spectrum);
    overlay rings;
    add_frequency_rings(rings, map, scale, 12);
    std::vector<std::uint32_t> pixels(400 * 200, 0x404040);
    rings.paint({0, 0, 400, 200}, pixels.data());
    for (int ring = 2; ring <= 8; ring += 2)
        for (const auto& [x, y] : {std::pair{200 + 20 * ring, 100}, {200 - 20 * ring, 100}, {200, 100 - 10 * ring}})
            EXPECT_GT(pixels[static_cast<std::size_t>(400 * y + x)] & 255, 0x80U) << ring;
    EXPECT_EQ(pixels[400 * 100 + 200], 0x404040U);
    EXPECT_EQ(pixels[400 * 100 + 220], 0x404040U);
}

TEST(HistogramStrip, LimitsAreDraggedAndKeepTheirOrder)
{
    const grey_limits limits{-1, 3};
    const histogram_strip strip{400, 50, 10, {-2, 5}, limits};
    for (const float value : {-2.0F, 0.3F, 5.0F}) EXPECT_NEAR(strip.value_at(strip.place_of(value)), value, 1e-5);
    EXPECT_EQ(strip.handle_at(strip.place_of(-1) + 4, limits), limit_handle::black);
    EXPECT_EQ(strip.handle_at(strip.place_of(3) - 4, limits), limit_handle::white);
    EXPECT_EQ(strip.handle_at(strip.place_of(1), limits), limit_handle::both);
    EXPECT_EQ(strip.handle_at(strip.place_of(4.5), limits), limit_handle::none);
    const auto is = [](grey_limits now, float black, float white) {
        EXPECT_NEAR(now.black, black, 0.03);
        EXPECT_NEAR(now.white, white, 0.03);
        EXPECT_LT(now.black, now.white);
    };
    is(strip.dragged(limit_handle::black, limits, -1, 0.5), 0.5, 3);
    is(strip.dragged(limit_handle::black, limits, -1, 4), 3, 3);
    is(strip.dragged(limit_handle::white, limits, 3, -3), -1, -1);
    is(strip.dragged(limit_handle::both, limits, 1, 2), 0, 4);
    // The counts are between the axis' ends; the fullest bin is where it should be.
    std::vector<std::uint32_t> counts(70);
    counts[35] = 100;
    const auto painted = strip.paint(counts, limits);
    const auto at = [&](float value, int y) {
        return painted.bytes[static_cast<std::size_t>(3 * (y * 400 + static_cast<int>(strip.place_of(value))))];
    };
    EXPECT_LT(at(1.55F, 30), 200);
    EXPECT_EQ(at(1.35F, 30), 255);
    EXPECT_EQ(at(4, 47), 255) << "the greys below";
    EXPECT_EQ(at(-1.5, 47), 0);
}

TEST(PointerText, SaysValueAndPlace)
{
    const auto wave = image::create("wave", HOST_ELEMENT_COMPLEX64, {{2, 1}});
    wave->at<std::complex<float>>(1, 0) = {0, -2};
    const std::pair<display_mode, const char*> texts[] = {{display_mode::real, "real 0"},
                                                          {display_mode::imaginary, "imaginary −2"},
                                                          {display_mode::modulus, "modulus 2"},
                                                          {display_mode::log_modulus, "ln modulus 0.6931"},
                                                          {display_mode::phase, "phase −1.571 rad"}};
    for (const auto& [mode, text] : texts) EXPECT_EQ(value_text(*wave, {1, 0}, mode), text);
    EXPECT_EQ(value_text(*wave, {0, 0}, display_mode::log_modulus), "ln modulus −∞");
    EXPECT_EQ(place_text({3, 7}, 0.05), "x 0.15 nm, y 0.35 nm (3, 7)");
    EXPECT_EQ(place_text({3, 7}, 0), "(3, 7)");
    EXPECT_EQ(frequency_text(-3, -4), "5 /nm (0.2 nm), 233°");
}

}  // namespace
