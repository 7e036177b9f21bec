#include <numbers>

#include "image/errors.h"
#include "tests/script/destinations.h"

// The core functions on images, called as scripts call them.
namespace {

using namespace script;
namespace errors = qorv::dm::errors;
using complex_float = std::complex<float>;

/// A lens with every coefficient, scaled so that the phase reaches some tens of radians at the edge.
arguments lens(script_value source, bool envelope, std::complex<double> tilt, script_value destination)
{
    constexpr double moduli[] = {2e4, 6e5, 5e5, 3e7, 2e7, 1e9, 8e8, 5e8, 1e10, 2e10, 1e10};
    constexpr double degrees[] = {30, 100, 200, 10, 300, 50, 70, 190, 20, 80, 250};
    arguments args{std::move(source), 0.00197, 0.05, 4e4};
    for (int k = 0; k < 11; ++k) args.emplace_back(std::polar(moduli[k], degrees[k] * std::numbers::pi / 180));
    args.insert(args.begin() + 5, {6e7, 3e10});  // the other round terms
    args.insert(args.end(), {4e3, 2e-5, 0.01, integer{envelope}, tilt, std::move(destination)});
    return args;
}

arguments shifter(script_value source, double shift_x, double shift_y, script_value destination)
{
    return {std::move(source), integer{9}, integer{-9}, shift_x, shift_y, -7., std::move(destination)};
}

TEST(CoreFunctions, RefuseInOrder)
{
    std::vector<complex_float> memory(9 * 8);
    const auto at_row = [&](std::size_t row) -> script_value {  // 8 rows of 8, from that row on
        return image::over("rows", 3, &memory[8 * row], extents{8, 8}, std::array<std::ptrdiff_t, 2>{1, 8},
                           access::write, nullptr);
    };
    const auto transfer = [](const script_value& source, const script_value& destination) {
        return lens(source, false, 0, destination);
    };
    const auto wave = whole_numbers(HOST_ELEMENT_COMPLEX64, {8, 6}),
               large = whole_numbers(HOST_ELEMENT_COMPLEX64, {256, 256});
    expect_refusals({
        // Rows with two faults fix the order.
        {"ZXWTFMulDLL", transfer(wave, whole_numbers(HOST_ELEMENT_COMPLEX128, {4, 4})), errors::all_complex8},
        {"ZXWTFMulDLL",
         transfer(whole_numbers(HOST_ELEMENT_FLOAT32, {8, 6}), whole_numbers(HOST_ELEMENT_COMPLEX64, {8, 5})),
         errors::all_complex8},
        {"ZXWTFMulDLL", transfer(wave, whole_numbers(HOST_ELEMENT_COMPLEX64, {8, 5})), errors::different_size},
        {"ZXWTFMulDLL", transfer(at_row(0), at_row(1)), errors::out_of_place},
        {"ZXWTFMulDLL", transfer(null, wave), errors::parameters_invalid},
        {"ZXImageShifterForSemper",
         shifter(whole_numbers(HOST_ELEMENT_COMPLEX64, {10, 10}), 5, 5, whole_numbers(HOST_ELEMENT_COMPLEX128, {8, 8})),
         errors::all_same_complex},
        {"ZXImageShifterForSemper", shifter(whole_numbers(HOST_ELEMENT_FLOAT32, {8, 8}), 4, 4, null),
         errors::all_same_complex},
        {"ZXImageShifterForSemper",
         shifter(whole_numbers(HOST_ELEMENT_COMPLEX64, {10, 10}), 5, 5, whole_numbers(HOST_ELEMENT_COMPLEX64, {8, 8})),
         errors::size_power_of_2},
        {"ZXImageShifterForSemper", shifter(large, 128.5, 128, null), errors::size_power_of_2},
        {"ZXImageShifterForSemper", shifter(large, 128, 128, whole_numbers(HOST_ELEMENT_COMPLEX64, {8, 8})),
         errors::different_size},
        {"ZXImageShifterForSemper", shifter(at_row(1), 4, 4, at_row(0)), errors::out_of_place},
        {"ZXGoldstain", {whole_numbers(HOST_ELEMENT_FLOAT64, {4, 4}), integer{0}}, errors::should_be_real4},
    });
}

TEST(WaveTransfer, GivesTheSameBitsOnEveryPlatform)
{
    script_host script;
    for (const auto& [sizes, tilt, expected] : std::vector<std::tuple<extents, std::complex<double>, std::uint64_t>>{
             {{64, 48}, {}, 0x4b432db2370d5d68}, {{37, 51}, {2e-3, -1e-3}, 0x5fe9a6e85829ba0e}}) {
        auto source = image::create("source", 3, sizes);
        for (std::uint32_t i = 0; i < source->count(); ++i)
            source->at<complex_float>(i) = {static_cast<float>(i % 29) - 14, static_cast<float>(i % 31) - 15};
        for (const bool simd : {true, false}) {
            script.use_simd(simd);
            const auto got = digest(script.call_image("ZXWTFMulDLL", lens(source, true, tilt, {})));
            EXPECT_EQ(got, expected) << std::hex << got;
        }
    }
}

TEST(Shifter, TwiceIsTheIdentity)
{
    script_host script;
    for (const std::uint32_t code : complex_types) {
        const auto source = whole_numbers(code, {12, 20});
        const auto once = script.call_image("ZXImageShifterForSemper", shifter(source, 6, 10, null));
        EXPECT_EQ(complex_at(once, 1), -std::conj(complex_at(source, 1)));
        EXPECT_EQ(bytes_of(script.call_image("ZXImageShifterForSemper", shifter(once, 6, 10, null))), bytes_of(source));
    }
}

}  // namespace
