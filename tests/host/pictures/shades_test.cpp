#include "host/pictures/shades.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

using namespace zentrix::host;

namespace {

constexpr double degree = std::numbers::pi / 180;

struct cielab
{
    double lightness, a, b;
};

/// CIE 15:2004, for the white point D65.
cielab cielab_of(const rgb& colour)
{
    double linear[3];
    for (std::size_t i = 0; i < 3; ++i) {
        const double level = colour[i] / 255.0;
        linear[i] = level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
    }
    const auto root = [&](double red, double green, double blue, double white) {
        const double t = (red * linear[0] + green * linear[1] + blue * linear[2]) / white;
        return t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116;
    };
    const double x = root(0.4124564, 0.3575761, 0.1804375, 0.95047), y = root(0.2126729, 0.7151522, 0.0721750, 1),
                 z = root(0.0193339, 0.1191920, 0.9503041, 1.08883);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

/// G. Sharma, W. Wu, E. N. Dalal, Color Research and Application 30 (2005) 21-30.
double ciede2000(const cielab& p, const cielab& q)
{
    const auto seventh = [](double c) { return std::sqrt(std::pow(c, 7) / (std::pow(c, 7) + std::pow(25, 7))); };
    const double stretch = 1.5 - 0.5 * seventh((std::hypot(p.a, p.b) + std::hypot(q.a, q.b)) / 2);
    const double c1 = std::hypot(p.a * stretch, p.b), c2 = std::hypot(q.a * stretch, q.b), c = (c1 + c2) / 2;
    const auto hue = [&](const cielab& one) { return std::atan2(one.b, one.a * stretch) / degree; };
    const double turn = std::remainder(hue(q) - hue(p), 360), h = hue(p) + turn / 2;
    const double hue_difference = 2 * std::sqrt(c1 * c2) * std::sin(turn / 2 * degree);
    const auto cosine = [&](double times, double shift) { return std::cos((times * h + shift) * degree); };
    const double t = 1 - 0.17 * cosine(1, -30) + 0.24 * cosine(2, 0) + 0.32 * cosine(3, 6) - 0.20 * cosine(4, -63);
    const double from_middle = std::pow((p.lightness + q.lightness) / 2 - 50, 2);
    const double l_part = (q.lightness - p.lightness) / (1 + 0.015 * from_middle / std::sqrt(20 + from_middle)),
                 c_part = (c2 - c1) / (1 + 0.045 * c), h_part = hue_difference / (1 + 0.015 * c * t);
    const double from_blue = std::remainder(h - 275, 360) / 25;
    const double rotation = -std::sin(60 * std::exp(-from_blue * from_blue) * degree) * 2 * seventh(c);
    return std::sqrt(l_part * l_part + c_part * c_part + h_part * h_part + rotation * c_part * h_part);
}

rgb colour_of(float phase)
{
    static const phase_colours colours;
    rgb shown{};
    colours.shade({&phase, 1}, shown.data());
    return shown;
}

rgb colour_of(float phase, float modulus)
{
    static const wave_colours colours{2};
    rgb shown{};
    colours.shade({&phase, 1}, {&modulus, 1}, shown.data());
    return shown;
}

/// The largest difference of neighbours, 10 degrees apart, over the smallest.
template <class Colour>
double unevenness(Colour colour)
{
    std::vector<double> differences;
    for (int i = -180; i < 180; i += 10)
        differences.push_back(ciede2000(cielab_of(colour(static_cast<float>(i * degree))),
                                        cielab_of(colour(static_cast<float>((i + 10) * degree)))));
    return std::ranges::max(differences) / std::ranges::min(differences);
}

}  // namespace

TEST(Shades, DifferAsMuchAsThePhasesDo)
{
    // Pairs 1, 7 and 17 of the test data of Sharma, Wu and Dalal.
    EXPECT_NEAR(ciede2000({50, 2.6772, -79.7751}, {50, 0, -82.7485}), 2.0425, 1e-4);
    EXPECT_NEAR(ciede2000({50, 0, 0}, {50, -1, 2}), 2.3669, 1e-4);
    EXPECT_NEAR(ciede2000({50, 2.5, 0}, {73, 25, -18}), 27.1492, 1e-4);
    EXPECT_LT(unevenness([](float phase) { return colour_of(phase); }), 1.6);
    EXPECT_LT(unevenness([](float phase) { return colour_of(phase, 2); }), 1.7);
}

TEST(Shades, OfPhasesAreCyclicAndGrowLighterWithTheSine)
{
    const float turn = 2 * std::numbers::pi_v<float>;
    EXPECT_EQ(colour_of(turn / 2), colour_of(-turn / 2));
    double least = 100, largest = 0;
    for (int i = 0; i < 36; ++i) {
        const auto phase = static_cast<float>(i * 10 * degree);
        const rgb shown = colour_of(phase);
        for (const float further : {phase + 3 * turn, phase - 2 * turn})
            for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(colour_of(further)[k], shown[k], 1) << i;
        const double lightness = cielab_of(shown).lightness;
        EXPECT_NEAR(lightness, 68.5 + 14 * std::sin(i * 10 * degree), 2) << i;
        EXPECT_NEAR(cielab_of(colour_of(phase, 2)).lightness, 71.5, 3) << i;
        least = std::min(least, lightness), largest = std::max(largest, lightness);
    }
    EXPECT_GT(largest - least, 25);
}

TEST(Shades, OfWavesAreAsBrightAsTheModulus)
{
    const float infinite = std::numeric_limits<float>::infinity(), missing = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(colour_of(1, 0), (rgb{0, 0, 0}));
    EXPECT_EQ(colour_of(1, infinite), colour_of(1, 2));
    EXPECT_EQ(colour_of(missing, 1), missing_in_colours);
    EXPECT_EQ(colour_of(1, missing), missing_in_colours);
    EXPECT_EQ(colour_of(missing), missing_in_colours);
    for (const float phase : {-3.0F, 0.0F, 1.0F})
        for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(colour_of(phase, 1)[k], colour_of(phase, 2)[k] / 2.0, 8);
    rgb dark{1, 1, 1};
    const float phase = 1, modulus = 0;
    wave_colours{0}.shade({&phase, 1}, {&modulus, 1}, dark.data());  // a wave of zeros
    EXPECT_EQ(dark, (rgb{0, 0, 0}));
}
