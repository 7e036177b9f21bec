#include "optics/unwrap/goldstein.h"

#include "image/errors.h"
#include "tests/support/goldstein_literal.h"
#include "tests/support/same_bytes.h"

#include <functional>
#include <limits>
#include <numbers>
#include <random>
#include <stdexcept>

namespace {

using namespace qorv;
using optics::unwrap_goldstein;
using support::framed;
using support::goldstein_literal;
using support::one_nan;

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

std::vector<float> unwrap(const picture& p, int box_limit)
{
    framed<float> result(p.pixels.size());
    framed<float> scratch(p.pixels.size());
    unwrap_goldstein(p.pixels.data(), result.inside(), p.width, p.height, box_limit, scratch.inside());
    EXPECT_TRUE(result.frame_untouched() && scratch.frame_untouched());
    return result.copy();
}

testing::AssertionResult same_as_literal(const picture& p, int box_limit)
{
    const goldstein_literal truth{p.pixels, p.width, p.height, box_limit};
    return support::same_bytes(one_nan(unwrap(p, box_limit)), one_nan(truth.result()))
           << " in " << p.width << " x " << p.height << ", box limit " << box_limit;
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

/// Phases out of their range, in few equal steps (so differences of exactly pi and zeros of both signs occur), or none.
void spoil(picture& p, int how, std::mt19937& random)
{
    using limits = std::numeric_limits<float>;
    const float rare[] = {limits::quiet_NaN(), limits::infinity(), -limits::infinity(), 1e30f, -0.f, 5000.f};
    for (float& value : p.pixels)
        if (how == 1)
            value = static_cast<float>(pi / 4) * static_cast<float>(std::lround(4 * value / pi));
        else if (how == 2)
            value *= static_cast<float>(random() % 4);
        else if (how == 3 && random() % 20 == 0)
            value = rare[random() % std::size(rare)];
        else if (how == 4)
            value *= 1e6f;
        else if (how == 5)
            value = value > 0 ? 0.f : -0.f;
}

TEST(goldstein, is_the_literal_algorithm_to_the_bit_on_small_images)
{
    std::mt19937 random{20240607};
    for (int k = 0; k < 6000; ++k) {
        const int width = 1 + random() % 40, height = 1 + random() % 40;
        const double spreads[] = {0, 0.5, 0.7, 1, 1.4, 100};
        picture p = noisy(width, height, spreads[random() % 6], random());
        spoil(p, random() % 12, random);
        const int box_limit = random() % 3 == 0 ? 0 : static_cast<int>(random() % 49) - 3;
        ASSERT_TRUE(same_as_literal(p, box_limit)) << "case " << k;
    }
}

TEST(goldstein, is_the_literal_algorithm_to_the_bit_on_large_images)
{
    const struct
    {
        picture p;
        int box_limit;
    } rows[] = {{noisy(512, 512, 0, 1), 0},      {noisy(512, 512, 0.76, 2), 0}, {noisy(500, 530, 1.06, 3), 0},
                {noisy(512, 512, 100, 4), 0},    {noisy(512, 512, 1.1, 5), -1}, {vortex(512, 512, 255.3, 255.6), 0},
                {vortex(300, 700, 120.5, 5), 0}, {noisy(2, 3000, 100, 6), 0},   {noisy(3000, 3, 100, 7), 0}};
    for (const auto& row : rows) EXPECT_TRUE(same_as_literal(row.p, row.box_limit));
}

TEST(goldstein, a_surface_without_residues_comes_back_from_its_first_pixel)
{
    for (const auto& [dx, dy] : {std::pair{0.3, -0.2}, {-1.1, 0.9}, {0., 3.}})
        for (const auto& [width, height] : {std::pair{200, 150}, {1, 300}, {300, 1}, {1, 1}}) {
            const picture p = draw(width, height, [&](int x, int y) { return 2 + dx * x + dy * y; });
            const auto got = unwrap(p, 0);
            EXPECT_EQ(got[0], p.pixels[0]);
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x)
                    ASSERT_NEAR(got[x + y * width], 2 + dx * x + dy * y, 2e-3) << x << ", " << y;
        }
}

TEST(goldstein, results_differ_from_the_phase_by_whole_turns)
{
    for (const picture& p : {noisy(300, 200, 0.7, 8), noisy(200, 300, 100, 9), vortex(200, 200, 90.5, 80.5)}) {
        const auto got = unwrap(p, 0);
        for (std::size_t i = 0; i < got.size(); ++i) ASSERT_NEAR(wrapped(got[i] - p.pixels[i]), 0, 1e-3);
    }
}

TEST(goldstein, refuses_what_it_cannot_hold_and_leaves_the_result)
{
    float phase = 1, result = 2, scratch = 0;
    const struct
    {
        float *phase, *result;
        int width, height;
        const char* text;
    } rows[] = {{nullptr, &result, 1, 1, dm::errors::parameters_invalid},
                {&phase, nullptr, 1, 1, dm::errors::parameters_invalid},
                {&phase, &result, 0, 1, dm::errors::parameters_invalid},
                {&phase, &result, 65536, 65536, "vector<T> too long"}};
    for (const auto& r : rows) {
        const auto call = [&] { unwrap_goldstein(r.phase, r.result, r.width, r.height, 0, &scratch); };
        EXPECT_EQ(support::message_of(call), r.text);
    }
    EXPECT_EQ(result, 2);
}

// The reference itself, against figures worked out by hand.

using points = std::vector<std::pair<int, int>>;

/// The pixels with a flag, row by row.
points pixels_with(const goldstein_literal& run, const picture& p, std::uint32_t flag)
{
    points found;
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x < p.width; ++x)
            if (run.flags_at(x, y) & flag) found.push_back({x, y});
    return found;
}

