#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

#include "image/errors.h"
#include "tests/script/destinations.h"

// Statistics, windows, weights and masks called as scripts call them. Their values are tested with their kernels.
namespace {

using namespace script;
namespace errors = qorv::dm::errors;

constexpr double inf = std::numeric_limits<double>::infinity();
const std::complex<double> i{0, 1};

arguments with_cells(arguments args, int count)
{
    for (int k = 0; k < count; ++k) args.emplace_back(make_cell());
    return args;
}

/// The values of the outputs as numbers.
std::vector<double> outputs_of(const arguments& args)
{
    std::vector<double> values;
    for (const auto& argument : args)
        if (const auto* out = std::get_if<cell_ref>(&argument)) {
            const auto& value = (*out)->value;
            if (const auto* whole = std::get_if<integer>(&value)) values.push_back(static_cast<double>(*whole));
            if (const auto* real = std::get_if<double>(&value)) values.push_back(*real);
        }
    return values;
}

image_ref matrix() { return image_of<double>({4, 0, 0, 4}, {2, 2}); }
image_ref peaks() { return image_of<std::complex<float>>({{1, 2}, {5, 3}}, {2}); }

TEST(StatisticsWindowsMasks, RefuseInTheDocumentedOrder)
{
    const auto f = [](std::uint32_t w = 6, std::uint32_t h = 4) { return whole_numbers(HOST_ELEMENT_FLOAT32, {w, h}); };
    const auto c = [](std::uint32_t w = 6, std::uint32_t h = 4) {
        return whole_numbers(HOST_ELEMENT_COMPLEX64, {w, h});
    };
    const auto d = [](std::uint32_t w = 6, std::uint32_t h = 4) { return whole_numbers(HOST_ELEMENT_FLOAT64, {w, h}); };
    const integer no_mode = 99;
    const auto weight = [&](script_value s, script_value w, integer mode, script_value to, double scale = 1) {
        return arguments{s, w, integer{0}, integer{0}, scale, 1.0, mode, to};
    };
    const auto correlation = [&](script_value t, script_value r, integer mode, script_value to, double radius = 1) {
        return arguments{t, r, integer{0}, integer{0}, 1.0, 1.0, 0.0, radius, mode, make_cell(), to};
    };
    const auto mass = [&](script_value s, double radius, integer cycles) {
        return arguments{s, make_cell(0.0), make_cell(0.0), radius, cycles, 0.0};
    };
    expect_refusals({
        {"ZXSurveyDifference", with_cells({null, c()}, 7), errors::parameters_invalid},
        {"ZXSurveyDifference", with_cells({f(), c(3)}, 7), errors::all_real},
        {"ZXSurveyDifference", with_cells({f(), d(3)}, 7), errors::invalid_image_type},
        {"ZXSurveyDifference", with_cells({f(), f(4, 6)}, 7), errors::different_size},
        {"ZXRadialSurvey", {f(), integer{0}, integer{0}, inf, 1.0}, errors::parameters_invalid},
        {"ZXGetCenterOfMass", mass(whole_numbers(HOST_ELEMENT_FLOAT32, {3, 3, 2}), 0, 0), errors::invalid_image_size},
        {"ZXGetCenterOfMass", mass(f(), 0, 1), errors::parameters_invalid},
        {"ZXGetCenterOfMass", mass(f(), 1, 0), errors::parameters_invalid},
        {"ZXWeight", weight(whole_numbers(HOST_ELEMENT_INT16, {3, 3}), c(), no_mode, d()), errors::all_real_or_complex},
        {"ZXWeight", weight(f(), c(), no_mode, d()), errors::should_be_real4_or_real8},
        {"ZXWeight", weight(f(), f(3, 2), no_mode, d()), errors::invalid_image_type},
        {"ZXWeight", weight(f(), f(3, 2), no_mode, f(2)), errors::invalid_mode},
        {"ZXWeight", weight(f(), f(3, 2), 0, f(2), inf), errors::different_size},
        {"ZXWeight", weight(f(), f(3, 2), 0, null, inf), errors::invalid_image_size},
        {"ZXWeight", weight(f(), f(3, 1), 0, null, inf), errors::parameters_invalid},
        {"ZXFTWindow", {f(), no_mode, d(2)}, errors::invalid_image_type},
        {"ZXFTWindow", {f(), no_mode, f(2)}, errors::invalid_mode},
        {"ZXFTWindow", {f(), integer{7}, f(2)}, errors::different_size},
        {"ZXHanningWindow", {f(), 0.0, 1.0, 0.0, d(2)}, errors::invalid_image_type},
        {"ZXHanningWindow", {f(), 0.0, 1.0, 0.0, f(2)}, errors::different_size},
        {"ZXVorbisWindow", {f(), i, i, i, whole_numbers(HOST_ELEMENT_COMPLEX128, {6, 4})}, errors::invalid_image_type},
        {"ZXVorbisWindow", {f(), i, i, i, c(2)}, errors::different_size},
        {"ZXMask", {c(), null, null, 1.0, 0.0, null}, errors::parameters_invalid},
        {"ZXMask", {c(), f(), c(), 1.0, 0.0, null}, errors::all_complex},
        {"ZXMask", {c(), c(), c(), 1.0, 0.0, f()}, errors::should_be_real4_or_real8},
        {"ZXMask", {c(), null, f(), -1.0, 0.0, f()}, errors::all_same_complex},
        {"ZXMask", {c(), null, f(), -1.0, 0.0, c(2)}, errors::invalid_matrix_size},
        {"ZXMask", {c(), null, matrix(), -1.0, 0.0, c(2)}, errors::parameters_invalid},
        {"ZXMask", {c(), null, matrix(), 1.0, 0.0, c(2)}, errors::different_size},
        {"ZXCrossCorrelationMaskWithDefocus", correlation(c(), f(), no_mode, f()), errors::all_complex},
        {"ZXCrossCorrelationMaskWithDefocus", correlation(c(), c(3), no_mode, f()), errors::all_same_complex},
        {"ZXCrossCorrelationMaskWithDefocus", correlation(c(), c(3), no_mode, null), errors::invalid_mode},
        {"ZXCrossCorrelationMaskWithDefocus", correlation(c(), c(3), 0, null, -1), errors::different_size},
        {"ZXCrossCorrelationMaskWithDefocus", correlation(c(), c(), 0, null, -1), errors::parameters_invalid},
    });
}

TEST(Statistics, StoreEachOutputInItsPlace)
{
    script_host script;
    const auto three = image_of<float>({2, -4, 1}, {3});
    const auto first = image_of<float>({1, 2, 3, 4}, {2, 2}), second = image_of<float>({1, 0, 5, 4}, {2, 2});
    std::vector<std::int32_t> pixels(4 * 3 * 2, 5);
    pixels[2 + 4 * (1 + 3 * 1)] = -8, pixels[3 + 4 * 2] = 90, pixels[23] = 90;
    const auto volume = image_of(pixels, {4, 3, 2});
    const std::vector<double> extrema{2, 1, 1, -8, 3, 2, 0, 90};
    for (const auto& [name, sources, outputs] : std::vector<std::tuple<const char*, arguments, std::vector<double>>>{
             {"ZXSurvey", {three}, {-4, 2, -1, 21, 7}},
             {"ZXSurvey", {three}, {-4, 2, -1, 21}},
             {"ZXSurveyDifference", {first, second}, {10, 30, 10, 42, 0, 8, 4}},
             {"ZXMinMax", {volume}, extrema},
             {"ZXMinMaxStable", {volume}, extrema},
             {"ZXMin", {volume}, {2, 1, 1}},
             {"ZXMax", {volume}, {3, 2, 0}}}) {
        const auto args = with_cells(sources, static_cast<int>(outputs.size()));
        const auto returned = script.call(name, args);
        EXPECT_EQ(outputs_of(args), outputs) << name;
        EXPECT_TRUE(outputs.size() != 3 || returned == script_value{outputs[2] == 1 ? -8. : 90.}) << name;
    }

    std::vector<float> spot(16 * 16);
    for (int y = 9; y < 12; ++y)
        for (int x = 4; x < 7; ++x) spot[static_cast<std::size_t>(x + 16 * y)] = 5;
    arguments args{image_of(spot, {16, 16}), make_cell(8.0), make_cell(8.0), 5.0, integer{20}, 0.0};
    EXPECT_EQ(std::get<integer>(script.call("ZXGetCenterOfMass", args)), 2);
    EXPECT_EQ(outputs_of(args), (std::vector<double>{5, 10}));
}

TEST(RadialSurvey, MakesAProfileForEachPlane)
{
    script_host script;
    for (const std::uint32_t code : real_types)
        for (const std::uint32_t depth : {1u, 3u}) {
            const auto source = whole_numbers(code, depth == 1 ? std::vector{7u, 5u} : std::vector{7u, 5u, depth});
            const auto profile = script.call_image("ZXRadialSurvey", {source, integer{3}, integer{2}, 1.0, 1.0});
            EXPECT_EQ(profile->code(), code == 7 || code == 11 || code == 12 ? 12u : 2u) << "type " << code;
            EXPECT_EQ(profile->dimensions(), depth == 1 ? 1u : 2u);
            EXPECT_EQ(profile->size(0), 5u);  // the corner is at radius sqrt(13)
            EXPECT_EQ(profile->size(1), depth);
        }
}

TEST(Windows, HaveTheShapesOfTheirNames)
{
    script_host script;
    const auto ones = image_of<double>({1, 1, 1, 1}, {4, 1});
    const double s = std::sin(std::numbers::pi / 8), v = std::sin(std::numbers::pi / 2 * s * s);
    for (const auto& [name, first] : {std::pair{"ZXHanningWindow", 0.}, {"ZXSineWindow", s}, {"ZXVorbisWindow", v}}) {
        const auto real = script.call_image(name, {ones, 0.5, 4.0, 3.0, null});
        EXPECT_NEAR(real->at<double>(0), (1 - 0.5) * first * 4 + 3, 1e-14) << name;
        const auto turned = complex_at(script.call_image(name, {ones, -i, 2.0 * i, 3.0 + i, null}), 0);
        EXPECT_LT(std::abs(turned - (2.0 * i - 2.0) * first - (3.0 + i)), 1e-14) << name;
    }
}

TEST(Masks, ReadPeaksAndMatrixTogether)
{
    script_host script;
    const auto spectrum = image_of(std::vector<std::complex<double>>(9 * 9, {1, 2}), {9, 9});
    const auto kept = [&](script_value peak_list, script_value lattice) {
        std::vector<std::size_t> places;
        const auto masked = script.call_image("ZXMask", {spectrum, peak_list, lattice, 0.5, 0.0, null});
        const auto pixels = pixels_of<std::complex<double>>(masked);
        for (std::size_t k = 0; k < pixels.size(); ++k)
            if (pixels[k] != 0.0) places.push_back(k);
        return places;
    };
    using testing::ElementsAre;
    EXPECT_THAT(kept(peaks(), null), ElementsAre(1 + 9 * 2, 5 + 9 * 3));
    EXPECT_THAT(kept(null, matrix()), ElementsAre(0, 4, 8, 36, 40, 44, 72, 76, 80));
    const auto placed = image_of<float>({1, 0, 2, 0, 1, 1}, {3, 2});  // origin (2, 1)
    EXPECT_THAT(kept(peaks(), placed), ElementsAre(3 + 9 * 3, 7 + 9 * 4));
}

TEST(Masks, CorrelationStoresTheMeanModulusOfItsResult)
{
    script_host script;
    const auto target = image_of<std::complex<double>>({2.0 * i, 3, 4}, {3});
    const auto reference = image_of<std::complex<double>>({1, i, 1}, {3});
    arguments args{target, reference, integer{0}, integer{0}, 1.0, 1.0, 0.0, 1.0, integer{0}, make_cell(), null};
    const auto result = pixels_of<std::complex<double>>(script.call_image("ZXCrossCorrelationMaskWithDefocus", args));
    EXPECT_EQ(result, (std::vector<std::complex<double>>{2.0 * i, -3.0 * i, 0}));
    EXPECT_EQ(outputs_of(args), std::vector<double>{2.5});
}

}  // namespace
