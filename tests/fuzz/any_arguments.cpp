#include "tests/fuzz/any_arguments.h"

#include <algorithm>
#include <complex>

#include "host/objects/tag_group.h"

namespace fuzz {

using namespace zentrix::host;

namespace {

constexpr std::size_t guard = 64;
constexpr unsigned char pattern = 0xA5;

constexpr std::uint32_t common_codes[] = {HOST_ELEMENT_FLOAT32, HOST_ELEMENT_FLOAT64, HOST_ELEMENT_COMPLEX64,
                                          HOST_ELEMENT_COMPLEX128};

template <class T>
void fill_as(unsigned char* bytes, std::size_t count, generator& random, contents what)
{
    for (std::size_t i = 0; i < count; ++i) {
        const T value = pixel<T>(random, what);
        std::memcpy(bytes + i * sizeof(T), &value, sizeof value);
    }
}

/// Fills memory with numbers of the element's kind.
void fill(unsigned char* bytes, std::size_t size, const element& type, generator random, contents what)
{
    switch (type.code) {
        case HOST_ELEMENT_FLOAT32:
        case HOST_ELEMENT_COMPLEX64: return fill_as<float>(bytes, size / sizeof(float), random, what);
        case HOST_ELEMENT_FLOAT64:
        case HOST_ELEMENT_COMPLEX128: return fill_as<double>(bytes, size / sizeof(double), random, what);
        default: return fill_as<std::uint8_t>(bytes, size, random, what);
    }
}

double any_real(input& from)
{
    constexpr double ordinary[] = {0, 0.5, 1, 2, -1, 3.5, 0.01, 10, 20};
    if (from.coin()) return from.pick(ordinary);
    generator random = from.random();
    return awkward<double>(random);
}

std::string any_text(input& from)
{
    const char* const texts[] = {"",
                                 "raw.bin",
                                 "*",
                                 "*.raw;raw.bin",
                                 "missing.raw",
                                 "img10",
                                 "img2 ",
                                 "All|*.*",
                                 "\xc3\xa9.raw",
                                 "[0]:a",
                                 ".",
                                 "img0000000000000000000001"};
    if (from.below(4) != 0) return from.pick(texts);
    std::string text = from.text(from.below(40));
    std::erase(text, '/');  // stays in the folder
    return text;
}

tag_group_ref any_tags(input& from, int depth = 0)
{
    const bool is_list = from.below(4) != 0;
    const auto made = is_list ? memory_tag_group::make_list() : memory_tag_group::make_group();
    for (std::size_t i = from.below(6); i > 0; --i) {
        tag value = static_cast<std::int32_t>(i);
        const std::size_t kind = from.below(4);
        if (kind == 0) value = any_text(from);
        if (kind == 1 && depth < 3) value = any_tags(from, depth + 1);
        if (kind == 2) {
            const auto named = memory_tag_group::make_group();
            named->set("Name", any_text(from));
            value = named;
        }
        if (is_list)
            made->insert(made->count(), value);
        else
            made->set(from.coin() ? "Name" : std::to_string(i), value);
    }
    return made;
}

void append(std::string& bytes, const void* from, std::size_t count)
{
    bytes.append(static_cast<const char*>(from), count);
}

template <class T>
void append_number(std::string& bytes, T value)
{
    if (value != value) value = std::numeric_limits<T>::quiet_NaN();
    append(bytes, &value, sizeof value);
}

template <class T>
void append_floats(std::string& bytes, const unsigned char* from, std::size_t size)
{
    for (std::size_t i = 0; i < size / sizeof(T); ++i) {
        T value;
        std::memcpy(&value, from + i * sizeof value, sizeof value);
        append_number(bytes, value);
    }
}

std::string pixels_of(const image& pixels)
{
    std::string bytes = std::to_string(pixels.code()) + " " + pixels.name();
    const auto copy = pixels.clone();
    const auto* const data = static_cast<const unsigned char*>(copy->data());
    const std::size_t size = copy->count() * copy->type().bytes;
    for (std::size_t d = 0; d < copy->dimensions(); ++d) bytes += " " + std::to_string(copy->size(d));
    if (pixels.code() == HOST_ELEMENT_FLOAT32 || pixels.code() == HOST_ELEMENT_COMPLEX64)
        append_floats<float>(bytes, data, size);
    else if (pixels.code() == HOST_ELEMENT_FLOAT64 || pixels.code() == HOST_ELEMENT_COMPLEX128)
        append_floats<double>(bytes, data, size);
    else
        append(bytes, data, size);
    return bytes;
}

std::string tags_of(const tag_group& tags)
{
    std::string bytes = "{";
    for (std::size_t i = 0; i < tags.count(); ++i) {
        const auto value = *tags.get_at(i);
        const auto* inner = std::get_if<tag_group_ref>(&value);
        bytes += tags.name_at(i) + "=" + (inner ? tags_of(**inner) : text_of(value)) + ";";
    }
    return bytes + "}";
}

}  // namespace

std::string bytes_of(const script_value& value)
{
    std::string bytes = std::to_string(value.index()) + ":";
    if (const auto* number = std::get_if<double>(&value)) append_number(bytes, *number);
    if (const auto* number = std::get_if<std::int64_t>(&value)) bytes += std::to_string(*number);
    if (const auto* text = std::get_if<std::string>(&value)) bytes += *text;
    if (const auto* number = std::get_if<std::complex<double>>(&value))
        append_number(bytes, number->real()), append_number(bytes, number->imag());
    if (const auto* output = std::get_if<cell_ref>(&value); output && *output) bytes += bytes_of((*output)->value);
    if (const auto picture = object_in<image>(value)) bytes += pixels_of(*picture);
    if (const auto tags = object_in<tag_group>(value)) bytes += tags_of(*tags);
    return bytes;
}

any_arguments::any_arguments(input& from, const prototype& of) : function_{of.name}
{
    for (const auto& parameter : of.parameters) values_.push_back(any_value(from, parameter.type));
}

std::string any_arguments::value_bytes() const
{
    std::string bytes;
    for (const script_value& value : values_) bytes += bytes_of(value);
    return bytes;
}

std::string any_arguments::state() const
{
    std::string bytes = value_bytes();
    for (const auto& one : memories_) append(bytes, one->bytes.data(), one->bytes.size());
    return bytes;
}

void any_arguments::check_guards() const
{
    const auto is_pattern = [](unsigned char byte) { return byte == pattern; };
    for (const auto& one : memories_)
        if (!std::all_of(one->bytes.begin(), one->bytes.begin() + guard, is_pattern) ||
            !std::all_of(one->bytes.end() - guard, one->bytes.end(), is_pattern))
            fail(function_ + " wrote outside an image");
    for (const image_ref& one : images_)
        if (one && one->locks() != 0) fail(function_ + " left an image locked");
}

std::int64_t any_arguments::any_integer(input& from) const
{
    constexpr std::int64_t edges[] = {0, 1, 2, 3, 4, 5, 7, 16, -1, -2, 100, 2147483647, -2147483648LL, 65536, 1000000};
    std::int64_t value = from.coin() ? from.pick(edges) : static_cast<std::int64_t>(from.below(40)) - 4;
    if (function_ == "ZXPadSize") value = std::clamp<std::int64_t>(value, 0, 1 << 20);
    if (function_ == "ZXSetNumThreads") value = std::clamp<std::int64_t>(value, -1, 3);
    if (function_ == "ZXRadialSurvey") value = std::clamp<std::int64_t>(value, -100000, 100000);
    if (function_ == "ZXGetSpecialDirectory") value = std::clamp<std::int64_t>(value, -5, 70);
    return value;
}

image_ref any_arguments::new_image(input& from)
{
    const auto codes = all_elements();
    const std::uint32_t code = from.below(4) != 0 ? from.pick(common_codes) : codes[from.below(codes.size())].code;
    const element& type = element_of(code);
    const image* const like = !images_.empty() && from.coin() ? images_[0].get() : nullptr;
    const std::size_t dimensions = like ? like->dimensions() : 1 + from.below(3);
    std::uint32_t sizes[3]{};
    for (std::size_t d = 0; d < dimensions; ++d)
        sizes[d] =
            like ? like->size(d) : static_cast<std::uint32_t>(1 + (from.coin() ? 7 : from.below(d == 2 ? 12 : 24)));
    // Dense, with gaps, or backwards.
    std::ptrdiff_t strides[3]{}, origin = 0, distance = 1;
    const std::size_t kind = from.below(4);
    for (std::size_t d = 0; d < dimensions; ++d) {
        if (kind == 1) distance += static_cast<std::ptrdiff_t>(from.below(3));
        strides[d] = distance;
        distance *= static_cast<std::ptrdiff_t>(sizes[d]);
        if (kind == 2 && from.coin()) {
            origin += strides[d] * (static_cast<std::ptrdiff_t>(sizes[d]) - 1);
            strides[d] = -strides[d];
        }
    }
    auto room = std::make_shared<memory>();
    const std::size_t size = static_cast<std::size_t>(distance) * type.bytes;
    room->bytes.assign(size + 2 * guard, pattern);
    const auto what = static_cast<contents>(from.below(3));
    fill(room->bytes.data() + guard, size, type, from.random(), what);
    const bool is_writable = from.below(8) != 0;
    memories_.push_back(room);
    return image::over("image", code, room->bytes.data() + guard + origin * static_cast<std::ptrdiff_t>(type.bytes),
                       std::span{sizes}.first(dimensions), std::span{strides}.first(dimensions),
                       is_writable ? access::write : access::read, room);
}

/// Another view of an image's memory, shorter by some elements at its start; or the parts of complex numbers.
image_ref any_arguments::overlapping_view(input& from, std::size_t of)
{
    const image& other = *images_[of];
    const bool is_complex = other.code() == HOST_ELEMENT_COMPLEX64 || other.code() == HOST_ELEMENT_COMPLEX128;
    const bool is_part = is_complex && from.below(4) != 0;
    const auto shift = static_cast<std::uint32_t>(is_part ? 0 : from.below(3));
    std::uint32_t sizes[3]{};
    std::ptrdiff_t strides[3]{};
    for (std::size_t d = 0; d < other.dimensions(); ++d) sizes[d] = other.size(d), strides[d] = other.stride(d);
    if (sizes[0] <= shift) return images_[of];
    overlap_ = true;
    sizes[0] -= shift;
    auto* start = static_cast<unsigned char*>(images_[of]->data()) +
                  strides[0] * static_cast<std::ptrdiff_t>(shift * other.type().bytes);
    std::uint32_t code = other.code();
    if (is_part) {
        for (std::ptrdiff_t& stride : strides) stride *= 2;
        code = code == HOST_ELEMENT_COMPLEX64 ? HOST_ELEMENT_FLOAT32 : HOST_ELEMENT_FLOAT64;
        if (from.coin()) start += element_of(code).bytes;
    }
    return image::over("view", code, start, std::span{sizes}.first(other.dimensions()),
                       std::span{strides}.first(other.dimensions()), access::write, memories_[0]);
}

image_ref any_arguments::any_image(input& from)
{
    const std::size_t kind = from.below(8);
    if (kind == 0) return nullptr;
    if (kind < 4 && !images_.empty()) return images_[from.below(images_.size())];
    if (kind == 4 && !images_.empty()) return overlapping_view(from, from.below(images_.size()));
    images_.push_back(new_image(from));
    return images_.back();
}

script_value any_arguments::any_value(input& from, const prototype_type& type)
{
    switch (type.kind) {
        case HOST_INT32:
        case HOST_UINT32:
        case HOST_UINT64: return any_integer(from);
        case HOST_FLOAT32:
        case HOST_FLOAT64: return any_real(from);
        case HOST_COMPLEX: {
            const double re = any_real(from), im = any_real(from);
            return std::complex<double>{re, im};
        }
        case HOST_STRING: return any_text(from);
        case HOST_IMAGE: return any_image(from);
        case HOST_TAG_GROUP: return from.below(8) == 0 ? script_value{} : any_tags(from);
        case HOST_OUTPUT: {
            if (from.below(4) == 0) return script_value{};
            prototype_type inside = type;
            inside.kind = type.cell_kind;
            return from.coin() ? make_cell() : make_cell(any_value(from, inside));
        }
        default: return {};
    }
}

}  // namespace fuzz
