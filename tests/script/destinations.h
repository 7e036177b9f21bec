#pragma once

#include <array>

#include "image/visit.h"
#include "tests/script/script_host.h"

/// What the script functions with a source and a destination have in common, checked for tables of them.
namespace script {

using arguments = std::vector<script_value>;
using extents = std::vector<std::uint32_t>;

inline const std::vector<std::uint32_t> float_types{2, 12}, complex_types{3, 13}, float_and_complex_types{2, 3, 12, 13},
    integer_types{1, 6, 7, 9, 10, 11}, real_types{1, 2, 6, 7, 9, 10, 11, 12};

inline std::uint32_t same_type(std::uint32_t code) { return code; }
inline std::uint32_t float_type(std::uint32_t) { return 2; }
inline std::uint32_t complex_of(std::uint32_t real) { return real == 2 ? 3 : 13; }
inline std::uint32_t real_of(std::uint32_t complex) { return complex == 3 ? 2 : 12; }

/// Element (x, y, z) as a number, of an image of a real type or binary.
inline double number_at(const image_ref& picture, std::ptrdiff_t x, std::ptrdiff_t y = 0, std::ptrdiff_t z = 0)
{
    double number = 0;
    const std::uint32_t code = picture->code() == 14 ? 6 : picture->code();
    qorv::dm::visit(qorv::dm::eight_reals{}, code,
                    [&]<class T>() { number = static_cast<double>(picture->at<T>(x, y, z)); });
    return number;
}

/// Element (x, y, z) as a complex number, of an image of a real or complex type.
inline std::complex<double> complex_at(const image_ref& picture, std::ptrdiff_t x, std::ptrdiff_t y = 0,
                                       std::ptrdiff_t z = 0)
{
    if (picture->code() == 3) return std::complex<double>{picture->at<std::complex<float>>(x, y, z)};
    return picture->code() == 13 ? picture->at<std::complex<double>>(x, y, z) : number_at(picture, x, y, z);
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

/// An image whose pixels have gaps between them; the memory with the gaps.
struct spread_image
{
    image_ref picture;
    std::shared_ptr<std::vector<unsigned char>> memory;
};

/// The pixels of `from`, `step` elements apart (backwards if negative), with gaps behind rows and planes.
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

inline constexpr std::ptrdiff_t spread_steps[] = {1, 2, -1};

enum class in_place
{
    same_result,
    refused,
    not_offered  ///< source and destination differ in type or size, or the function has another rule for it
};

/// A function with a source and a destination.
struct destination_row
{
    const char* name;
    const char* counter;
    std::vector<std::uint32_t> types;
    std::function<arguments(image_ref source, image_ref destination)> given;
    in_place onto_source = in_place::same_result;
    std::uint32_t (*result_type)(std::uint32_t) = same_type;
    bool plane_by_plane = true;
    std::vector<extents> sizes{{13}, {7, 5}, {6, 5, 4}};
};

/// One row, one element type, one size; `want` is the result with a null destination.
class destination_check
{
  public:
    destination_check(script_host& script, const destination_row& row, std::uint32_t code, const extents& sizes)
        : script_{script}, row_{row}, sizes_{sizes}, type_{row.result_type(code)}, source_{whole_numbers(code, sizes)}
    {
        const auto before = bytes_of(source_);
        want_ = run(source_, nullptr);
        if (!want_) return;
        EXPECT_EQ(want_->code(), type_);
        EXPECT_EQ(want_->dimensions(), sizes.size());
        EXPECT_EQ(want_->changes(), 1u);
        EXPECT_EQ(bytes_of(source_), before);
        EXPECT_EQ(source_->changes(), 0u);
        fills_a_given_destination();
        gives_the_same_without_vector_instructions();
        keeps_to_the_pixels_of_a_spread_image();
        if (row.plane_by_plane && sizes.size() == 3) writes_the_planes_that_both_have();
        works_on_its_source();
    }
    unsigned calls() const { return calls_; }

  private:
    image_ref run(const image_ref& from, const image_ref& to)
    {
        ++calls_;
        const auto result = script_.call_image(row_.name, row_.given(from, to));
        EXPECT_TRUE(result);
        return result;
    }

    void fills_a_given_destination()
    {
        const auto given = whole_numbers(type_, sizes_, 5);
        EXPECT_EQ(run(source_, given), given);
        EXPECT_EQ(given->changes(), 1u);
        EXPECT_EQ(bytes_of(given), bytes_of(want_));
    }

    void gives_the_same_without_vector_instructions()
    {
        script_.use_simd(false);
        EXPECT_EQ(bytes_of(run(source_, nullptr)), bytes_of(want_));
        script_.use_simd(true);
    }

    void keeps_to_the_pixels_of_a_spread_image()
    {
        for (const auto& [step, to_step] : {std::pair{1, 1}, {1, 2}, {2, -1}, {-1, 1}}) {
            const auto from = spread(source_, step), to = spread(whole_numbers(type_, sizes_, 5), to_step);
            run(from.picture, to.picture);
            EXPECT_EQ(*to.memory, *spread(want_, to_step).memory) << "steps " << step << " and " << to_step;
            EXPECT_EQ(*from.memory, *spread(source_, step).memory) << "steps " << step << " and " << to_step;
        }
    }

    void writes_the_planes_that_both_have()
    {
        for (const std::uint32_t planes : {sizes_[2] - 1, sizes_[2] + 2}) {
            const auto to = whole_numbers(type_, {sizes_[0], sizes_[1], planes}, 5);
            auto wanted = bytes_of(to);
            const auto written = std::min(want_->count(), to->count()) * to->type().bytes;
            std::memcpy(wanted.data(), want_->data(), written);
            run(source_, to);
            EXPECT_EQ(bytes_of(to), wanted) << planes << " planes";
        }
    }

    void works_on_its_source()
    {
        if (row_.onto_source == in_place::not_offered) return;
        const auto both = source_->clone();
        if (row_.onto_source == in_place::same_result) {
            EXPECT_EQ(run(both, both), both);
            EXPECT_EQ(both->changes(), 1u);
            EXPECT_EQ(bytes_of(both), bytes_of(want_));
        } else {
            ++calls_;
            EXPECT_EQ(script_.failure(row_.name, row_.given(both, both)), "Output should be out-of-place.");
            EXPECT_EQ(bytes_of(both), bytes_of(source_));
        }
    }

    script_host& script_;
    const destination_row& row_;
    extents sizes_;
    std::uint32_t type_;
    image_ref source_, want_;
    unsigned calls_ = 0;
};

/// Null, given, spread, deeper, shallower and the source itself as destinations, with the switch on and off; and the
/// calls are counted under the right name.
inline void expect_destination_rules(const destination_row& row)
{
    script_host script;
    unsigned calls = 0;
    for (const std::uint32_t code : row.types)
        for (const extents& sizes : row.sizes) {
            SCOPED_TRACE(row.name + (" of type " + std::to_string(code)) + ", dimensions " +
                         std::to_string(sizes.size()));
            calls += destination_check{script, row, code, sizes}.calls();
        }
    const auto& traces = script.host().records().traces();
    ASSERT_TRUE(traces.contains(row.counter)) << row.counter;
    EXPECT_EQ(traces.at(row.counter).reports, calls) << row.counter;
}

/// The same arguments with outputs of their own.
inline arguments with_new_outputs(arguments given)
{
    for (auto& argument : given)
        if (const auto* out = std::get_if<cell_ref>(&argument)) argument = make_cell((*out)->value);
    return given;
}

/// A call that fails.
struct refusal
{
    const char* name;
    arguments given;
    const char* text;
};

/// Each fails with its text and leaves the images and outputs that it was given as they were.
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
        for (const auto& value : rows[i].given) {
            keep(value);
            const auto* out = std::get_if<cell_ref>(&value);
            if (!out) continue;
            keep((*out)->value);
            cells.emplace_back(*out, (*out)->value);
        }
        EXPECT_EQ(script.failure(rows[i].name, rows[i].given), rows[i].text);
        for (const auto& [picture, before] : images) EXPECT_EQ(picture->fingerprint(), before);
        for (const auto& [out, before] : cells) EXPECT_EQ(out->value, before);
    }
}

/// The image that an output holds.
inline image_ref picture_in(const cell_ref& out) { return object_in<image>(out->value); }

}  // namespace script
