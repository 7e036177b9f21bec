#include "host/files/dm.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "host/files/dm_tags.h"
#include "host/files/header_error.h"
#include "host/files/packed_spectrum.h"

namespace zentrix::host {

namespace {

constexpr int packed_complex = 5, packed_complex_8 = 27, packed_complex_16 = 28, signed_64 = 39, unsigned_64 = 40;

/// A tag's number as an index or a size; nothing for other tags and for numbers that are none.
std::optional<std::int64_t> whole(const dm_tag& tag)
{
    const double value = tag.number_or(-1);
    if (!(value >= 0 && value <= 0x1p53) || value != std::floor(value)) return std::nullopt;
    return static_cast<std::int64_t>(value);
}

/// The image of the first window; without windows, the first image that is no thumbnail.
const dm_tag& shown_image(const dm_tree& tree)
{
    const dm_tag& images = tree.root["ImageList"];
    std::vector<std::int64_t> thumbnails;
    for (const dm_tag& thumbnail : tree.root["Thumbnails"].children)
        if (const auto index = whole(thumbnail["ImageIndex"])) thumbnails.push_back(*index);
    const auto is_shown = [&](std::size_t index) {
        return index < images.children.size() && std::ranges::count(thumbnails, static_cast<std::int64_t>(index)) == 0;
    };
    for (const dm_tag& window : tree.root["DocumentObjectList"].children) {
        const auto source = whole(window["ImageSource"]);
        if (!source) continue;
        const auto index = whole(tree.root["ImageSourceList"][static_cast<std::size_t>(*source)]["ImageRef"]);
        if (index && is_shown(static_cast<std::size_t>(*index))) return images[static_cast<std::size_t>(*index)];
    }
    for (std::size_t index = 0; index < images.children.size(); ++index)
        if (is_shown(index)) return images[index];
    throw header_error{"it has no image"};
}

std::vector<std::uint32_t> sizes_of(const dm_tag& data)
{
    std::vector<std::int64_t> announced;
    for (const dm_tag& size : data["Dimensions"].children) announced.push_back(whole(size).value_or(-1));
    return checked_sizes(announced);
}

axis_scale scale_of(binary_input& from, const dm_tree& tree, const dm_tag& dimension)
{
    const double step = dimension["Scale"].number_or(0);
    const double origin = dimension["Origin"].number_or(0);  // the pixel at position 0
    axis_scale scale{step, step == 0 || origin == 0 ? 0 : -origin * step, dm_text(from, tree, dimension["Units"])};
    const bool is_pixels = scale.unit.empty() && step == 1 && origin == 0;  // as images have it that nobody calibrated
    return is_pixels || !std::isfinite(step) || !std::isfinite(scale.first) ? axis_scale{} : scale;
}

calibration calibration_of(binary_input& from, const dm_tree& tree, const dm_tag& shown)
{
    calibration about;
    const dm_tag& dimensions = shown["ImageData"]["Calibrations"]["Dimension"];
    for (std::size_t d = 0; d < about.axes.size(); ++d) about.axes[d] = scale_of(from, tree, dimensions[d]);
    const double volts = shown["ImageTags"]["Microscope Info"]["Voltage"].number_or(0);
    if (volts > 0 && std::isfinite(volts)) about.kilovolts = volts / 1000;
    return about;
}

/// The elements of one image, still in the file.
struct stored_image
{
    std::string name;
    std::vector<std::uint32_t> sizes;
    std::uint64_t bytes;  ///< that the file has of them
    std::endian order;

