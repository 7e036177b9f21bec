#pragma once

#include <complex>
#include <cstring>
#include <string>
#include <vector>

/// The bytes of DM3 and DM4 files for tests.
namespace support {

/// Writes tags of one version and byte order of the values.
class dm_writer
{
  public:
    dm_writer(int version, bool is_little) : version_{version}, is_little_{is_little} {}

    /// A group of tags that were made by `tag`; `entries` are joined.
    std::string group(const std::string& label, const std::vector<std::string>& entries) const
    {
        return start(20, label) + body(entries);
    }
    template <class T>
    std::string number(const std::string& label, std::uint64_t type, T value) const
    {
        return tag(label, {type}, in_order(value));
    }
    std::string text(const std::string& label, const std::u16string& value) const
    {
        std::string bytes;
        for (const char16_t c : value) bytes += in_order(static_cast<std::uint16_t>(c));
        return tag(label, {20, 4, value.size()}, bytes);
    }
    /// A tag with the words of its type and the bytes of its value.
    std::string tag(const std::string& label, const std::vector<std::uint64_t>& type, const std::string& bytes) const
    {
        std::string result = start(21, label) + "%%%%" + length(type.size());
        for (const std::uint64_t word : type) result += length(word);
        return result + bytes;
    }
    std::string file(const std::vector<std::string>& entries) const
    {
        const std::string root = body(entries);
        return big(std::uint32_t(version_)) + length(root.size()) + big(std::uint32_t{is_little_}) + root +
               std::string(8, '\0');
    }
    template <class T>
    std::string in_order(T value) const
    {
        std::string bytes(sizeof value, '\0');
        std::memcpy(bytes.data(), &value, sizeof value);
        return is_little_ ? bytes : std::string{bytes.rbegin(), bytes.rend()};
    }
    std::string length(std::uint64_t value) const
    {
        return version_ == 4 ? big(value) : big(static_cast<std::uint32_t>(value));
    }

  private:
    template <class T>
    static std::string big(T value)
    {
        std::string bytes;
        for (std::size_t i = sizeof value; i-- > 0;) bytes += static_cast<char>(value >> (8 * i));
        return bytes;
    }
    std::string start(char kind, const std::string& label) const
    {
        return kind + big(static_cast<std::uint16_t>(label.size())) + label + (version_ == 4 ? length(0) : "");
    }
    std::string body(const std::vector<std::string>& entries) const
    {
        std::string result = std::string(2, '\0') + length(entries.size());
        for (const std::string& entry : entries) result += entry;
        return result;
    }

    int version_;
    bool is_little_;
};

/// An image of a DM file: element code, sizes, the type of its array and its bytes.
struct dm_image
{
    int code;
    std::vector<std::uint32_t> sizes;
    std::vector<std::uint64_t> array;
    std::string bytes;
};

inline std::string image_tags(const dm_writer& to, const dm_image& image)
{
    std::vector<std::string> sizes, axes;
    for (const std::uint32_t size : image.sizes) {
        sizes.push_back(to.number("", 5, size));
        const auto d = static_cast<float>(axes.size() + 1);
        axes.push_back(
            to.group("", {to.number("Origin", 6, d), to.number("Scale", 6, 0.25f * d), to.text("Units", u"µm")}));
    }
    return to.group("", {to.group("ImageData", {to.group("Calibrations", {to.group("Dimension", axes)}),
                                                to.tag("Data", image.array, image.bytes),
                                                to.number("DataType", 5, image.code), to.group("Dimensions", sizes)}),
                         to.group("ImageTags", {to.group("Microscope Info", {to.number("Voltage", 7, 2e5)})}),
                         to.text("Name", u"kept")});
}

/// A file with a thumbnail and an image that its window shows.
inline std::string dm_file(const dm_writer& to, const dm_image& image)
{
    const dm_image thumbnail{23, {1, 1}, {20, 5, 1}, to.in_order(std::uint32_t{7})};
    return to.file(
        {to.group("DocumentObjectList", {to.group("", {to.number("ImageSource", 5, std::uint32_t{0})})}),
         to.group("ImageList", {image_tags(to, thumbnail), image_tags(to, image)}),
         to.group("ImageSourceList", {to.group("", {to.number("ImageRef", 5, std::uint32_t{1})})}),
         to.group("Thumbnails", {to.group("", {to.number("ImageIndex", 5, std::uint32_t{0}),
                                               to.tag("Size", {15, 0, 2, 0, 3, 0, 3}, std::string(8, 'x'))})})});
}

}  // namespace support
