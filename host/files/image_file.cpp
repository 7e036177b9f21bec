#include "host/files/image_file.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <string_view>

#include "host/files/dm.h"
#include "host/files/dm_tags.h"
#include "host/files/file_error.h"
#include "host/files/input_file.h"
#include "host/files/mrc.h"
#include "host/files/npy.h"
#include "host/files/png.h"
#include "host/files/tiff.h"

namespace zentrix::host {

namespace {

std::string extension_of(const std::filesystem::path& file)
{
    std::string extension = utf8_path(file.extension());
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

/// A format that is read, or that is refused with a reason of its own.
struct format
{
    const char* name;
    bool (*starts)(std::string_view start);  ///< whether a file with these first bytes is of the format
    std::initializer_list<const char*> extensions;
    image_ref (*read)(const std::filesystem::path& file);
};

constexpr std::size_t longest_start = 1024;

bool is_npy(std::string_view start) { return start.starts_with("\x93NUMPY"); }
bool is_dm3(std::string_view start) { return is_dm(start) && start[3] == 3; }
bool is_dm4(std::string_view start) { return is_dm(start) && start[3] == 4; }
bool is_png(std::string_view start) { return start.starts_with("\x89PNG"); }
bool is_hdf5(std::string_view start) { return start.starts_with("\x89HDF"); }
bool is_zip(std::string_view start) { return start.starts_with("PK\x03\x04"); }

image_ref refuse_picture(const std::filesystem::path& file)
{
    throw file_error{file, "cannot be read: it is a picture, which has grey levels instead of measured values"};
}

image_ref refuse_hdf5(const std::filesystem::path& file)
{
    throw file_error{
        file, "cannot be read here: it is an HDF5 file (EMD, hspy); zentrix.read in Python reads it with HyperSpy"};
}

image_ref refuse_zip(const std::filesystem::path& file)
{
    throw file_error{file, "cannot be read: it is an archive; save each array as .npy"};
}

const format formats[] = {
    {"NumPy", is_npy, {".npy"}, read_npy},
    {"DM3", is_dm3, {".dm3"}, read_dm},
    {"DM4", is_dm4, {".dm4"}, read_dm},
    {"MRC", is_mrc, {".mrc", ".mrcs", ".map", ".ccp4", ".st", ".ali", ".rec"}, read_mrc},
    {"TIFF", is_tiff, {".tif", ".tiff"}, read_tiff},
    {"PNG", is_png, {".png"}, refuse_picture},
    {"HDF5", is_hdf5, {".emd", ".hspy"}, refuse_hdf5},
    {"ZIP", is_zip, {".npz", ".zspy"}, refuse_zip},
};

const format& format_of_contents(const std::filesystem::path& file)
{
    std::string start(longest_start, '\0');
    std::ifstream stream = open_input(file);
    stream.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(stream.gcount()));
    for (const format& one : formats)
        if (one.starts(start)) return one;
    const std::string extension = extension_of(file);
    for (const format& one : formats)
        if (std::ranges::find(one.extensions, extension) != one.extensions.end()) return one;
    throw file_error{file, "cannot be read: expected a .dm3, .dm4, .mrc, .npy or .tif file"};
}

using writer = void (*)(const std::filesystem::path& file, const image& pixels);

/// What keeps the values of an image in a file of that extension; null if nothing does.
writer writer_for(const std::filesystem::path& file)
{
    const std::string extension = extension_of(file);
    if (extension == ".npy") return write_npy;
    if (extension == ".mrc" || extension == ".mrcs") return write_mrc;
    if (extension == ".tif" || extension == ".tiff") return write_tiff;
    return nullptr;
}

bool is_refused(const format& one)
{
    return one.read == refuse_picture || one.read == refuse_hdf5 || one.read == refuse_zip;
}

}  // namespace

bool has_readable_extension(const std::filesystem::path& file)
{
    const std::string extension = extension_of(file);
    return std::ranges::any_of(formats, [&](const format& one) {
        return !is_refused(one) && std::ranges::find(one.extensions, extension) != one.extensions.end();
    });
}

image_ref read_image(const std::filesystem::path& file) { return format_of_contents(file).read(file); }

std::string format_of(const std::filesystem::path& file) { return format_of_contents(file).name; }

void require_writable_kind(const std::filesystem::path& file, element_class meaning)
{
    const writer found = writer_for(file);
    if (found == nullptr && extension_of(file) != ".png")
        throw file_error{file, "cannot be written: expected a name ending in .npy, .mrc, .tif or .png"};
    if (found == write_tiff && meaning == element_class::complex) throw file_error{file, no_complex_tiff};
}

calibration scale_kept_by(const std::filesystem::path& file, const calibration& scale)
{
    const writer found = writer_for(file);
    if (found == write_npy) return {};
    calibration kept = scale;
    if (found == write_mrc) kept.kilovolts = 0;
    return kept;
}

void write_image(const std::filesystem::path& file, const image& pixels, display_mode shown, palette shades)
{
    require_writable_kind(file);
    if (const auto write = writer_for(file))
        write(file, pixels);
    else
        write_png(file, pixels, shown, shades);
}

}  // namespace zentrix::host
