#include <limits>

#include "image/errors.h"
#include "tests/script/destinations.h"

// Rank filters and medians called as scripts call them. Their values are tested with their kernels.
namespace {

using namespace script;
namespace errors = qorv::dm::errors;

// A signed type mistaken for the unsigned one of its size would exchange the extremes.
TEST(Ranks, OrderTheValuesOfEveryType)
{
    script_host script;
    const auto check = [&]<class T>() {
        const T low = std::numeric_limits<T>::lowest(), high = std::numeric_limits<T>::max();
        const auto line = image_of<T>({high, 1, low}, {3}), five = image_of<T>({9, 100, 1, 4, 7}, {5});
        const auto middle = [&](const char* name, arguments args) {
            return number_at(script.call_image(name, args), 1);
        };
        EXPECT_EQ(middle("ZXMaximumFilter", {line, integer{1}, null}), double(high));
        EXPECT_EQ(middle("ZXMinimumFilter", {line, integer{1}, null}), double(low));
        EXPECT_EQ(middle("ZXMedianFilter", {five, integer{1}, null}), 9);
        EXPECT_EQ(middle("ZXMedianFilter", {five, integer{1}, null, integer{-1}}), 0);
        EXPECT_EQ(script.call("ZXNthElement", {five, integer{1}}), script_value{4.});
        EXPECT_EQ(script.call("ZXMedian", {five}), script_value{7.});
        EXPECT_EQ(script.call("ZXMedian", {image_of<T>({9, 100, 1, 4}, {1, 1, 4})}), script_value{6.5});
        EXPECT_EQ(five->changes(), 0u);
    };
    for (const std::uint32_t code : real_types) qorv::dm::visit(qorv::dm::eight_reals{}, code, check);
    EXPECT_EQ(script.host().records().traces().at("NthElementDM").reports, 8u);
    EXPECT_EQ(script.host().records().traces().at("MedianDM").reports, 16u);
}

TEST(Ranks, MedianAlongZMayOverwriteAPlaneOfItsStack)
{
    auto options = script_host::with_checks();
    options.check_read_locks = false;  // two images share the memory
    script_host script{options};
    const auto stack = whole_numbers(HOST_ELEMENT_FLOAT32, {5, 3, 4}), original = stack->clone();
    const auto part = [&](int elements) {  // starting at that element of the stack
        return image::over("part", 2, &stack->at<float>(elements), extents{5, 3}, std::vector<std::ptrdiff_t>{1, 5},
                           access::write, stack);
    };
    EXPECT_EQ(script.failure("ZXMedianZ", {stack, part(14)}), errors::out_of_place);
    EXPECT_EQ(bytes_of(stack), bytes_of(original));
    const auto made = script.call_image("ZXMedianZ", {stack, null});
    EXPECT_EQ(std::pair(made->dimensions(), made->changes()), std::pair(std::size_t{2}, std::uint64_t{1}));
    const auto expected = bytes_of(made);
    for (const int plane : {0, 2, 3}) {
        std::memcpy(stack->data(), original->data(), bytes_of(original).size());
        EXPECT_EQ(bytes_of(script.call_image("ZXMedianZ", {stack, part(15 * plane)})), expected);
    }
}

TEST(Ranks, RefuseInOrder)
{
    const auto of = [](std::uint32_t code, extents sizes = {4, 3}) { return whole_numbers(code, sizes); };
    const extents wide{5, 3}, high{4, 4}, stack{4, 3, 2};
    const auto same = of(2), whole = of(1);
    const integer no_radius{-1}, radius{1}, max_radius{0x7FFFFFFF};
    expect_refusals({
        // Rows with two faults fix the order.
        {"ZXMaximumFilter", {null, radius, same}, errors::parameters_invalid},
        {"ZXMinimumFilter", {of(3), no_radius, of(2, wide)}, errors::different_size},
        {"ZXMinimumFilter", {of(2), no_radius, of(12)}, errors::invalid_image_type},
        {"ZXMaximumFilter", {of(14), radius, of(6)}, errors::invalid_image_type},
        {"ZXMaximumFilter", {of(3), radius, null}, errors::invalid_image_type},
        {"ZXMaximumFilter", {same, no_radius, same}, errors::parameters_invalid},
        {"ZXMinimumFilter", {same, radius, same}, errors::out_of_place},
        {"ZXMedianFilter", {null, radius, same}, errors::parameters_invalid},
        {"ZXMedianFilter", {of(3), no_radius, of(2, wide)}, errors::all_real},
        {"ZXMedianFilter", {of(2), no_radius, of(12, high)}, errors::different_size},
        {"ZXMedianFilter", {of(2), no_radius, of(12)}, errors::invalid_image_type},
        {"ZXMedianFilter", {whole, radius, whole}, errors::invalid_image_type},
        {"ZXMedianFilter", {same, no_radius, same}, errors::parameters_invalid},
        {"ZXMedianFilter", {same, max_radius, same, integer{1}}, "vector<T> too long"},
        {"ZXMedianFilter", {same, radius, same}, errors::out_of_place},
        {"ZXNthElement", {null, integer{0}}, errors::parameters_invalid},
        {"ZXNthElement", {of(3), integer{-1}}, errors::all_real},
        {"ZXNthElement", {of(2), integer{-1}}, errors::parameters_invalid},
        {"ZXNthElement", {of(7), integer{12}}, errors::parameters_invalid},
        {"ZXMedian", {of(13)}, errors::all_real},
        {"ZXMedianZ", {null, of(2)}, errors::parameters_invalid},
        {"ZXMedianZ", {of(3, stack), of(3, wide)}, "imgSrc should be Real."},
        {"ZXMedianZ", {of(2, stack), of(12, wide)}, errors::invalid_image_size},
        {"ZXMedianZ", {of(2, stack), of(2, high)}, errors::invalid_image_size},
        {"ZXMedianZ", {of(2, stack), of(2, stack)}, errors::invalid_image_size},
        {"ZXMedianZ", {of(1, stack), of(1)}, errors::invalid_image_type},
    });
}

}  // namespace
