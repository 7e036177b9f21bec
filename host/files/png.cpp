#include "host/files/png.h"

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