TEST(goldstein_literal, a_lone_residue_is_cut_off_straight_to_the_edge)
{
    // Turning counter-clockwise as y grows downwards: the loop right, down, left, up sees a full turn.
    const picture p = vortex(12, 9, 3.5, 4.5);
    for (const int box_limit : {1, 5, 0}) {
        const goldstein_literal run{p.pixels, 12, 9, box_limit};
        EXPECT_EQ(pixels_with(run, p, goldstein_literal::positive), (points{{3, 4}}));
        EXPECT_TRUE(pixels_with(run, p, goldstein_literal::negative).empty());
        // The side is 3 columns away, the bottom 4 rows: the shorter way, left. The end on the residue moves only up.
        EXPECT_EQ(pixels_with(run, p, goldstein_literal::branch_cut), (points{{0, 4}, {1, 4}, {2, 4}, {3, 4}}));
    }
}

TEST(goldstein_literal, a_dipole_is_joined_by_one_short_cut_in_the_box_that_holds_both)
{
    const picture p =
        draw(20, 20, [](int x, int y) { return std::atan2(y - 9.5, x - 8.5) - std::atan2(y - 9.5, x - 10.5); });
    for (const int box_limit : {5, 0}) {
        const goldstein_literal run{p.pixels, 20, 20, box_limit};
        EXPECT_EQ(pixels_with(run, p, goldstein_literal::positive), (points{{8, 9}}));
        EXPECT_EQ(pixels_with(run, p, goldstein_literal::negative), (points{{10, 9}}));
        EXPECT_EQ(pixels_with(run, p, goldstein_literal::branch_cut), (points{{9, 9}, {10, 9}}));
    }
    // Two pixels apart, the 3 x 3 box does not see the other one: each is cut off on its own, down both halves.
    const goldstein_literal apart{p.pixels, 20, 20, 3};
    EXPECT_GT(pixels_with(apart, p, goldstein_literal::branch_cut).size(), 10u);
}

}  // namespace
