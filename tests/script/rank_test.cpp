#include <algorithm>

#include "image/errors.h"
#include "script/destinations.h"

// Rank filters and medians as a script meets them; the truth is sorting.
namespace {

using namespace script;
namespace errors = qorv::dm::errors;

const script_value null{};
constexpr integer max_radius = 0x7FFFFFFF;
const std::vector<std::uint32_t> real_and_binary{1, 2, 6, 7, 9, 10, 11, 12, 14};

auto with_radius(integer radius)
{
    return [=](const image_ref& source, const image_ref& destination) {
        return arguments{source, radius, destination};
    };
}

TEST(Ranks, FillTheirDestination)
{
    const auto padded = [](auto s, auto d) { return arguments{s, integer{2}, d, integer{-1}}; };
    for (const auto& row : std::vector<destination_row>{
             {"ZXMaximumFilter", "MaximumFilterDM", real_and_binary, with_radius(2), in_place::refused},
             {"ZXMinimumFilter", "MinimumFilterDM", real_and_binary, with_radius(1), in_place::refused},
             {"ZXMedianFilter", "MedianFilterDM2", float_types, with_radius(1), in_place::refused},
             {"ZXMedianFilter", "MedianFilterDM2", float_types, padded, in_place::refused},
             {"ZXMedianFilter", "MedianFilterDM2", integer_types, with_radius(3), in_place::not_offered, float_type}})
        expect_destination_rules(row);
}

/// The numbers in the window around a pixel, sorted; with `zeros`, a zero for each position outside.
std::vector<double> sorted_window(const image_ref& picture, integer radius, int x, int y, int z, bool zeros = false)
{
    std::vector<double> window;
    for (int v = 0; v < static_cast<int>(picture->size(1)); ++v)
        for (int u = 0; u < static_cast<int>(picture->size(0)); ++u)
            if (std::abs(v - y) <= radius && std::abs(u - x) <= radius) window.push_back(number_at(picture, u, v, z));
    if (zeros) window.resize(static_cast<std::size_t>((2 * radius + 1) * (2 * radius + 1)));
    std::ranges::sort(window);
    return window;
}

double median_of(const std::vector<double>& sorted)
{
    const std::size_t half = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted[half] : (sorted[half - 1] + sorted[half]) * 0.5;
}

TEST(Ranks, ComeFromTheSortedWindow)
{
    script_host script;
    for (const std::uint32_t code : real_and_binary)
        for (const extents& sizes : std::vector<extents>{{1}, {11}, {1, 7}, {9, 6, 2}})
            for (const integer radius : {integer{0}, integer{1}, integer{2}, integer{7}, max_radius}) {
                const auto source = whole_numbers(code, sizes);
                const auto highest = script.call_image("ZXMaximumFilter", {source, radius, null}),
                           lowest = script.call_image("ZXMinimumFilter", {source, radius, null});
                image_ref median, padded;
                if (code != 14) median = script.call_image("ZXMedianFilter", {source, radius, null});
                if (code != 14 && radius < 8)
                    padded = script.call_image("ZXMedianFilter", {source, radius, null, integer{1}});
                for (std::uint32_t i = 0; i < source->count(); ++i) {
                    const int x = static_cast<int>(i % sizes[0]), y = static_cast<int>(i / sizes[0] % source->size(1)),
                              z = static_cast<int>(i / sizes[0] / source->size(1));
                    const auto window = sorted_window(source, radius, x, y, z);
                    ASSERT_EQ(number_at(highest, x, y, z), window.back());
                    ASSERT_EQ(number_at(lowest, x, y, z), window.front());
                    if (median) {
                        ASSERT_EQ(number_at(median, x, y, z), median_of(window));
                    }
                    if (padded) {
                        ASSERT_EQ(number_at(padded, x, y, z), median_of(sorted_window(source, radius, x, y, z, true)));
                    }
                }
            }
}

TEST(Ranks, OfAWholeImageComeFromItsSortedPixels)
{
    script_host script;
    unsigned calls = 0;
    for (const std::uint32_t code : real_types)
        for (const extents& sizes : std::vector<extents>{{1}, {2}, {7, 5}, {67, 61}, {4, 3, 2}})
            for (const auto step : spread_steps)
                for (const bool simd : {true, false}) {
                    script.use_simd(simd);
                    const auto source = spread(whole_numbers(code, sizes), step).picture;
                    std::vector<double> sorted;
                    for (std::uint32_t z = 0; z < source->size(2); ++z)
                        for (std::uint32_t y = 0; y < source->size(1); ++y)
                            for (std::uint32_t x = 0; x < source->size(0); ++x)
                                sorted.push_back(number_at(source, x, y, z));
                    std::ranges::sort(sorted);
                    const auto before = source->fingerprint();
                    for (const std::size_t n : {std::size_t{0}, sorted.size() / 3, sorted.size() - 1}) {
                        ++calls;
                        ASSERT_EQ(std::get<double>(script.call("ZXNthElement", {source, static_cast<integer>(n)})),
                                  sorted[n]);
                    }
                    ASSERT_EQ(std::get<double>(script.call("ZXMedian", {source})), median_of(sorted));
                    ASSERT_EQ(source->fingerprint(), before);
                    ASSERT_EQ(source->changes(), 0u);
                }
    EXPECT_EQ(script.host().records().traces().at("NthElementDM").reports, calls);
    EXPECT_EQ(script.host().records().traces().at("MedianDM").reports, calls / 3);
}

TEST(Ranks, MedianAlongZComesFromSortedColumns)
{
    script_host script;
    for (const std::uint32_t code : real_types)
        for (const extents& sizes : std::vector<extents>{{5}, {5, 3}, {5, 3, 2}, {6, 4, 7}, {1, 1, 600}}) {
            const auto stack = whole_numbers(code, sizes);
            const std::uint32_t w = stack->size(0), h = stack->size(1), result = code == 12 ? 12 : 2;
            const auto made = script.call_image("ZXMedianZ", {stack, null});
            EXPECT_EQ(made->code(), result);
            for (std::uint32_t y = 0; y < h; ++y)
                for (std::uint32_t x = 0; x < w; ++x) {
                    std::vector<double> column;
                    for (std::uint32_t z = 0; z < stack->size(2); ++z) column.push_back(number_at(stack, x, y, z));
                    std::ranges::sort(column);
                    ASSERT_EQ(number_at(made, x, y), median_of(column));
                }
            script.use_simd(false);
            const auto given = image::create("given", result, extents{w, h, 1});
            EXPECT_EQ(script.call_image("ZXMedianZ", {stack, given}), given);
            EXPECT_EQ(given->changes(), 1u);
            EXPECT_EQ(bytes_of(given), bytes_of(made));
            script.use_simd(true);
            for (const auto step : spread_steps) {
                const auto to = spread(whole_numbers(result, {w, h}), step);
                script.call("ZXMedianZ", {spread(stack, step).picture, to.picture});
                EXPECT_EQ(*to.memory, *spread(made, step).memory);
            }
        }
    EXPECT_EQ(script.host().records().traces().at("MedianZDM").reports, 200u);
}

TEST(Ranks, MedianAlongZMayOverwriteAPlaneOfItsStack)
{
    auto options = script_host::with_checks();
    options.check_read_locks = false;  // two images share the memory
    script_host script{options};
    const auto stack = whole_numbers(2, {5, 3, 4}), original = stack->clone();
    const auto part = [&](int elements) {  // as many elements into the stack
        return image::over("part", 2, &stack->at<float>(elements), extents{5, 3}, std::vector<std::ptrdiff_t>{1, 5},
                           access::write, stack);
    };
    EXPECT_EQ(script.failure("ZXMedianZ", {stack, part(14)}), errors::out_of_place);
    EXPECT_EQ(bytes_of(stack), bytes_of(original));
    const auto wanted = bytes_of(script.call_image("ZXMedianZ", {stack, null}));
    for (const int plane : {0, 2, 3}) {
        std::memcpy(stack->data(), original->data(), bytes_of(original).size());
        EXPECT_EQ(bytes_of(script.call_image("ZXMedianZ", {stack, part(15 * plane)})), wanted);
    }
}

TEST(Ranks, RefuseInOrder)
{
    const auto of = [](std::uint32_t code, extents sizes = {4, 3}) { return whole_numbers(code, sizes); };
    const extents wide{5, 3}, high{4, 4};
    const auto same = of(2), whole = of(1);
    const integer no_radius{-1}, radius{1};
    std::vector<refusal> rows{
        // Rows with two faults fix the order.
        {"ZXMedianFilter", {of(3), no_radius, of(2, wide)}, errors::all_real},
        {"ZXMedianFilter", {of(13), radius, null, integer{1}}, errors::all_real},
        {"ZXMedianFilter", {of(2), no_radius, of(12, high)}, errors::different_size},
        {"ZXMedianFilter", {of(2), no_radius, of(12)}, errors::invalid_image_type},
        {"ZXMedianFilter", {whole, radius, whole}, errors::invalid_image_type},
        {"ZXMedianFilter", {same, no_radius, same}, errors::parameters_invalid},
        {"ZXMedianFilter", {same, max_radius, same, integer{1}}, "vector<T> too long"},
        {"ZXMedianFilter", {same, radius, same}, errors::out_of_place},
        {"ZXMedianFilter", {null, radius, same}, errors::parameters_invalid},
        {"ZXNthElement", {of(3), integer{-1}}, errors::all_real},
        {"ZXNthElement", {of(2), integer{-1}}, errors::parameters_invalid},
        {"ZXNthElement", {of(7), integer{12}}, errors::parameters_invalid},
        {"ZXNthElement", {of(12), integer{0x7FFFFFFF}}, errors::parameters_invalid},
        {"ZXNthElement", {null, integer{0}}, errors::parameters_invalid},
        {"ZXMedian", {of(13)}, errors::all_real},
        {"ZXMedian", {null}, errors::parameters_invalid},
        {"ZXMedianZ", {of(3, {4, 3, 2}), of(3, wide)}, "imgSrc should be Real."},
        {"ZXMedianZ", {of(13), null}, "imgSrc should be Real."},
        {"ZXMedianZ", {of(2, {4, 3, 2}), of(12, wide)}, errors::invalid_image_size},
        {"ZXMedianZ", {of(2, {4, 3, 2}), of(2, high)}, errors::invalid_image_size},
        {"ZXMedianZ", {of(2, {4, 3, 2}), of(2, {4, 3, 2})}, errors::invalid_image_size},
        {"ZXMedianZ", {of(2, {4, 3, 2}), of(12)}, errors::invalid_image_type},
        {"ZXMedianZ", {of(1, {4, 3, 2}), of(1)}, errors::invalid_image_type},
        {"ZXMedianZ", {null, of(2)}, errors::parameters_invalid},
    };
    for (const char* name : {"ZXMaximumFilter", "ZXMinimumFilter"}) {
        rows.push_back({name, {of(3), no_radius, of(2, wide)}, errors::different_size});
        rows.push_back({name, {of(2), no_radius, of(2, high)}, errors::different_size});
        rows.push_back({name, {of(2), no_radius, of(12)}, errors::invalid_image_type});
        rows.push_back({name, {of(14), radius, of(6)}, errors::invalid_image_type});
        rows.push_back({name, {same, no_radius, same}, errors::parameters_invalid});
        rows.push_back({name, {same, radius, same}, errors::out_of_place});
        rows.push_back({name, {null, radius, same}, errors::parameters_invalid});
        for (const std::uint32_t code : {3u, 13u, 8u, 23u, 24u})
            rows.push_back({name, {of(code), radius, null}, errors::invalid_image_type});
    }
    expect_refusals(rows);
}

}  // namespace
