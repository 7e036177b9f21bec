#include <gmock/gmock.h>

#include <numbers>

#include "script/script_host.h"

// The core functions on images, called as scripts call them.
namespace {

using namespace script;
using complex_float = std::complex<float>;

constexpr char all_complex8[] = "All data type should be Complex 8.";
constexpr char different_size[] = "Images of different size cannot appear in this function.";
constexpr char all_same_complex[] = "All data type should be same Complex.";
constexpr char power_of_2[] = "Size of image should be power of 2.";

/// A lens with every coefficient, scaled so that the phase reaches some tens of radians at the edge.
std::vector<script_value> lens(script_value source, bool envelope, std::complex<double> tilt, script_value destination)
{
    const auto c = [](double modulus, double degrees) {
        return script_value{std::polar(modulus, degrees * std::numbers::pi / 180)};
    };
    return {std::move(source),
            0.00197,
            0.05,
            4e4,
            c(2e4, 30),
            6e7,
            3e10,
            c(6e5, 100),
            c(5e5, 200),
            c(3e7, 10),
            c(2e7, 300),
            c(1e9, 50),
            c(8e8, 70),
            c(5e8, 190),
            c(1e10, 20),
            c(2e10, 80),
            c(1e10, 250),
            4e3,
            2e-5,
            0.01,
            integer{envelope},
            tilt,
            std::move(destination)};
}

TEST(WaveTransfer, ChecksInOrderAndLeavesEverythingAsItWas)
{
    script_host script;
    const auto source = noise(3, {8, 6}), other_type = noise(13, {4, 4}), real = noise(2, {8, 6}),
               other_size = noise(3, {8, 5});
    const auto before = bytes_of(other_size);
    const auto run = [&](const image_ref& from, const image_ref& to) {
        return script.failure("ZXWTFMulDLL", lens(from, false, 0, to));
    };
    EXPECT_EQ(run(source, other_type), all_complex8);  // its size differs too
    EXPECT_EQ(run(real, other_size), all_complex8);
    EXPECT_EQ(run(other_type, nullptr), all_complex8);
    EXPECT_EQ(run(source, other_size), different_size);
    EXPECT_NE(run(nullptr, source), "");
    EXPECT_EQ(bytes_of(other_size), before);
    EXPECT_EQ(script.host().records().traces().at("WTFMulDM").reports, 5u);
}

TEST(WaveTransfer, NullDestinationInPlaceAndGivenDestinationAgree)
{
    script_host script;
    const auto source = noise(3, {17, 12});
    const auto untouched = bytes_of(source);
    const auto cloned = script.call_image("ZXWTFMulDLL", lens(source, true, {1e-3, -2e-3}, {}));
    EXPECT_EQ(bytes_of(source), untouched);
    EXPECT_EQ(source->changes(), 0u);
    const auto given = noise(3, {17, 12}, 7);
    EXPECT_EQ(script.call_image("ZXWTFMulDLL", lens(source, true, {1e-3, -2e-3}, given)), given);
    EXPECT_EQ(given->changes(), 1u);
    EXPECT_EQ(script.call_image("ZXWTFMulDLL", lens(source, true, {1e-3, -2e-3}, source)), source);
    EXPECT_EQ(bytes_of(cloned), bytes_of(given));
    EXPECT_EQ(bytes_of(cloned), bytes_of(source));
}

TEST(WaveTransfer, SameBitsWithTheSwitchOnAndOffAndOnEveryPlatform)
{
    script_host script;
    for (const auto& [sizes, tilt, wanted] :
         std::vector<std::tuple<std::vector<std::uint32_t>, std::complex<double>, std::uint64_t>>{
             {{64, 48}, {}, 0x4b432db2370d5d68}, {{37, 51}, {2e-3, -1e-3}, 0x5fe9a6e85829ba0e}}) {
        // Whole numbers, since the random numbers' distribution is each standard library's own.
        auto source = image::create("source", 3, sizes);
        for (std::uint32_t i = 0; i < source->count(); ++i)
            source->at<complex_float>(i) = {static_cast<float>(i % 29) - 14, static_cast<float>(i % 31) - 15};
        script.use_simd(true);
        const auto fast = script.call_image("ZXWTFMulDLL", lens(source, true, tilt, {}));
        script.use_simd(false);
        const auto plain = script.call_image("ZXWTFMulDLL", lens(source, true, tilt, {}));
        EXPECT_EQ(bytes_of(fast), bytes_of(plain));
        EXPECT_EQ(digest(fast), wanted) << std::hex << digest(fast);
    }
}

TEST(Shifter, ChecksInOrder)
{
    script_host script;
    struct row
    {
        image_ref source, destination;
        double shift_x, shift_y;
        const char* text;
    };
    const auto one = noise(3, {256, 256});
    for (const row& r :
         {row{noise(3, {10, 10}), noise(13, {8, 8}), 5, 5, all_same_complex},
          row{noise(2, {8, 8}), nullptr, 4, 4, all_same_complex}, row{noise(3, {10, 10}), nullptr, 5, 5, power_of_2},
          row{one, nullptr, 128.5, 128, power_of_2}, row{noise(3, {1, 64}), nullptr, 32, 0, power_of_2},
          row{one, noise(3, {8, 8}), 128, 128, different_size}}) {
        const auto before = bytes_of(r.destination ? r.destination : r.source);
        EXPECT_EQ(script.failure("ZXImageShifterForSemper",
                                 {r.source, integer{0}, integer{0}, r.shift_x, r.shift_y, 1., r.destination}),
                  r.text);
        EXPECT_EQ(bytes_of(r.destination ? r.destination : r.source), before);
    }
}

TEST(Shifter, ConjugatesInACheckerboardAndTwiceIsTheIdentity)
{
    script_host script;
    for (const std::uint32_t code : {3u, 13u})
        for (const auto& [w, h] : std::vector<std::pair<std::uint32_t, std::uint32_t>>{{12, 20}, {1, 64}, {7, 1}}) {
            const auto source = noise(code, {w, h});
            const auto shift = [&](const image_ref& from, const image_ref& to) {
                return script.call_image("ZXImageShifterForSemper",
                                         {from, integer{9}, integer{-9}, double(w / 2), double(h / 2), -7., to});
            };
            const auto once = shift(source, nullptr);
            const auto first =
                code == 3 ? std::complex<double>{source->at<complex_float>(0)} : source->at<std::complex<double>>(0);
            const auto result =
                code == 3 ? std::complex<double>{once->at<complex_float>(0)} : once->at<std::complex<double>>(0);
            EXPECT_EQ(result, std::conj(first));
            EXPECT_NE(bytes_of(once), bytes_of(source));
            EXPECT_EQ(shift(once, once), once);
            EXPECT_EQ(bytes_of(once), bytes_of(source));
        }
}

TEST(Goldstein, UnwrapsARampAndRefusesOtherTypes)
{
    script_host script;
    auto ramp = image::create("ramp", 2, std::array{40u, 30u});
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x)
            ramp->at<float>(x, y) = static_cast<float>(std::remainder(0.7 * x - 0.4 * y, 2 * std::numbers::pi));
    const auto unwrapped = script.call_image("ZXGoldstain", {ramp, integer{0}});
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x) ASSERT_NEAR(unwrapped->at<float>(x, y), 0.7 * x - 0.4 * y, 1e-4);
    EXPECT_EQ(ramp->changes(), 0u);
    EXPECT_EQ(unwrapped->changes(), 1u);
    for (const std::uint32_t code : {1u, 3u, 12u, 13u, 11u})
        EXPECT_EQ(script.failure("ZXGoldstain", {noise(code, {4, 4}), integer{0}}), "Data type should be Real 4.");
}

TEST(CoreFunctions, RefuseADestinationThatOverlapsItsSourceInPart)
{
    script_host script;
    std::vector<complex_float> memory(9 * 8);
    const auto at_row = [&](std::size_t row) -> script_value {
        return image::over("rows", 3, &memory[8 * row], std::array{8u, 8u}, std::array<std::ptrdiff_t, 2>{1, 8},
                           access::write, nullptr);
    };
    EXPECT_EQ(script.failure("ZXWTFMulDLL", lens(at_row(0), false, 0, at_row(1))), "Output should be out-of-place.");
    EXPECT_EQ(script.failure("ZXImageShifterForSemper", {at_row(1), integer{0}, integer{0}, 4., 4., 1., at_row(0)}),
              "Output should be out-of-place.");
}

}  // namespace
