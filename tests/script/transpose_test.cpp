#include <algorithm>
#include <array>

#include "host/element.h"
#include "image/errors.h"
#include "script/destinations.h"

// Transposes as a script meets them: whole elements of every type move to where the mapping says.
namespace {

using namespace script;
namespace errors = qorv::dm::errors;

const script_value null{};

/// Either function, by what it does to indices and sizes.
struct transpose_row
{
    const char* name;
    const char* counter;
    std::size_t first, second;  ///< the axes that are exchanged

    extents operator()(extents from) const
    {
        std::swap(from[first], from[second]);
        return from;
    }
};
const transpose_row rows[] = {{"ZXTransposeXZ", "TransposeXZDM", 0, 2}, {"ZXTransposeYZ", "TransposeYZDM", 1, 2}};

/// An image with other bytes in each element.
image_ref labelled(std::uint32_t code, const extents& sizes)
{
    const auto made = image::create("label", code, sizes);
    auto* bytes = static_cast<unsigned char*>(made->data());
    for (std::size_t i = 0; i < made->count() * made->type().bytes; ++i)
        bytes[i] = static_cast<unsigned char>(i * 37 + i / 256);
    return made;
}

image_ref by_mapping(const transpose_row& row, const image_ref& from)
{
    const auto to = image::create("mapped", from->code(), row({from->size(0), from->size(1), from->size(2)}));
    const std::size_t bytes = from->type().bytes;
    const auto* source = static_cast<const unsigned char*>(from->data());
    auto* result = static_cast<unsigned char*>(to->data());
    for (std::uint32_t z = 0; z < to->size(2); ++z)
        for (std::uint32_t y = 0; y < to->size(1); ++y)
            for (std::uint32_t x = 0; x < to->size(0); ++x, result += bytes) {
                const auto at = row({x, y, z});
                std::memcpy(result,
                            source + (at[0] + from->size(0) * (at[1] + std::size_t{from->size(1)} * at[2])) * bytes,
                            bytes);
            }
    return to;
}

TEST(Transpose, MovesElementsOfEveryTypeToTheirPlaces)
{
    script_host script;
    for (const transpose_row& row : rows) {
        unsigned calls = 0;
        for (const element& type : all_elements())
            for (const extents& sizes : std::vector<extents>{{5}, {4, 3}, {19, 1, 6}, {7, 5, 9}, {17, 2, 33}}) {
                SCOPED_TRACE(row.name + (", type " + std::to_string(type.code)));
                const auto source = labelled(type.code, sizes), wanted = by_mapping(row, source);
                const auto before = bytes_of(source);
                for (const bool simd : {true, false}) {
                    script.use_simd(simd);
                    const auto made = script.call_image(row.name, {source, null});
                    EXPECT_EQ(made->code(), type.code);
                    EXPECT_EQ(made->dimensions(), 3u);
                    EXPECT_EQ(made->size(row.first), source->size(row.second));
                    EXPECT_EQ(made->size(row.second), source->size(row.first));
                    EXPECT_EQ(made->changes(), 1u);
                    EXPECT_EQ(bytes_of(made), bytes_of(wanted));
                    EXPECT_EQ(bytes_of(script.call_image(row.name, {made, null})), before);
                    for (const auto step : spread_steps) {
                        const auto to = spread(
                            image::create("given", type.code, extents{made->size(0), made->size(1), made->size(2)}),
                            step);
                        EXPECT_EQ(script.call_image(row.name, {spread(source, step).picture, to.picture}), to.picture);
                        EXPECT_EQ(to.picture->changes(), 1u);
                        EXPECT_EQ(*to.memory, *spread(wanted, step).memory) << "step " << step;
                    }
                    calls += 5;
                }
                EXPECT_EQ(bytes_of(source), before);
                EXPECT_EQ(source->changes(), 0u);
            }
        EXPECT_EQ(script.host().records().traces().at(row.counter).reports, calls);
    }
}

TEST(Transpose, ExchangesInPlaceWhereTheSizesAreEqual)
{
    script_host script;
    for (const transpose_row& row : rows)
        for (const element& type : all_elements())
            for (const extents& sizes : std::vector<extents>{{1, 1, 1}, {5, 5, 5}, {33, 2, 33}, {3, 20, 20}})
                for (const bool simd : {true, false}) {
                    if (sizes[row.first] != sizes[row.second]) continue;
                    script.use_simd(simd);
                    const auto volume = labelled(type.code, sizes), wanted = by_mapping(row, volume);
                    const auto apart = spread(volume, 2);
                    EXPECT_EQ(script.call_image(row.name, {volume, volume}), volume);
                    EXPECT_EQ(volume->changes(), 1u);
                    EXPECT_EQ(bytes_of(volume), bytes_of(wanted)) << row.name << ", type " << type.code;
                    script.call(row.name, {apart.picture, apart.picture});
                    EXPECT_EQ(*apart.memory, *spread(wanted, 2).memory) << row.name << ", type " << type.code;
                }
}

TEST(Transpose, RefusesInOrder)
{
    const auto of = [](std::uint32_t code, extents sizes) { return labelled(code, std::move(sizes)); };
    const auto volume = of(2, {4, 3, 2});
    // The same memory as another shape, and turned: neither the volume itself nor apart from it.
    const auto over = [&](extents sizes, std::array<std::ptrdiff_t, 3> strides) {
        return image::over("other", 2, volume->data(), sizes, strides, access::write, nullptr);
    };
    expect_refusals({{"ZXTransposeXZ", {volume, of(1, {4, 3, 2})}, errors::invalid_image_size},  // and the type
                     {"ZXTransposeXZ", {volume, volume}, errors::invalid_image_size},
                     {"ZXTransposeXZ", {volume, of(2, {2, 4, 3})}, errors::invalid_image_size},
                     {"ZXTransposeXZ", {volume, of(2, {2, 3})}, errors::invalid_image_size},
                     {"ZXTransposeXZ", {volume, of(7, {2, 3, 4})}, errors::invalid_image_type},
                     {"ZXTransposeXZ", {volume, over({2, 3, 4}, {1, 2, 6})}, errors::out_of_place},
                     {"ZXTransposeXZ", {volume, over({2, 3, 4}, {12, 4, 1})}, errors::out_of_place},
                     {"ZXTransposeXZ", {null, volume}, errors::parameters_invalid},
                     {"ZXTransposeYZ", {volume, of(3, {4, 3, 2})}, errors::invalid_image_size},
                     {"ZXTransposeYZ", {volume, volume}, errors::invalid_image_size},
                     {"ZXTransposeYZ", {volume, of(2, {3, 2, 4})}, errors::invalid_image_size},
                     {"ZXTransposeYZ", {volume, of(11, {4, 2, 3})}, errors::invalid_image_type},
                     {"ZXTransposeYZ", {volume, over({4, 2, 3}, {1, 4, 8})}, errors::out_of_place},
                     {"ZXTransposeYZ", {null, volume}, errors::parameters_invalid}});
}

}  // namespace
