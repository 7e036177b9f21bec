#include <cmath>
#include <limits>
#include <numbers>

#include "image/errors.h"
#include "tests/script/destinations.h"

// Element-wise functions called as scripts call them. Their exactness is tested with their kernels.
namespace {

using namespace script;
namespace errors = qorv::dm::errors;

constexpr char source_complex[] = "cimSrc should be Complex.";
constexpr char rho_and_theta_real[] = "imgRho and imgTheta should be Real.";
constexpr double infinity = std::numeric_limits<double>::infinity();

image_ref of(std::uint32_t code, extents sizes = {4, 3}) { return whole_numbers(code, sizes); }

TEST(Elementwise, OnlyTheVectorModulusOverflows)
{
    script_host script;
    const auto z = image_of<std::complex<double>>({{1e300, 1e300}}, {1});
    EXPECT_EQ(number_at(script.call_image("ZXAbs", {z, null}), 0), infinity);
    script.use_simd(false);
    EXPECT_NEAR(number_at(script.call_image("ZXAbs", {z, null}), 0) / 1e300, std::numbers::sqrt2, 1e-15);
}

TEST(Elementwise, AbsArgFillsGivenOutputsAndMakesTheOthers)
{
    script_host script;
    for (const std::uint32_t code : complex_types)
        for (const int outputs : {0, 1, 2, 3}) {
            const extents sizes{5, 3, 2};
            const auto z = whole_numbers(code, sizes);
            const auto my_rho = outputs & 1 ? spread(of(real_of(code), sizes), 2).picture : nullptr,
                       my_theta = outputs & 2 ? spread(of(real_of(code), sizes), 1).picture : nullptr;
            const auto rho = make_cell(my_rho), theta = make_cell(my_theta);
            script.call("ZXAbsArg", {z, rho, theta});
            EXPECT_TRUE(!my_rho || picture_in(rho) == my_rho);
            EXPECT_TRUE(my_theta ? picture_in(theta) == my_theta : picture_in(theta)->name() == "Theta");
            EXPECT_EQ(picture_in(rho)->changes() + picture_in(theta)->changes(), 2u);
            EXPECT_NEAR(number_at(picture_in(rho), 4, 2, 1), std::abs(complex_at(z, 4, 2, 1)), 4e-6);
            EXPECT_NEAR(number_at(picture_in(theta), 4, 2, 1), std::arg(complex_at(z, 4, 2, 1)), 4e-7);
        }
    EXPECT_EQ(script.host().records().traces().at("AbsArgDM").reports, 8u);
}

TEST(Elementwise, PowersOfOtherTypesGiveNothingAndNoError)
{
    script_host script;
    for (const char* name : {"ZXExp2", "ZXLog2"})
        for (const std::uint32_t code : {1u, 3u, 6u, 7u, 9u, 10u, 11u, 13u, 14u, 23u}) {
            const auto source = of(code), destination = whole_numbers(code, {4, 3}, 5);
            EXPECT_TRUE(is_null(script.call(name, {source, null})));
            EXPECT_TRUE(is_null(script.call(name, {source, destination})));
            EXPECT_EQ(bytes_of(destination), bytes_of(whole_numbers(code, {4, 3}, 5)));
            EXPECT_EQ(destination->changes(), 0u);
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
        {"ZXPolar", {of(12), of(12), of(13, high)}, errors::different_size},
        {"ZXPolar", {of(2), of(2, deep), null}, errors::different_size},
        {"ZXPolar", {1., of(7), of(2, wide)}, "imgTheta should be Real."},
        {"ZXPolar", {1., of(2), of(13, wide)}, errors::invalid_data_type},
        {"ZXAbsArg", {of(2), cell(of(3, wide)), cell(nullptr)}, source_complex},
        {"ZXAbsArg", {of(3), cell(of(12)), cell(of(2, wide))}, errors::different_size},
        {"ZXAbsArg", {of(3), cell(of(2, high)), cell(of(1))}, errors::different_size},
        {"ZXAbsArg", {of(3), cell(nullptr), cell(of(12))}, errors::invalid_image_type},
        {"ZXAbsArg", {of(3), cell(shared), cell(shared)}, errors::out_of_place},
        {"ZXAbs", {null, of(2)}, errors::parameters_invalid},
        {"ZXAbs", {of(2), of(3, wide)}, source_complex},
        {"ZXAbs", {of(3), of(12, wide)}, errors::invalid_image_type},
        {"ZXAbs", {of(13), of(12, high)}, errors::different_size},
        {"ZXExp2", {of(2), of(12, wide)}, errors::invalid_image_type},
        {"ZXLog2", {of(1), of(1, wide)}, errors::different_size},  // before the null result for other types
        {"ZXPow", {of(2), null, null}, errors::parameters_invalid},
        {"ZXPow", {of(2), of(12, wide), null}, errors::invalid_image_type},
        {"ZXPow", {of(1), of(1, high), null}, errors::different_size},
        {"ZXPow", {of(2), of(2), of(2, wide)}, errors::different_size},
        {"ZXPow", {of(2, deep), of(2), null}, errors::different_size},
        {"ZXPow", {of(3), of(3), of(3)}, errors::all_real},
        {"ZXCArg", {of(3), of(13, wide)}, errors::all_complex},
        {"ZXCArg", {of(3), of(3, high)}, errors::different_size},
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

}  // namespace
