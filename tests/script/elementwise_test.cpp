#include <cmath>
#include <limits>
#include <numbers>

#include "image/errors.h"
#include "tests/script/destinations.h"

// Element-wise functions as a script meets them. How exact they are is tested with their kernels.
namespace {

using namespace script;
namespace errors = qorv::dm::errors;

constexpr char source_complex[] = "cimSrc should be Complex.";
constexpr char rho_and_theta_real[] = "imgRho and imgTheta should be Real.";
constexpr double infinity = std::numeric_limits<double>::infinity();
const script_value null{};

image_ref of(std::uint32_t code, extents sizes = {4, 3}) { return whole_numbers(code, sizes); }

TEST(Elementwise, FillsItsDestination)
{
    const auto alone = [](auto s, auto d) { return arguments{s, d}; };
    const auto twice = [](auto s, auto d) { return arguments{s, s, d}; };
    const auto number_first = [](auto s, auto d) { return arguments{2.5, s, d}; };
    const auto number_behind = [](auto s, auto d) { return arguments{s, 0.5, d}; };
    for (const auto& row : std::vector<destination_row>{
             {"ZXPolar", "Polar1DM", float_types, twice, in_place::not_offered, complex_of},
             {"ZXPolar", "Polar2DM", float_types, number_first, in_place::not_offered, complex_of},
             {"ZXAbs", "AbsDM", complex_types, alone, in_place::not_offered, real_of},
             {"ZXExp2", "Exp2DM", float_types, alone},
             {"ZXLog2", "Log2DM", float_types, alone},
             {"ZXPow", "PowDM", float_types, twice},
             {"ZXCArg", "CArgDM", complex_types, alone},
             {"ZXNorm", "CNormDM", complex_types, number_behind}})
        expect_destination_rules(row);
}

/// A picture of one element of the precision; complex where the second number is given.
image_ref one(bool is_double, double value)
{
    return is_double ? image_of<double>({value}, {1}) : image_of<float>({static_cast<float>(value)}, {1});
}
image_ref one(bool is_double, std::complex<double> value)
{
    return is_double ? image_of<std::complex<double>>({value}, {1})
                     : image_of<std::complex<float>>({std::complex<float>(value)}, {1});
}

TEST(Elementwise, ComputesItsFormula)
{
    script_host script;
    for (const bool precise : {false, true}) {
        const auto number = [&](auto value) { return one(precise, value); };
        const std::complex<double> z{3, 4};
        for (const auto& [name, given, wanted] : std::vector<std::tuple<const char*, arguments, std::complex<double>>>{
                 {"ZXPolar", {number(2.), number(0.5), null}, std::polar(2., 0.5)},
                 {"ZXPolar", {-2., number(0.5), null}, -std::polar(2., 0.5)},
                 {"ZXAbs", {number(z), null}, 5.},
                 {"ZXExp2", {number(-3.), null}, 0.125},
                 {"ZXLog2", {number(8.), null}, 3.},
                 {"ZXPow", {number(2.), number(3.), null}, 8.},
                 {"ZXCArg", {number(z), null}, z / 5.},
                 {"ZXNorm", {number(z), 2., null}, 50.},
                 {"ZXNorm", {number(z), 2., number(7.)}, 50.}}) {
            const auto got = complex_at(script.call_image(name, given), 0);
            EXPECT_LT(std::abs(got - wanted), precise ? 1e-15 : 1e-6) << name << " " << got;
        }
    }
}

TEST(Elementwise, OnlyTheVectorModulusOverflows)
{
    script_host script;
    for (const bool precise : {false, true}) {
        const double large = precise ? 1e300 : 1e38;
        const auto z = one(precise, {large, large});
        script.use_simd(true);
        EXPECT_EQ(complex_at(script.call_image("ZXAbs", {z, null}), 0).real(), infinity);
        script.use_simd(false);
        EXPECT_NEAR(complex_at(script.call_image("ZXAbs", {z, null}), 0).real() / large, std::numbers::sqrt2, 1e-6);
    }
}

TEST(Elementwise, AbsArgFillsOutputsThatFitAndMakesTheOthers)
{
    script_host script;
    for (const std::uint32_t code : complex_types)
        for (const bool gives_rho : {false, true})
            for (const bool gives_theta : {false, true}) {
                const auto z = whole_numbers(code, {5, 3, 2});
                const std::complex<double> value = complex_at(z, 4, 2, 1);
                const auto mine = spread(of(real_of(code), {5, 3, 2}), 2),
                           other = spread(of(real_of(code), {5, 3, 2}), 1);
                const auto rho = make_cell(gives_rho ? script_value{mine.picture} : null),
                           theta = make_cell(gives_theta ? script_value{other.picture} : null);
                script.call("ZXAbsArg", {z, rho, theta});
                EXPECT_EQ(picture_in(rho) == mine.picture, gives_rho);
                EXPECT_EQ(picture_in(theta) == other.picture, gives_theta);
                EXPECT_EQ(picture_in(theta)->name(), gives_theta ? "whole" : "Theta");
                EXPECT_EQ(picture_in(rho)->changes() + picture_in(theta)->changes(), 2u);
                EXPECT_NEAR(number_at(picture_in(rho), 4, 2, 1), std::abs(value), 4e-6);
                EXPECT_NEAR(number_at(picture_in(theta), 4, 2, 1), std::arg(value), 4e-7);
            }
    EXPECT_EQ(script.host().records().traces().at("AbsArgDM").reports, 8u);
}

TEST(Elementwise, PowersOfOtherTypesGiveNothingAndNoError)
{
    script_host script;
    for (const char* name : {"ZXExp2", "ZXLog2"})
        for (const std::uint32_t code : {1u, 3u, 6u, 7u, 9u, 10u, 11u, 13u, 14u, 23u})
            for (const bool gives_destination : {false, true}) {
                const auto source = of(code), destination = whole_numbers(code, {4, 3}, 5);
                const auto before = bytes_of(destination);
                EXPECT_TRUE(is_null(script.call(name, {source, gives_destination ? destination : nullptr})));
                EXPECT_EQ(bytes_of(destination), before);
                EXPECT_EQ(destination->changes() + source->changes(), 0u);
            }
}

TEST(Elementwise, RefusesInOrder)
{
    const extents wide{5, 3}, high{4, 4}, deep{4, 3, 2};
    const auto cell = [](image_ref held) { return make_cell(std::move(held)); };
    const auto shared = of(2);
    expect_refusals({
        // Rows with two faults fix the order.
        {"ZXPolar", {null, of(2), null}, errors::parameters_invalid},
        {"ZXPolar", {of(2), of(12), of(3, wide)}, rho_and_theta_real},
        {"ZXPolar", {of(1), of(1), null}, rho_and_theta_real},
        {"ZXPolar", {of(2), of(2, wide), of(13)}, errors::invalid_data_type},
        {"ZXPolar", {of(2), of(2), of(2, wide)}, errors::invalid_data_type},
        {"ZXPolar", {of(12), of(12), of(13, high)}, errors::different_size},
        {"ZXPolar", {of(2), of(2, deep), null}, errors::different_size},
        {"ZXPolar", {1., of(7), of(2, wide)}, "imgTheta should be Real."},
        {"ZXPolar", {1., of(2), of(13, wide)}, errors::invalid_data_type},
        {"ZXAbsArg", {of(2), cell(of(3, wide)), cell(nullptr)}, source_complex},
        {"ZXAbsArg", {of(3), cell(of(12)), cell(of(2, wide))}, errors::different_size},
        {"ZXAbsArg", {of(3), cell(of(2, high)), cell(of(1))}, errors::different_size},
        {"ZXAbsArg", {of(3), cell(nullptr), cell(of(12))}, errors::invalid_image_type},
        {"ZXAbsArg", {of(13), cell(of(2)), cell(nullptr)}, errors::invalid_image_type},
        {"ZXAbsArg", {of(3), cell(shared), cell(shared)}, errors::out_of_place},
        {"ZXAbs", {null, of(2)}, errors::parameters_invalid},
        {"ZXAbs", {of(2), of(3, wide)}, source_complex},
        {"ZXAbs", {of(3), of(12, wide)}, errors::invalid_image_type},
        {"ZXAbs", {of(13), of(12, high)}, errors::different_size},
        {"ZXExp2", {of(2), of(12, wide)}, errors::invalid_image_type},
        {"ZXLog2", {of(1), of(1, wide)}, errors::different_size},  // before the silent end of other types
        {"ZXPow", {of(2), null, null}, errors::parameters_invalid},
        {"ZXPow", {of(2), of(12, wide), null}, errors::invalid_image_type},
        {"ZXPow", {of(2), of(2, wide), of(3)}, errors::invalid_image_type},
        {"ZXPow", {of(1), of(1, high), null}, errors::different_size},
        {"ZXPow", {of(2), of(2), of(2, wide)}, errors::different_size},
        {"ZXPow", {of(2, deep), of(2), null}, errors::different_size},
        {"ZXPow", {of(3), of(3), of(3)}, errors::all_real},
        {"ZXCArg", {of(2), of(2, wide)}, errors::all_complex},
        {"ZXCArg", {of(3), of(13, wide)}, errors::all_complex},
        {"ZXCArg", {of(3), of(3, high)}, errors::different_size},
        {"ZXNorm", {of(2), 1., null}, errors::invalid_image_type},
        {"ZXNorm", {of(3), 1., of(12, wide)}, errors::invalid_image_type},
        {"ZXNorm", {of(13), 1., of(12, high)}, errors::different_size},
    });
}

TEST(Elementwise, RefusesResultsThatOverlapASource)
{
    auto memory = std::make_shared<std::vector<double>>(64, 1.);
    const auto view = [&](std::uint32_t code, std::ptrdiff_t offset) {
        const extents sizes{8};
        const std::array<std::ptrdiff_t, 1> strides{1};
        return image::over("part", code, memory->data() + offset, sizes, strides, access::write, memory);
    };
    expect_refusals({{"ZXExp2", {view(12, 0), view(12, 1)}, errors::out_of_place},
                     {"ZXPow", {view(12, 20), view(12, 1), view(12, 0)}, errors::out_of_place},
                     {"ZXAbs", {view(13, 0), view(12, 8)}, errors::out_of_place},
                     {"ZXAbsArg", {view(13, 0), make_cell(view(12, 20)), make_cell(view(12, 8))}, errors::out_of_place},
                     {"ZXPolar", {1., view(12, 8), view(13, 0)}, errors::out_of_place}});
}

TEST(Elementwise, HasTheSameBitsOnEveryPlatform)
{
    script_host script;
    const extents sizes{37, 29, 2};
    const auto a = whole_numbers(2, sizes), b = whole_numbers(2, sizes, 11), z = whole_numbers(3, sizes);
    const auto eighth = script.call_image("ZXPolar", {0.125, b, null});  // no whole numbers
    for (const auto& [name, given, wanted] : std::vector<std::tuple<const char*, arguments, std::uint64_t>>{
             {"ZXPolar", {a, b, null}, 0xd5f0b23ec77939c9},
             {"ZXExp2", {script.call_image("ZXLog2", {a, null}), null}, 0x575f5d8e818130bd},
             {"ZXPow", {a, script.call_image("ZXAbs", {eighth, null}), null}, 0x1a284460ebdf1c55},
             {"ZXLog2", {b, null}, 0x54a4817a7e2a519d},
             {"ZXCArg", {z, null}, 0x91852a64bf0e9aed},
             {"ZXNorm", {eighth, 1e3, null}, 0xc5b04a5bed1a3229}}) {
        const auto got = digest(script.call_image(name, given));
        EXPECT_EQ(got, wanted) << name << std::hex << " 0x" << got;
    }
}

}  // namespace
