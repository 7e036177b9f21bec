#pragma once

#include <array>

#include "image/visit.h"
#include "tests/script/script_host.h"

/// Checks that hold for tables of script functions: destinations and refusals.
namespace script {

using arguments = std::vector<script_value>;
using extents = std::vector<std::uint32_t>;

inline const std::vector<std::uint32_t> float_types{HOST_ELEMENT_FLOAT32, HOST_ELEMENT_FLOAT64},
    complex_types{HOST_ELEMENT_COMPLEX64, HOST_ELEMENT_COMPLEX128},
    float_and_complex_types{HOST_ELEMENT_FLOAT32, HOST_ELEMENT_COMPLEX64, HOST_ELEMENT_FLOAT64,
                            HOST_ELEMENT_COMPLEX128},
    integer_types{HOST_ELEMENT_INT16, HOST_ELEMENT_UINT8,  HOST_ELEMENT_INT32,
                  HOST_ELEMENT_INT8,  HOST_ELEMENT_UINT16, HOST_ELEMENT_UINT32},
    real_types{HOST_ELEMENT_INT16, HOST_ELEMENT_FLOAT32, HOST_ELEMENT_UINT8,  HOST_ELEMENT_INT32,
               HOST_ELEMENT_INT8,  HOST_ELEMENT_UINT16,  HOST_ELEMENT_UINT32, HOST_ELEMENT_FLOAT64};

inline std::uint32_t same_type(std::uint32_t code) { return code; }
inline std::uint32_t float_type(std::uint32_t) { return HOST_ELEMENT_FLOAT32; }
inline std::uint32_t complex_of(std::uint32_t real)
{
    return real == HOST_ELEMENT_FLOAT32 ? HOST_ELEMENT_COMPLEX64 : HOST_ELEMENT_COMPLEX128;
}
inline std::uint32_t real_of(std::uint32_t complex)
{
    return complex == HOST_ELEMENT_COMPLEX64 ? HOST_ELEMENT_FLOAT32 : HOST_ELEMENT_FLOAT64;
}

/// Element (x, y, z) as a number, of an image of a real type or binary.
inline double number_at(const image_ref& picture, std::ptrdiff_t x, std::ptrdiff_t y = 0, std::ptrdiff_t z = 0)
{
    double number = 0;
    const std::uint32_t code =
        picture->code() == HOST_ELEMENT_BINARY ? std::uint32_t{HOST_ELEMENT_UINT8} : picture->code();
    qorv::dm::visit(qorv::dm::eight_reals{}, code,
                    [&]<class T>() { number = static_cast<double>(picture->at<T>(x, y, z)); });
    return number;
}

/// Element (x, y, z) as a complex number, of an image of a real or complex type.
inline std::complex<double> complex_at(const image_ref& picture, std::ptrdiff_t x, std::ptrdiff_t y = 0,
                                       std::ptrdiff_t z = 0)
{
    if (picture->code() == HOST_ELEMENT_COMPLEX64)
        return std::complex<double>{picture->at<std::complex<float>>(x, y, z)};
    return picture->code() == HOST_ELEMENT_COMPLEX128 ? picture->at<std::complex<double>>(x, y, z)
                                                      : number_at(picture, x, y, z);
}

/// Repeatable whole numbers from -6 (0 where the type has no sign) to 22, the same with every compiler.
inline image_ref whole_numbers(std::uint32_t code, const extents& sizes, unsigned seed = 1)
{
    const auto made = image::create("whole", code, sizes);
    const auto fill = [&]<class T>(T) {
        auto* values = static_cast<T*>(made->data());
        const std::size_t count = made->count() * made->type().bytes / sizeof(T);
        for (std::size_t i = 0; i < count; ++i)
            values[i] =
                static_cast<T>(static_cast<int>((i * i * 3 + i * 7 + seed) % 29) - (std::is_signed_v<T> ? 6 : 0));
    };
    if (code == 3)
        fill(float{});
    else if (code == 13)
        fill(double{});
    else if (!qorv::dm::visit(qorv::dm::eight_reals{}, code, [&]<class T>() { fill(T{}); }))
        fill(std::uint8_t{});
    return made;
}

/// An image with gaps between its pixels, rows and planes, and its memory including the gaps.
struct spread_image
{
    image_ref picture;
    std::shared_ptr<std::vector<unsigned char>> memory;
};

/// The pixels of `from`, `step` elements apart (backwards if negative), with gaps after rows and planes.
inline spread_image spread(const image_ref& from, std::ptrdiff_t step)
{
    const auto bytes = static_cast<std::ptrdiff_t>(from->type().bytes);
    std::array<std::ptrdiff_t, 3> strides{step, 0, 0};
    for (std::size_t d = 1; d < 3; ++d) strides[d] = strides[d - 1] * from->size(d - 1) + (step > 0 ? 3 : -3);
    const auto room = static_cast<std::size_t>((std::abs(strides[2]) * from->size(2) + 1) * bytes);
    auto memory = std::make_shared<std::vector<unsigned char>>(room, 0xA5);
    auto* origin = memory->data() + (step > 0 ? 0 : static_cast<std::ptrdiff_t>(room) - bytes);
    const auto* pixel = static_cast<const unsigned char*>(from->data());
    for (std::uint32_t z = 0; z < from->size(2); ++z)
        for (std::uint32_t y = 0; y < from->size(1); ++y)
            for (std::uint32_t x = 0; x < from->size(0); ++x, pixel += bytes)
                std::memcpy(origin + (x * strides[0] + y * strides[1] + z * strides[2]) * bytes, pixel,
                            static_cast<std::size_t>(bytes));
    const std::array sizes{from->size(0), from->size(1), from->size(2)};
    const auto dimensions = from->dimensions();
    return {image::over(from->name(), from->code(), origin, std::span{sizes}.first(dimensions),
                        std::span{strides}.first(dimensions), access::write, memory),
            memory};
}

enum class in_place
{
    same_result,
    refused,
    not_offered  ///< source and destination differ in type, or the function has its own rule
};

/// A function with a source and a destination.
struct destination_row
{
    const char* name;
    const char* counter;
    std::vector<std::uint32_t> types;
    std::function<arguments(image_ref source, image_ref destination)> make_arguments;
    in_place onto_source = in_place::same_result;
    std::uint32_t (*result_type)(std::uint32_t) = same_type;
    bool plane_by_plane = true;
    std::vector<extents> sizes{{13}, {7, 5}, {6, 5, 4}};
    bool accepts_gaps = true;  ///< between pixels and rows
};

/// Checks null, given, spread, deeper and shallower destinations and the source itself for a row, type and size.
/// Returns the number of calls.
inline unsigned check_destinations(script_host& script, const destination_row& row, std::uint32_t code,
                                   const extents& sizes)
{
    unsigned calls = 0;
    const auto run = [&](const image_ref& from, const image_ref& to) {
        ++calls;
        const auto result = script.call_image(row.name, row.make_arguments(from, to));
        EXPECT_TRUE(result && (!to || result == to));
        return result;
    };
    const auto source = whole_numbers(code, sizes);
    const auto result_type = row.result_type(code);
    const auto other_image = [&](const extents& of) { return whole_numbers(result_type, of, 5); };

    const auto made = run(source, nullptr);
    EXPECT_EQ(made->code(), result_type);
    EXPECT_EQ(made->dimensions(), sizes.size());
    const auto filled = run(source, other_image(sizes));
    EXPECT_EQ(bytes_of(filled), bytes_of(made));
    EXPECT_EQ(made->changes() + filled->changes(), 2u);
    script.use_simd(false);
    EXPECT_EQ(bytes_of(run(source, nullptr)), bytes_of(made)) << "without vector instructions";
    script.use_simd(true);
    EXPECT_EQ(bytes_of(source), bytes_of(whole_numbers(code, sizes)));
    EXPECT_EQ(source->changes(), 0u);

    for (const auto& [step, to_step] : {std::pair{1, 1}, {1, 2}, {2, -1}, {-1, 1}}) {
        if (!row.accepts_gaps) break;
        const auto from = spread(source, step), to = spread(other_image(sizes), to_step);
        run(from.picture, to.picture);
        EXPECT_EQ(*to.memory, *spread(made, to_step).memory) << "steps " << step << " and " << to_step;
        EXPECT_EQ(*from.memory, *spread(source, step).memory) << "steps " << step << " and " << to_step;
    }
    if (row.plane_by_plane && sizes.size() == 3)
        for (const std::uint32_t planes : {sizes[2] - 1, sizes[2] + 2}) {
            const auto to = other_image({sizes[0], sizes[1], planes});
            auto expected = bytes_of(to);
            std::memcpy(expected.data(), made->data(), std::min(made->count(), to->count()) * to->type().bytes);
            EXPECT_EQ(bytes_of(run(source, to)), expected) << planes << " planes";
        }
    const auto both = source->clone();
    if (row.onto_source == in_place::same_result) {
        EXPECT_EQ(bytes_of(run(both, both)), bytes_of(made));
        EXPECT_EQ(both->changes(), 1u);
    } else if (row.onto_source == in_place::refused) {
        ++calls;
        EXPECT_EQ(script.failure(row.name, row.make_arguments(both, both)), "Output should be out-of-place.");
        EXPECT_EQ(bytes_of(both), bytes_of(source));
    }
    return calls;
}

/// Checks the destinations of a row for all its types and sizes, and that its calls are counted under the right name.
inline void expect_destination_rules(const destination_row& row)
{
    script_host script;
    unsigned calls = 0;
    for (const std::uint32_t code : row.types)
        for (const extents& sizes : row.sizes) {
            SCOPED_TRACE(row.name + (", type " + std::to_string(code)) + ", dimensions " +
                         std::to_string(sizes.size()));
            calls += check_destinations(script, row, code, sizes);
        }
    const auto& traces = script.host().records().traces();
    ASSERT_TRUE(traces.contains(row.counter)) << row.counter;
    EXPECT_EQ(traces.at(row.counter).reports, calls) << row.counter;
}

/// The arguments with new outputs of the same values.
inline arguments with_new_outputs(arguments args)
{
    for (auto& argument : args)
        if (const auto* out = std::get_if<cell_ref>(&argument)) argument = make_cell((*out)->value);
    return args;
}

/// A call that fails.
struct refusal
{
    const char* name;
    arguments args;
    const char* text;
};

/// Each call fails with its text and leaves its images and outputs unchanged.
inline void expect_refusals(const std::vector<refusal>& rows)
{
    script_host script;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(rows[i].name + (" in row " + std::to_string(i)));
        std::vector<std::pair<image_ref, std::uint64_t>> images;
        std::vector<std::pair<cell_ref, script_value>> cells;
        const auto keep = [&](const script_value& value) {
            if (const auto picture = object_in<image>(value)) images.emplace_back(picture, picture->fingerprint());
        };
        for (const auto& value : rows[i].args) {
            keep(value);
            const auto* out = std::get_if<cell_ref>(&value);
            if (!out) continue;
            keep((*out)->value);
            cells.emplace_back(*out, (*out)->value);
        }
        EXPECT_EQ(script.failure(rows[i].name, rows[i].args), rows[i].text);
        for (const auto& [picture, before] : images) EXPECT_EQ(picture->fingerprint(), before);
        for (const auto& [out, before] : cells) EXPECT_EQ(out->value, before);
    }
}

/// The image that an output holds.
inline image_ref picture_in(const cell_ref& out) { return object_in<image>(out->value); }

}  // namespace script
