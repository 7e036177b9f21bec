#include "optics/unwrap/goldstein.h"

#include "image/errors.h"
#include "image/interruption.h"
#include "tests/support/same_bytes.h"

#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <random>
#include <tuple>

namespace {

using namespace qorv::optics;
using support::framed;
constexpr double pi = std::numbers::pi;

struct picture
{
    int width, height;
    std::vector<float> pixels;
};

float wrapped(double value) { return static_cast<float>(value - 2 * pi * std::round(value / (2 * pi))); }

picture draw(int width, int height, const std::function<double(int, int)>& value)
{
    picture p{width, height, {}};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) p.pixels.push_back(wrapped(value(x, y)));
    return p;
}

/// A surface with noise of `spread` [rad] on it: 0.76 gives about 1 % residues, 1.06 10 %, 100 a third.
picture noisy(int width, int height, double spread, unsigned seed)
{
    std::mt19937 random{seed};
    std::normal_distribution<double> noise{0, spread};
    return draw(width, height,
                [&](int x, int y) { return 0.1 * x + 6 * std::sin(0.02 * y + 0.01 * x) + noise(random); });
}

picture vortex(int width, int height, double x0, double y0)
{
    return draw(width, height, [=](int x, int y) { return std::atan2(y - y0, x - x0); });
}

std::vector<float> unwrap(goldstein_kernel* kernel, const picture& p, int box_limit)
{
    framed<float> result(p.pixels.size()), scratch(p.pixels.size());
    kernel(p.pixels.data(), result.inside(), p.width, p.height, box_limit, scratch.inside());
    EXPECT_TRUE(result.frame_untouched() && scratch.frame_untouched());
    return result.copy();
}

testing::AssertionResult variants_agree(const picture& p, int box_limit)
{
    return support::same_bytes(support::one_nan(unwrap(unwrap_goldstein_fast, p, box_limit)),
                               support::one_nan(unwrap(unwrap_goldstein_plain, p, box_limit)))
           << " in " << p.width << " x " << p.height << ", box limit " << box_limit;
}

TEST(Goldstein, VariantsGiveTheSameBitsOnLargeImagesAndChangeThemByWholeTurns)
{
    const std::pair<picture, int> rows[] = {
        {noisy(512, 512, 0, 1), 0},      {noisy(512, 512, 0.76, 2), 0},
        {noisy(500, 530, 1.06, 3), 0},   {noisy(512, 512, 100, 4), 0},
        {noisy(512, 512, 1.1, 5), -1},   {vortex(512, 512, 255.3, 255.6), 0},
        {vortex(300, 700, 120.5, 5), 0}, {noisy(2, 3000, 100, 6), 0},
        {noisy(3000, 3, 100, 7), 0},     {noisy(200, 200, 0.76, 8), std::numeric_limits<int>::max()}};
    for (const auto& [p, box_limit] : rows) {
        EXPECT_TRUE(variants_agree(p, box_limit));
        const auto got = unwrap(unwrap_goldstein_plain, p, box_limit);
        for (std::size_t i = 0; i < got.size(); ++i) ASSERT_NEAR(wrapped(got[i] - p.pixels[i]), 0, 1e-3);
    }
}

TEST(Goldstein, SurfaceWithoutResiduesIsRestoredFromItsFirstPixel)
{
    for (const auto& [dx, dy] : {std::pair{0.3, -0.2}, {-1.1, 0.9}, {0., 3.}})
        for (const auto& [width, height] : {std::pair{200, 150}, {1, 300}, {300, 1}, {1, 1}}) {
            const picture p = draw(width, height, [dx = dx, dy = dy](int x, int y) { return 2 + dx * x + dy * y; });
            const auto got = unwrap(unwrap_goldstein_plain, p, 0);
            EXPECT_EQ(got[0], p.pixels[0]);
            for (int i = 0; i < width * height; ++i)
                ASSERT_NEAR(got[i], 2 + dx * (i % width) + dy * (i / width), 2e-3) << i;
        }
}

TEST(Goldstein, CutsAreWhereTheyAreByHand)
{
    // Counter-clockwise as y grows downwards: the loop right, down, left, up sees a positive turn. The side is 3
    // columns away, the bottom 4 rows, so the cut goes left.
    const picture lone = vortex(12, 9, 3.5, 4.5);
    // The residues are two pixels apart: the box of 5 reaches from one to the other.
    const picture dipole =
        draw(20, 20, [](int x, int y) { return std::atan2(y - 9.5, x - 8.5) - std::atan2(y - 9.5, x - 10.5); });
    using pixels = std::vector<std::tuple<int, int, std::uint32_t>>;  // x, y, flags of residues and cuts
    const struct
    {
        const picture& p;
        std::vector<int> box_limits;
        pixels marked;
    } rows[] = {{lone, {1, 5, 0}, {{0, 4, 4}, {1, 4, 4}, {2, 4, 4}, {3, 4, 1 | 4}}},
                {dipole, {5, 0}, {{8, 9, 1}, {9, 9, 4}, {10, 9, 2 | 4}}}};
    for (const auto& [p, box_limits, marked] : rows)
        for (const int box_limit : box_limits) {
            std::vector<float> result(p.pixels.size());
            std::vector<std::uint32_t> flags(p.pixels.size(), ~0u);
            unwrap_goldstein_plain(p.pixels.data(), result.data(), p.width, p.height, box_limit, flags.data());
            pixels found;
            for (int i = 0; i < p.width * p.height; ++i)
                if (flags[i] & 7) found.emplace_back(i % p.width, i / p.width, flags[i] & 7);
            EXPECT_EQ(found, marked) << "box limit " << box_limit;
        }
}

TEST(Goldstein, SwitchSelectsThePlainVariant)
{
    const float phase = 1;
    for (const int use_simd : {1, 0}) {
        qorv::dm::set_use_simd(use_simd);
        float result = 0;
        std::uint32_t scratch = 0;
        unwrap_goldstein(&phase, &result, 1, 1, 0, &scratch);
        EXPECT_EQ(scratch == goldstein_flag::unwrapped, use_simd == 0);
    }
    qorv::dm::read_processor_features();
}

TEST(Goldstein, CanBeInterruptedInCutsAndFill)
{
    for (const picture& p : {noisy(64, 48, 1.06, 1), draw(800, 600, [](int x, int y) { return 0.1 * x + 0.2 * y; })})
        for (goldstein_kernel* kernel : {unwrap_goldstein_plain, unwrap_goldstein_fast}) {
            qorv::dm::set_interruption_question([] { return true; });
            EXPECT_EQ(support::message_of([&] { unwrap(kernel, p, 0); }), "The call was interrupted.");
            qorv::dm::set_interruption_question(nullptr);
        }
}

TEST(Goldstein, RefusesMorePixelsThanItCanNumber)
{
    float phase = 1, result = 2;
    std::uint32_t scratch = 0;
    EXPECT_EQ(support::message_of([&] { unwrap_goldstein(&phase, &result, 65536, 65536, 0, &scratch); }), too_long);
    EXPECT_EQ(support::message_of([&] { unwrap_goldstein(&phase, &result, 0, 1, 0, &scratch); }),
              qorv::dm::errors::parameters_invalid);
    EXPECT_EQ(result, 2);
}

}  // namespace
