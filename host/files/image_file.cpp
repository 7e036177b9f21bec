#include "host/files/image_file.h"

#include <algorithm>
#include <cctype>

#include "host/files/file_error.h"
#include "host/files/input_file.h"
#include "host/files/npy.h"
#include "host/files/png.h"

namespace zentrix::host {

namespace {

std::string extension_of(const std::filesystem::path& file)
{
    std::string extension = utf8_path(file.extension());
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

}  // namespace

image_ref read_image(const std::filesystem::path& file)
{
    if (extension_of(file) == ".npy") return read_npy(file);
    open_input(file);  // a missing file is reported first
    throw file_error{file, "cannot be read: expected a .npy file"};
}

void require_writable_kind(const std::filesystem::path& file)
{
    const std::string extension = extension_of(file);
    if (extension != ".npy" && extension != ".png")
        throw file_error{file, "cannot be written: expected a name ending in .npy or .png"};
}

void write_image(const std::filesystem::path& file, const image& pixels, display_mode shown, palette shades)
{
    require_writable_kind(file);
    if (extension_of(file) == ".npy")
        write_npy(file, pixels);
    else
        write_png(file, pixels, shown, shades);
}

}  // namespace zentrix::host