    image_ref make(std::uint32_t code) const { return image::create(name, code, sizes); }
};

image_ref read_plain(binary_input& from, const stored_image& stored, std::uint32_t code)
{
    require_enough_bytes(stored.sizes, element_of(code).bytes, stored.bytes);
    auto result = stored.make(code);
    read_elements(from, stored.order, *result);
    return result;
}

image_ref read_binary(binary_input& from, const stored_image& stored)
{
    auto result = read_plain(from, stored, HOST_ELEMENT_UINT8);
    for (std::uint8_t& pixel : std::span{static_cast<std::uint8_t*>(result->data()), result->count()})
        pixel = pixel != 0;
    return result;
}

/// Real numbers of 8 bytes take the place of integers of 8 bytes.
template <class T>
image_ref read_64_bit(binary_input& from, const stored_image& stored)
{
    constexpr std::int64_t largest = std::int64_t{1} << 53;
    auto result = read_plain(from, stored, HOST_ELEMENT_FLOAT64);
    for (double& pixel : std::span{static_cast<double*>(result->data()), result->count()}) {
        const T value = std::bit_cast<T>(pixel);
        if (std::cmp_greater(value, largest) || std::cmp_less(value, -largest))
            throw header_error{"it has integers of 64 bits beyond 2^53, such as " + std::to_string(value) +
                               ", which float64 cannot hold"};
        pixel = static_cast<double>(value);
    }
    return result;
}

image_ref read_packed(binary_input& from, const stored_image& stored, packing how, std::uint32_t code)
{
    if (stored.sizes.size() != 2) throw header_error{"its packed spectrum is not of two dimensions"};
    const std::uint64_t width = stored.sizes[0], height = stored.sizes[1], part = element_of(code).bytes / 2;
    if (how == packing::shared_column && (width % 2 != 0 || height % 2 != 0))
        throw header_error{"its packed spectrum has odd sizes, " + std::to_string(width) + " x " +
                           std::to_string(height) + "; expected even ones"};
    const std::uint64_t row = packed_bytes(how, width, 1, part);
    if (stored.bytes / row < height)
        throw header_error{"it is cut short: a packed spectrum of " + std::to_string(height) + " rows of " +
                           std::to_string(row) + " bytes is announced, but only " + std::to_string(stored.bytes) +
                           " bytes follow"};
    std::vector<std::byte> packed(row * height);
    from.read(packed.data(), packed.size());
    if (stored.order != std::endian::native) reverse_words(packed, part);
    auto result = stored.make(code);
    expand_spectrum(how, packed.data(), *result);
    return result;
}

image_ref read_elements_of(binary_input& from, const stored_image& stored, std::int64_t type)
{
    switch (type) {
        case HOST_ELEMENT_INT8:
        case HOST_ELEMENT_UINT8:
        case HOST_ELEMENT_INT16:
        case HOST_ELEMENT_UINT16:
        case HOST_ELEMENT_INT32:
        case HOST_ELEMENT_UINT32:
        case HOST_ELEMENT_FLOAT32:
        case HOST_ELEMENT_FLOAT64:
        case HOST_ELEMENT_COMPLEX64:
        case HOST_ELEMENT_COMPLEX128: return read_plain(from, stored, static_cast<std::uint32_t>(type));
        case HOST_ELEMENT_BINARY: return read_binary(from, stored);
        case signed_64: return read_64_bit<std::int64_t>(from, stored);
        case unsigned_64: return read_64_bit<std::uint64_t>(from, stored);
        case packed_complex: return read_packed(from, stored, packing::shared_column, HOST_ELEMENT_COMPLEX64);
        case packed_complex_8: return read_packed(from, stored, packing::full_column, HOST_ELEMENT_COMPLEX64);
        case packed_complex_16: return read_packed(from, stored, packing::full_column, HOST_ELEMENT_COMPLEX128);
        case 8:
        case 23: throw header_error{"it is a colour picture; expected measured values"};
        default: throw header_error{"its elements are of type " + std::to_string(type) + ", which is unknown"};
    }
}

image_ref read_shown_image(const std::filesystem::path& file)
{
    binary_input from{file};
    const dm_tree tree = read_dm_tags(from);
    const dm_tag& shown = shown_image(tree);
    const dm_tag& data = shown["ImageData"];
    const dm_tag& elements = data["Data"];
    if (elements.kind != dm_tag::content::array) throw header_error{"its image has no data"};

    std::string name = dm_text(from, tree, shown["Name"]);
    if (name.empty()) name = utf8_path(file.stem());
    const stored_image stored{name, sizes_of(data), elements.count * elements.element_bytes, tree.order};
    calibration about = calibration_of(from, tree, shown);
    from.seek(elements.position);
    auto result = read_elements_of(from, stored, whole(data["DataType"]).value_or(-1));
    result->set_scale(std::move(about));
    return result;
}

}  // namespace

image_ref read_dm(const std::filesystem::path& file)
{
    return with_file_name(file, [&] { return read_shown_image(file); });
}

}  // namespace zentrix::host
