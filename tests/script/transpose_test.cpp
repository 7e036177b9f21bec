#include <array>

#include "host/objects/element.h"
#include "image/errors.h"
#include "tests/script/destinations.h"

// Transposes called as scripts call them. The place of every element is tested with their kernel.
namespace {

using namespace script;
namespace errors = qorv::dm::errors;

/// A function and the axes that it exchanges.
struct transpose_row
{
    const char* name;
    const char* counter;
    std::size_t first, second;
};
const transpose_row rows[] = {{"ZXTransposeXZ", "TransposeXZDM", 0, 2}, {"ZXTransposeYZ", "TransposeYZDM", 1, 2}};

TEST(Transpose, MovesElementsOfEveryType)
{
    script_host script;
    for (const transpose_row& row : rows) {
        for (const element& type : all_elements()) {
            SCOPED_TRACE(row.name + (", type " + std::to_string(type.code)));
            const auto source = whole_numbers(type.code, {7, 5, 9});
            const auto made = script.call_image(row.name, {source, null});
            EXPECT_EQ(made->code(), type.code);
            EXPECT_EQ(std::pair(made->size(row.first), made->size(row.second)),
                      std::pair(source->size(row.second), source->size(row.first)));
            EXPECT_EQ(bytes_of(script.call_image(row.name, {made, null})), bytes_of(source)) << "twice";
            const auto to = spread(whole_numbers(type.code, {made->size(0), made->size(1), made->size(2)}), -1);
            EXPECT_EQ(script.call_image(row.name, {spread(source, 2).picture, to.picture}), to.picture);
            EXPECT_EQ(*to.memory, *spread(made, -1).memory);
            const auto cube = whole_numbers(type.code, {5, 5, 5});
            const auto expected = bytes_of(script.call_image(row.name, {cube, null}));
            EXPECT_EQ(script.call_image(row.name, {cube, cube}), cube);
            EXPECT_EQ(bytes_of(cube), expected) << "in place";
            EXPECT_EQ(script.call_image(row.name, {whole_numbers(type.code, {5}), null})->dimensions(), 3u);
            EXPECT_EQ(made->changes() + cube->changes() + source->changes(), 2u);
        }
        EXPECT_EQ(script.host().records().traces().at(row.counter).reports, 6 * all_elements().size());
    }
}

TEST(Transpose, RefusesInOrder)
{
    const auto of = [](std::uint32_t code, const extents& sizes) { return whole_numbers(code, sizes); };
    const auto volume = of(2, {4, 3, 2});
    // The same memory as another shape, and turned: neither the volume itself nor apart from it.
    const auto over = [&](extents sizes, std::array<std::ptrdiff_t, 3> strides) {
        return image::over("other", 2, volume->data(), sizes, strides, access::write, nullptr);
    };
    expect_refusals({{"ZXTransposeXZ", {null, volume}, errors::parameters_invalid},
                     {"ZXTransposeXZ", {volume, of(1, {4, 3, 2})}, errors::invalid_image_size},  // and the type
                     {"ZXTransposeXZ", {volume, volume}, errors::invalid_image_size},
                     {"ZXTransposeXZ", {volume, of(2, {2, 4, 3})}, errors::invalid_image_size},
                     {"ZXTransposeXZ", {volume, of(2, {2, 3})}, errors::invalid_image_size},
                     {"ZXTransposeXZ", {volume, of(7, {2, 3, 4})}, errors::invalid_image_type},
                     {"ZXTransposeXZ", {volume, over({2, 3, 4}, {12, 4, 1})}, errors::out_of_place},
                     {"ZXTransposeYZ", {volume, of(2, {3, 2, 4})}, errors::invalid_image_size},
                     {"ZXTransposeYZ", {volume, over({4, 2, 3}, {1, 4, 8})}, errors::out_of_place}});
}

}  // namespace
