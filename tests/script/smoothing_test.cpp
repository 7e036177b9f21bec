#include <cstdlib>

#include "image/errors.h"
#include "tests/script/destinations.h"

// Moving averages and the Gaussian as a script meets them. What they compute is tested with their kernels.
namespace {

using namespace script;
namespace errors = qorv::dm::errors;

const script_value null{};

TEST(Smoothing, FillsItsDestination)
{
    const auto box = [](auto s, auto d) { return arguments{s, integer{2}, d}; };
    const auto blur = [](auto s, auto d) { return arguments{s, 1.5, integer{3}, d}; };
    const auto& types = float_and_complex_types;
    expect_destination_rules(
        {"ZXMovingAverage", "MovingAverageDM", types, box, in_place::not_offered, same_type, false});
    expect_destination_rules({"ZXGaussianBlur", "GaussianBlurDM", float_types, blur});
    for (const auto& [name, counter] : {std::pair{"ZXMovingAverageX", "MovingAverageXDM"},
                                        {"ZXMovingAverageY", "MovingAverageYDM"},
                                        {"ZXMovingAverageZ", "MovingAverageZDM"}})
        expect_destination_rules({name, counter, types, box, in_place::same_result, same_type, true, {{6, 5, 4}}});
}

TEST(Smoothing, AveragesInPlaceAxisByAxis)
{
    script_host script;
    const auto source = whole_numbers(2, {6, 5, 4}), inside = source->clone(), by_axes = source->clone();
    EXPECT_EQ(script.call_image("ZXMovingAverage", {inside, integer{2}, inside}), inside);
    EXPECT_EQ(inside->changes(), 1u);
    for (const char* name : {"ZXMovingAverageX", "ZXMovingAverageY", "ZXMovingAverageZ"})
        script.call(name, {by_axes, integer{2}, by_axes});
    EXPECT_EQ(bytes_of(inside), bytes_of(by_axes));
    // Apart it divides otherwise, since y and z are shorter than the window.
    EXPECT_NE(bytes_of(inside), bytes_of(script.call_image("ZXMovingAverage", {source, integer{2}, null})));
}

TEST(Smoothing, LeavesTheDestinationAloneWithoutAPass)
{
    script_host script;
    for (const auto& [name, radius] :
         {std::pair{"ZXMovingAverageX", integer{0}}, {"ZXMovingAverageY", -1}, {"ZXMovingAverageZ", -2147483647}}) {
        const auto source = whole_numbers(2, {6, 5, 4}), given = whole_numbers(2, {6, 5, 4}, 5);
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
    const auto source = whole_numbers(2, {6, 5, 3});
    const auto mine = [](const extents& sizes) { return spread(whole_numbers(2, sizes, 5), 1).picture; };
    image_ref wanted[2];
    for (const row& r :
         {row{nullptr, nullptr, false}, row{mine({6, 5}), mine({6, 5, 2}), true}, row{mine({6, 5}), nullptr, false},
          row{nullptr, mine({6, 5}), false}, row{mine({6, 5}), mine({6, 4}), false},
          row{mine({5, 5}), mine({6, 5}), false}, row{mine({6, 5}), whole_numbers(12, {6, 5}), false}}) {
        const auto first = make_cell(r.first), second = make_cell(r.second);
        script.call("ZXMovingAverage2", {source, integer{1}, first, second});
        EXPECT_EQ(picture_in(first) == r.first, r.reused);
        EXPECT_EQ(picture_in(second) == r.second, r.reused);
        EXPECT_EQ(picture_in(first)->dimensions(), 2u);
        EXPECT_EQ(picture_in(first)->changes() + picture_in(second)->changes(), 2u);
        const auto mean = picture_in(first)->clone(), squares = picture_in(second)->clone();
        if (!wanted[0]) wanted[0] = mean, wanted[1] = squares;
        EXPECT_EQ(bytes_of(mean), bytes_of(wanted[0]));
        EXPECT_EQ(std::memcmp(squares->data(), wanted[1]->data(), bytes_of(wanted[1]).size()), 0);
    }
    EXPECT_EQ(script.host().records().traces().at("MovingAverageDM2").reports, 7u);

    for (const std::uint32_t code : float_and_complex_types) {
        const auto two = image::create("two", code, extents{2});
        qorv::dm::visit(qorv::dm::real_or_complex{}, code, [&]<class T>() { two->at<T>(0) = 2, two->at<T>(1) = 4; });
        const auto mean = make_cell(), squares = make_cell();
        script.call("ZXMovingAverage2", {two, integer{1}, mean, squares});
        qorv::dm::visit(qorv::dm::real_or_complex{}, code, [&]<class T>() {
            EXPECT_EQ(pixels_of<T>(picture_in(mean)), (std::vector<T>{3, 3}));
            EXPECT_EQ(pixels_of<T>(picture_in(squares)), (std::vector<T>{10, 10}));
        });
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

TEST(Smoothing, HasTheSameBitsOnEveryPlatform)
{
    script_host script;
    const auto volume = [](std::uint32_t code) { return whole_numbers(code, {37, 29, 11}); };
    for (const auto& [name, given, wanted] : std::vector<std::tuple<const char*, arguments, std::uint64_t>>{
             {"ZXMovingAverage", {volume(2), integer{3}, null}, 0xa75d865754ac7892},
             {"ZXMovingAverageX", {volume(3), integer{3}, null}, 0x658404acb72250f9},
             {"ZXMovingAverageZ", {volume(2), integer{3}, null}, 0x61addca05b6c2d5c},
             {"ZXGaussianBlur", {whole_numbers(2, {67, 53}), 2., integer{3}, null}, 0x2fb170c1e81ac9a8}}) {
        const auto got = digest(script.call_image(name, given));
        EXPECT_EQ(got, wanted) << name << std::hex << " 0x" << got;
    }
}

}  // namespace
