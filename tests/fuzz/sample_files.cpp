#include "tests/fuzz/sample_files.h"

#include <tiffio.h>

#include "host/files/image_file.h"
#include "host/files/png.h"
#include "tests/host/files/dm_tree.h"
#include "tests/support/scratch.h"

namespace fuzz {

namespace {

using namespace zentrix::host;

image_ref sample(std::uint32_t code, const std::vector<std::uint32_t>& sizes)
{
    auto made = image::create("sample", code, sizes);
    auto* bytes = static_cast<unsigned char*>(made->data());
    for (std::size_t i = 0; i < made->count() * made->type().bytes; ++i) bytes[i] = static_cast<unsigned char>(i % 64);
    return made;
}

constexpr std::uint32_t codes[] = {
    HOST_ELEMENT_INT8,   HOST_ELEMENT_UINT8,   HOST_ELEMENT_INT16,   HOST_ELEMENT_UINT16,    HOST_ELEMENT_INT32,
    HOST_ELEMENT_UINT32, HOST_ELEMENT_FLOAT32, HOST_ELEMENT_FLOAT64, HOST_ELEMENT_COMPLEX64, HOST_ELEMENT_COMPLEX128};

/// The files that the project writes, of each element type that the format has, as image and as stack.
std::vector<std::string> written_as(const std::string& name)
{
    const support::scratch_folder folder;
    std::vector<std::string> made;
    for (const std::uint32_t code : codes)
        for (const auto& sizes : {std::vector<std::uint32_t>{4, 3}, {3, 2, 3}}) {
            const auto pixels = sample(code, sizes);
            pixels->set_scale({{{{0.5, 1, "nm"}, {0.5, 0, "nm"}, {2, 0, "nm"}}}, 300});
            try {
                write_image(folder / name, *pixels);
                made.push_back(folder.read(name));
            } catch (const std::exception&) {  // the format does not have this type
            }
        }
    return made;
}

std::string compressed_tiff(std::uint16_t compression, const char* mode, std::uint32_t tile)
{
    const support::scratch_folder folder;
    TIFF* const file = TIFFOpen((folder / "t.tif").string().c_str(), mode);
    constexpr std::uint32_t width = 20, height = 18;
    TIFFSetField(file, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(file, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, 16);
    TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(file, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(file, TIFFTAG_COMPRESSION, compression);
    TIFFSetField(file, TIFFTAG_IMAGEDESCRIPTION, "ImageJ=1.53\nimages=1\nunit=nm\nspacing=2.5\n");
    std::vector<std::uint16_t> pixels(std::size_t{32} * 32, 7);
    for (std::size_t i = 0; i < pixels.size(); i += 3) pixels[i] = static_cast<std::uint16_t>(i);
    if (tile > 0) {
        TIFFSetField(file, TIFFTAG_TILEWIDTH, tile);
        TIFFSetField(file, TIFFTAG_TILELENGTH, tile);
        for (std::uint32_t y = 0; y < height; y += tile)
            for (std::uint32_t x = 0; x < width; x += tile) TIFFWriteTile(file, pixels.data(), x, y, 0, 0);
    } else {
        TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, 5);
        for (std::uint32_t y = 0; y < height; ++y) TIFFWriteScanline(file, &pixels[y * width], y, 0);
    }
    TIFFClose(file);
    return folder.read("t.tif");
}

/// Elements of a file whose header announces far more.
const std::string too_few(200, 'x');

}  // namespace

std::vector<std::string> sample_npy_files()
{
    auto made = written_as("s.npy");
    const auto header = [](const std::string& text, char version) {
        std::string start = "\x93NUMPY";
        start += version;
        start += '\0';
        start += static_cast<char>(text.size());
        start += std::string(version == 1 ? 1 : 3, '\0');
        return start + text;
    };
    made.push_back(header("{'descr': '>f4', 'fortran_order': True, 'shape': (2, 3), }\n", 1) + std::string(24, 'f'));
    made.push_back(header("{'descr': '<c16', 'fortran_order': False, 'shape': (1, 1, 2), }\n", 2) +
                   std::string(32, 'c'));
    made.push_back(header("{'descr': '|u1', 'fortran_order': False, 'shape': (5,), }\n", 3) + "bytes");
    made.push_back(header("{'descr': '<f4', 'fortran_order': False, 'shape': (20000, 20000), }\n", 1) + too_few);
    return made;
}

std::vector<std::string> sample_mrc_files()
{
    auto made = written_as("s.mrc");
    std::string large = made.front();
    for (const std::size_t at : {0u, 4u}) large.replace(at, 4, "\x20\x4e\0\0", 4);  // 20000 columns and rows
    made.push_back(large + too_few);
    return made;
}

std::vector<std::string> sample_dm_files()
{
    std::vector<std::string> made;
    for (const int version : {3, 4})
        for (const bool is_little : {true, false}) {
            const support::dm_writer to{version, is_little};
            const auto add = [&](support::dm_image image) { made.push_back(support::dm_file(to, image)); };
            add({2, {4, 3}, {20, 6, 12}, std::string(48, 'p')});
            add({7, {3, 2, 2}, {20, 3, 12}, std::string(48, 'i')});
            add({3, {2, 2}, {20, 15, 0, 2, 0, 6, 0, 6, 4}, std::string(32, 'c')});
            add({5, {4, 4}, {20, 6, 16}, std::string(64, 's')});
            add({39, {2, 2}, {20, 11, 4}, std::string(32, '\0')});
        }
    return made;
}

std::vector<std::string> sample_tiff_files()
{
    auto made = written_as("s.tif");
    for (const std::uint16_t compression : {COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_PACKBITS})
        for (const std::uint32_t tile : {0u, 16u}) made.push_back(compressed_tiff(compression, "w", tile));
    made.push_back(compressed_tiff(COMPRESSION_LZW, "wb8", 16));
    made.push_back(compressed_tiff(COMPRESSION_NONE, "wb", 0));
    return made;
}

std::vector<std::string> sample_png_files()
{
    const support::scratch_folder folder;
    write_png(folder / "s.png", {4, 3, 1, std::vector<std::uint8_t>(12, 7)},
              {{"Shown", "modulus"}, {"Limits", "-0.25,1.5"}, {"Title", "\xc3\xa9"}});
    return {folder.read("s.png")};
}

}  // namespace fuzz
