#include "image/errors.h"
#include "tests/script/destinations.h"

// Moving averages and the Gaussian called as scripts call them. Their values are tested with their kernels.
namespace {

using namespace script;
namespace errors = qorv::dm::errors;

TEST(Smoothing, WithoutAPassOnlyNotifiesTheHost)
{
    script_host script;
    for (const auto& [name, radius] : {std::pair{"ZXMovingAverageX", integer{0}}, {"ZXMovingAverageZ", -2147483647}}) {
        const auto source = whole_numbers(HOST_ELEMENT_FLOAT32, {6, 5, 4}),
                   destination = whole_numbers(HOST_ELEMENT_FLOAT32, {6, 5, 4}, 5);
        const auto before = bytes_of(destination);
        EXPECT_EQ(script.call_image(name, {source, radius, destination}), destination);
        EXPECT_EQ(bytes_of(destination), before) << name;
        EXPECT_EQ(destination->changes(), 1u) << name;
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
    const auto source = whole_numbers(HOST_ELEMENT_FLOAT32, {6, 5, 3});
    const auto of = [](const extents& sizes, std::uint32_t code = 2) { return whole_numbers(code, sizes, 5); };
    const auto expected_mean = script.call_image("ZXMovingAverage", {source, integer{1}, of({6, 5})});
    std::vector<unsigned char> squares;
    for (const row& r :
         {row{nullptr, nullptr, false}, row{of({6, 5}), of({6, 5}), true}, row{of({6, 5}), nullptr, false},
          row{nullptr, of({6, 5}), false}, row{of({6, 5}), of({6, 4}), false}, row{of({5, 5}), of({6, 5}), false},
          row{of({6, 5}), of({6, 5}, 12), false}}) {
        const auto first = make_cell(r.first), second = make_cell(r.second);
        script.call("ZXMovingAverage2", {source, integer{1}, first, second});
        EXPECT_EQ(picture_in(first) == r.first, r.reused);
        EXPECT_EQ(picture_in(second) == r.second, r.reused);
        EXPECT_EQ(picture_in(first)->dimensions(), 2u);
        EXPECT_EQ(picture_in(first)->changes() + picture_in(second)->changes(), 2u);
        EXPECT_EQ(bytes_of(picture_in(first)), bytes_of(expected_mean));
        if (squares.empty()) squares = bytes_of(picture_in(second));
        EXPECT_EQ(bytes_of(picture_in(second)), squares);
    }
    EXPECT_EQ(script.host().records().traces().at("MovingAverageDM2").reports, 7u);

    for (const std::uint32_t code : float_and_complex_types) {
        const auto two = image::create("two", code, extents{2});
        qorv::dm::visit(qorv::dm::real_or_complex{}, code, [&]<class T>() { two->at<T>(0) = 2, two->at<T>(1) = 4; });
        const auto mean = make_cell(), mean_square = make_cell();
        script.call("ZXMovingAverage2", {two, integer{1}, mean, mean_square});
        EXPECT_EQ(std::pair(picture_in(mean)->code(), picture_in(mean_square)->code()), std::pair(code, code));
        EXPECT_EQ(std::pair(picture_in(mean)->name(), picture_in(mean_square)->name()),
                  std::pair(std::string{"Mean"}, std::string{"Mean of squares"}));
        for (const std::ptrdiff_t x : {0, 1}) {
            EXPECT_EQ(complex_at(picture_in(mean), x), 3.);
            EXPECT_EQ(complex_at(picture_in(mean_square), x), 10.);
        }
    }
}

TEST(Smoothing, RefusesInOrder)
{
    const auto of = [](std::uint32_t code, extents sizes = {4, 3}) { return whole_numbers(code, sizes); };
    const auto cell = [](image_ref held = {}) { return make_cell(std::move(held)); };
    const extents wide{5, 3}, high{4, 4};
    const auto same = of(2), source = of(2);
    expect_refusals({
        // Rows with two faults fix the order.
        {"ZXMovingAverage", {null, integer{1}, of(2)}, errors::parameters_invalid},
        {"ZXMovingAverage", {of(1), integer{1}, of(1, wide)}, errors::different_size},
        {"ZXMovingAverageX", {of(2), integer{1}, of(12, high)}, errors::different_size},
        {"ZXMovingAverageY", {of(1), integer{0}, of(2)}, errors::invalid_data_type},
        {"ZXMovingAverageZ", {of(14), integer{0}, null}, errors::invalid_data_type},
        {"ZXMovingAverage", {of(2), integer{-1}, of(12)}, errors::invalid_image_type},
        {"ZXMovingAverage", {same, integer{-1}, same}, errors::parameters_invalid},
        {"ZXMovingAverage2", {null, integer{1}, cell(), cell()}, errors::parameters_invalid},
        {"ZXMovingAverage2", {of(1), integer{-1}, cell(of(1, wide)), cell()}, errors::invalid_data_type},
        {"ZXMovingAverage2", {source, integer{-1}, cell(same), cell(same)}, errors::parameters_invalid},
        {"ZXMovingAverage2", {source, integer{1}, cell(same), cell(same)}, errors::out_of_place},
        {"ZXMovingAverage2", {source, integer{1}, cell(source), cell(same)}, errors::out_of_place},
        {"ZXMovingAverage2", {source, integer{1}, cell(same), cell(source)}, errors::out_of_place},
        {"ZXGaussianBlur", {null, 1., integer{1}, of(2)}, errors::parameters_invalid},
        {"ZXGaussianBlur", {of(3), -1., integer{3}, of(2, wide)}, errors::different_size},
        {"ZXGaussianBlur", {of(2), -1., integer{3}, of(12)}, errors::all_real},
        {"ZXGaussianBlur", {of(1), 1., integer{3}, null}, errors::all_real},
        {"ZXGaussianBlur", {of(2), -1., integer{3}, null}, errors::parameters_invalid},
        {"ZXGaussianBlur", {of(12), 1., integer{-1}, of(12)}, errors::parameters_invalid},
    });
}

}  // namespace
