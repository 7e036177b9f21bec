#include <algorithm>
#include <cstdlib>
#include <limits>

#include "image/errors.h"
#include "script/destinations.h"

// Moving averages and the Gaussian as a script meets them: windows and divisors, outputs, texts and their order.
namespace {

using namespace script;
namespace errors = qorv::dm::errors;

const script_value null{};
constexpr integer max_radius = 0x7FFFFFFF;

auto box(integer radius)
{
    return [=](const image_ref& source, const image_ref& destination) {
        return arguments{source, radius, destination};
    };
}

TEST(Smoothing, FillsItsDestination)
{
    const std::vector<extents> volumes{{6, 5, 4}, {13, 2, 9}};
    for (const integer radius : {integer{1}, integer{3}, max_radius})
        for (const auto& row :
             std::vector<destination_row>{{"ZXMovingAverage", "MovingAverageDM", float_and_complex_types, box(radius),
                                           in_place::not_offered, same_type, false},
                                          {"ZXMovingAverageX", "MovingAverageXDM", float_and_complex_types, box(radius),
                                           in_place::same_result, same_type, true, volumes},
                                          {"ZXMovingAverageY", "MovingAverageYDM", float_and_complex_types, box(radius),
                                           in_place::same_result, same_type, true, volumes},
                                          {"ZXMovingAverageZ", "MovingAverageZDM", float_and_complex_types, box(radius),
                                           in_place::same_result, same_type, true, volumes}})
            expect_destination_rules(row);
    for (const auto& [sigma, order] : {std::pair{1.5, 3}, {0., 3}, {2., 0}, {40., 9}})
        expect_destination_rules(
            {"ZXGaussianBlur", "GaussianBlurDM", float_types, [sigma = sigma, order = integer{order}](auto s, auto d) {
                 return arguments{s, sigma, order, d};
             }});
}

/// Sum and count of f(number) in the window of `radius` around a pixel of the first plane, clipped to the image.
template <class F>
std::pair<double, int> window_sum(const image_ref& picture, int x, int y, integer radius, F f)
{
    double sum = 0;
    int count = 0;
    for (int v = 0; v < static_cast<int>(picture->size(1)); ++v)
        for (int u = 0; u < static_cast<int>(picture->size(0)); ++u)
            if (std::abs(v - y) <= radius && std::abs(u - x) <= radius) sum += f(number_at(picture, u, v)), ++count;
    return {sum, count};
}

// Sums of whole numbers are exact in either precision, so that only the division rounds.
TEST(Smoothing, DividesByThePixelsOfTheClippedWindow)
{
    script_host script;
    for (const integer radius : {integer{0}, integer{1}, integer{2}, integer{8}, max_radius})
        for (const extents& sizes : std::vector<extents>{{1}, {17}, {1, 9}, {9, 7}}) {
            const auto source = whole_numbers(2, sizes);
            const auto mean = script.call_image("ZXMovingAverage", {source, radius, null});
            const auto first = make_cell(), second = make_cell();
            script.call("ZXMovingAverage2", {source, radius, first, second});
            for (int y = 0; y < static_cast<int>(source->size(1)); ++y)
                for (int x = 0; x < static_cast<int>(source->size(0)); ++x) {
                    const auto [sum, count] = window_sum(source, x, y, radius, [](double v) { return v; });
                    const auto [squares, _] = window_sum(source, x, y, radius, [](double v) { return v * v; });
                    const auto divisor = static_cast<float>(count);
                    ASSERT_EQ(number_at(mean, x, y), static_cast<float>(sum) / divisor);
                    ASSERT_EQ(number_at(picture_in(first), x, y), static_cast<float>(sum) / divisor);
                    ASSERT_EQ(number_at(picture_in(second), x, y), static_cast<float>(squares) / divisor);
                }
        }
}

TEST(Smoothing, DividesAlongOneAxisAsIfOnlyOneEndClipped)
{
    script_host script;
    for (const auto& [name, sizes] : std::vector<std::pair<const char*, extents>>{
             {"ZXMovingAverageX", {7}}, {"ZXMovingAverageY", {1, 7}}, {"ZXMovingAverageZ", {1, 1, 7}}})
        for (const int radius : {1, 2, 3, 5, 6, 7, 20}) {
            const auto line = whole_numbers(2, sizes);
            const auto* from = static_cast<const float*>(line->data());
            const auto got = pixels_of<float>(script.call_image(name, {line, integer{radius}, null}));
            const float window = static_cast<float>(2 * radius + 1), inverse = 1 / window;
            for (int i = 0; i < 7; ++i) {
                float sum = 0;
                for (int k = std::max(i - radius, 0); k <= std::min(i + radius, 6); ++k) sum += from[k];
                const bool left = i < std::min(7 - radius, radius + 1), interior = !left && i < 7 - radius;
                const int divisor = left ? i + radius + 1 : 7 - i + radius;
                ASSERT_EQ(got[i], interior ? sum * inverse : sum * inverse * (window / static_cast<float>(divisor)))
                    << name << ", radius " << radius << ", sample " << i;
            }
        }
}

TEST(Smoothing, AveragesVolumesByPlanesThenZAndInPlaceAxisByAxis)
{
    script_host script;
    for (const std::uint32_t code : float_and_complex_types) {
        const auto source = whole_numbers(code, {6, 5, 4});
        const auto apart = script.call_image("ZXMovingAverage", {source, integer{2}, null});
        const auto by_planes = source->clone();
        const std::size_t plane_bytes = 30 * source->type().bytes;
        for (std::size_t z = 0; z < 4; ++z) {
            const auto plane = image::create("plane", code, extents{6, 5});
            std::memcpy(plane->data(), bytes_of(source).data() + z * plane_bytes, plane_bytes);
            const auto mean = script.call_image("ZXMovingAverage", {plane, integer{2}, null});
            std::memcpy(static_cast<char*>(by_planes->data()) + z * plane_bytes, mean->data(), plane_bytes);
        }
        script.call("ZXMovingAverageZ", {by_planes, integer{2}, by_planes});
        EXPECT_EQ(bytes_of(apart), bytes_of(by_planes));

        const auto inside = source->clone(), by_axes = source->clone();
        EXPECT_EQ(script.call_image("ZXMovingAverage", {inside, integer{2}, inside}), inside);
        EXPECT_EQ(inside->changes(), 1u);
        for (const char* name : {"ZXMovingAverageX", "ZXMovingAverageY", "ZXMovingAverageZ"})
            script.call(name, {by_axes, integer{2}, by_axes});
        EXPECT_EQ(bytes_of(inside), bytes_of(by_axes));
        EXPECT_NE(bytes_of(inside), bytes_of(apart));  // other divisors, since y and z are shorter than the window

        const auto shallow = whole_numbers(code, {6, 5, 1}, 5), deep = whole_numbers(code, {6, 5, 6}, 5);
        auto wanted = bytes_of(deep);
        std::memcpy(wanted.data(), apart->data(), 4 * plane_bytes);
        EXPECT_EQ(script.call_image("ZXMovingAverage", {source, integer{2}, shallow}), shallow);
        script.call("ZXMovingAverage", {source, integer{2}, deep});
        EXPECT_EQ(bytes_of(deep), wanted);
    }
}

TEST(Smoothing, LeavesTheDestinationAloneWithoutAPass)
{
    script_host script;
    for (const auto& [name, sizes, radius] :
         std::vector<std::tuple<const char*, extents, integer>>{{"ZXMovingAverageX", {6, 5, 4}, 0},
                                                                {"ZXMovingAverageY", {6, 5, 4}, -1},
                                                                {"ZXMovingAverageZ", {6, 5, 4}, -2147483647},
                                                                {"ZXMovingAverageX", {1, 5, 4}, 2},
                                                                {"ZXMovingAverageY", {6, 1, 4}, 2},
                                                                {"ZXMovingAverageZ", {6, 5, 1}, 2},
                                                                {"ZXMovingAverageZ", {6, 5}, 2}}) {
        const auto source = whole_numbers(2, sizes), given = whole_numbers(2, sizes, 5);
        const auto before = bytes_of(given);
        EXPECT_EQ(script.call_image(name, {source, radius, given}), given);
        EXPECT_EQ(bytes_of(given), before) << name;
        EXPECT_EQ(given->changes(), 1u) << name;
        EXPECT_EQ(bytes_of(script.call_image(name, {source, radius, null})), bytes_of(source)) << name;
    }
}

TEST(Smoothing, BothMeansFillTwoOutputsThatFitOrMakeTwo)
{
    script_host script;
    struct row
    {
        image_ref first, second;
        bool reused;
    };
    for (const std::uint32_t code : float_and_complex_types) {
        const auto source = whole_numbers(code, {6, 5, 3});
        const auto mine = [&](const extents& sizes) { return spread(whole_numbers(code, sizes, 5), 1).picture; };
        image_ref wanted[2];
        for (const row& r : {row{nullptr, nullptr, false}, row{mine({6, 5}), mine({6, 5, 2}), true},
                             row{mine({6, 5}), nullptr, false}, row{nullptr, mine({6, 5}), false},
                             row{mine({6, 5}), mine({6, 4}), false}, row{mine({5, 6}), mine({6, 5}), false},
                             row{mine({6, 5}), whole_numbers(code == 2 ? 12 : 2, {6, 5}), false}}) {
            const auto first = make_cell(r.first), second = make_cell(r.second);
            script.call("ZXMovingAverage2", {source, integer{1}, first, second});
            EXPECT_EQ(picture_in(first) == r.first, r.reused);
            EXPECT_EQ(picture_in(second) == r.second, r.reused);
            const auto mean = picture_in(first)->clone(), squares = picture_in(second)->clone();
            EXPECT_EQ(mean->dimensions(), 2u);
            EXPECT_EQ(squares->dimensions(), r.reused ? 3u : 2u);
            EXPECT_EQ(picture_in(first)->changes() + picture_in(second)->changes(), 2u);
            if (!wanted[0]) wanted[0] = mean, wanted[1] = squares;
            EXPECT_EQ(bytes_of(mean), bytes_of(wanted[0]));
            EXPECT_EQ(std::memcmp(squares->data(), wanted[1]->data(), bytes_of(wanted[1]).size()), 0);
        }
    }
    EXPECT_EQ(script.host().records().traces().at("MovingAverageDM2").reports, 28u);
}

TEST(Smoothing, RefusesInOrder)
{
    const auto of = [](std::uint32_t code, extents sizes = {4, 3}) { return whole_numbers(code, sizes); };
    const auto cell = [](image_ref held = {}) { return make_cell(std::move(held)); };
    const extents wide{5, 3}, high{4, 4};
    const auto same = of(2), source = of(2);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    std::vector<refusal> rows{
        // Rows with two faults fix the order.
        {"ZXMovingAverage", {of(2), integer{-1}, null}, errors::parameters_invalid},
        {"ZXMovingAverage", {of(2), integer{-1}, of(12)}, errors::invalid_image_type},
        {"ZXMovingAverage", {same, integer{-1}, same}, errors::parameters_invalid},
        {"ZXMovingAverage2", {of(1), integer{-1}, cell(of(1, wide)), cell()}, errors::invalid_data_type},
        {"ZXMovingAverage2", {of(14), integer{1}, cell(), cell()}, errors::invalid_data_type},
        {"ZXMovingAverage2", {source, integer{-1}, cell(same), cell(same)}, errors::parameters_invalid},
        {"ZXMovingAverage2", {source, integer{1}, cell(same), cell(same)}, errors::out_of_place},
        {"ZXMovingAverage2", {source, integer{1}, cell(source), cell(same)}, errors::out_of_place},
        {"ZXMovingAverage2", {source, integer{1}, cell(same), cell(source)}, errors::out_of_place},
        {"ZXMovingAverage2", {null, integer{1}, cell(), cell()}, errors::parameters_invalid},
        {"ZXGaussianBlur", {of(3), -1., integer{3}, of(2, wide)}, errors::different_size},
        {"ZXGaussianBlur", {of(2), -1., integer{3}, of(12)}, errors::all_real},
        {"ZXGaussianBlur", {of(3), 1., integer{3}, null}, errors::all_real},
        {"ZXGaussianBlur", {of(1), 1., integer{3}, null}, errors::all_real},
        {"ZXGaussianBlur", {of(2), -1., integer{3}, null}, errors::parameters_invalid},
        {"ZXGaussianBlur", {of(2), nan, integer{3}, of(2)}, errors::parameters_invalid},
        {"ZXGaussianBlur", {of(12), 1., integer{-1}, of(12)}, errors::parameters_invalid},
        {"ZXGaussianBlur", {null, 1., integer{1}, of(2)}, errors::parameters_invalid},
    };
    for (const char* name : {"ZXMovingAverage", "ZXMovingAverageX", "ZXMovingAverageY", "ZXMovingAverageZ"}) {
        const integer radius{1};
        rows.push_back({name, {of(1), radius, of(1, wide)}, errors::different_size});
        rows.push_back({name, {of(2), radius, of(12, high)}, errors::different_size});
        rows.push_back({name, {of(1), radius, of(2)}, errors::invalid_data_type});
        rows.push_back({name, {of(2), radius, of(3)}, errors::invalid_image_type});
        rows.push_back({name, {null, radius, of(2)}, errors::parameters_invalid});
        for (const std::uint32_t code : {1u, 6u, 7u, 9u, 10u, 11u, 14u, 23u})
            rows.push_back({name, {of(code), integer{0}, null}, errors::invalid_data_type});
    }
    expect_refusals(rows);
}

TEST(Smoothing, HasTheSameBitsOnEveryPlatform)
{
    script_host script;
    for (const auto& [name, code, wanted] : std::vector<std::tuple<const char*, std::uint32_t, std::uint64_t>>{
             {"ZXMovingAverage", 2, 0xa75d865754ac7892},
             {"ZXMovingAverageX", 3, 0x658404acb72250f9},
             {"ZXMovingAverageZ", 2, 0x61addca05b6c2d5c}}) {
        const auto got = digest(script.call_image(name, {whole_numbers(code, {37, 29, 11}), integer{3}, null}));
        EXPECT_EQ(got, wanted) << name << std::hex << " 0x" << got;
    }
    const auto blurred = script.call_image("ZXGaussianBlur", {whole_numbers(2, {67, 53}), 2., integer{3}, null});
    EXPECT_EQ(digest(blurred), 0x2fb170c1e81ac9a8) << std::hex << " 0x" << digest(blurred);
}

}  // namespace
