#include "host/files/picture.h"

#include "host/files/file_error.h"
#include "host/files/pending_file.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"  // its writers of other formats
#include <stb/stb_image_write.h>
#pragma GCC diagnostic pop

namespace zentrix::host {

namespace {

void append(void* context, void* bytes, int count)
{
    const auto* const begin = static_cast<const std::uint8_t*>(bytes);
    auto& all = *static_cast<std::vector<std::uint8_t>*>(context);
    all.insert(all.end(), begin, begin + count);
}

}  // namespace

picture make_picture(const image& pixels, display_mode mode, palette shades, std::optional<grey_limits> limits)
{
    const auto values = displayed_values(pixels, mode);
    picture made{
        static_cast<int>(pixels.size(0)), static_cast<int>(pixels.size(1)), shades == palette::cyclic ? 3 : 1, {}};
    made.bytes.reserve(values.size() * static_cast<std::size_t>(made.channels));
    if (shades == palette::cyclic) {
        static const colour_wheel colour_of;
        for (const float value : values)
            for (const std::uint8_t channel : colour_of(value)) made.bytes.push_back(channel);
        return made;
    }
    const grey_scale grey{limits ? *limits : robust_limits(values)};
    for (const float value : values) made.bytes.push_back(grey(value));
    return made;
}

void write_png(const std::filesystem::path& file, const picture& shown)
{
    std::vector<std::uint8_t> png;
    pending_file output{file};
    if (!stbi_write_png_to_func(append, &png, shown.width, shown.height, shown.channels, shown.bytes.data(),
                                shown.width * shown.channels))
        throw file_error{file, "cannot be made into a picture: out of memory"};
    output.write(png.data(), png.size());
    output.commit();
}

void write_png(const std::filesystem::path& file, const image& pixels, display_mode mode, palette shades)
{
    if (pixels.dimensions() > 2) throw file_error{file, "a volume cannot be shown as one picture"};
    write_png(file, make_picture(pixels, mode, shades));
}

}  // namespace zentrix::host
