#include "host/files/tiff.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tiffio.h>

#include <cmath>

#include "host/files/image_file.h"
#include "host/files/tiff_description.h"
#include "tests/support/same_bytes.h"
#include "tests/support/scratch.h"

using namespace zentrix::host;

namespace {

/// How LibTIFF writes a page.
struct layout
{
    const char* mode;
    std::uint16_t compression = COMPRESSION_NONE;
    std::uint32_t tile = 0, rows = 3;
};

image_ref noise(std::uint32_t code, const std::vector<std::uint32_t>& sizes)
{
    auto pixels = image::create("noise", code, sizes);
    auto* bytes = static_cast<std::uint8_t*>(pixels->data());
    for (std::size_t i = 0; i < pixels->count() * pixels->type().bytes; ++i)
        bytes[i] = static_cast<std::uint8_t>(i * i / 3 + code);
    return pixels;
}

void write_with_libtiff(const std::filesystem::path& file, const image& pixels, const layout& how,
                        const char* description = nullptr)
{
    TIFF* const tiff = TIFFOpen(file.string().c_str(), how.mode);
    const std::uint32_t width = pixels.size(0), height = pixels.size(1), bytes = pixels.type().bytes;
    const bool is_real = pixels.type().meaning == element_class::real;
    const bool is_signed = pixels.type().meaning == element_class::signed_integer;
    const auto* plane = static_cast<const std::uint8_t*>(pixels.data());
    for (std::uint32_t z = 0; z < pixels.size(2); ++z, plane += std::size_t{width} * height * bytes) {
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8 * bytes);
        TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, is_real ? 3 : is_signed ? 2 : 1);
        TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(tiff, TIFFTAG_COMPRESSION, how.compression);
        if (description) TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, description);
        if (how.tile == 0) {
            TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, how.rows);
            for (std::uint32_t y = 0; y < height; ++y) {
                const auto* from = plane + std::size_t{y} * width * bytes;
                std::vector<std::uint8_t> row(from, from + std::size_t{width} * bytes);  // LibTIFF may change it
                TIFFWriteScanline(tiff, row.data(), y, 0);
            }
        } else {
            TIFFSetField(tiff, TIFFTAG_TILEWIDTH, how.tile);
            TIFFSetField(tiff, TIFFTAG_TILELENGTH, how.tile);
            std::vector<std::uint8_t> tile(std::size_t{how.tile} * how.tile * bytes);
            for (std::uint32_t top = 0; top < height; top += how.tile)
                for (std::uint32_t left = 0; left < width; left += how.tile) {
                    for (std::uint32_t y = top; y < std::min(top + how.tile, height); ++y)
                        std::copy_n(plane + (std::size_t{y} * width + left) * bytes,
                                    std::min(how.tile, width - left) * bytes, &tile[(y - top) * how.tile * bytes]);
                    TIFFWriteTile(tiff, tile.data(), left, top, 0, 0);
                }
        }
        TIFFWriteDirectory(tiff);
    }
    TIFFClose(tiff);
}

testing::AssertionResult same_image(const image& got, const image& expected)
{
    for (std::size_t d = 0; d < 3; ++d)
        if (got.size(d) != expected.size(d)) return testing::AssertionFailure() << "another size";
    if (got.code() != expected.code()) return testing::AssertionFailure() << "another type";
    const bool same = std::memcmp(got.data(), expected.data(), got.count() * got.type().bytes) == 0;
    return same ? testing::AssertionSuccess() : testing::AssertionFailure() << "other values";
}

constexpr std::uint32_t codes[] = {HOST_ELEMENT_UINT8, HOST_ELEMENT_UINT16, HOST_ELEMENT_UINT32,  HOST_ELEMENT_INT8,
                                   HOST_ELEMENT_INT16, HOST_ELEMENT_INT32,  HOST_ELEMENT_FLOAT32, HOST_ELEMENT_FLOAT64};

}  // namespace

TEST(Tiff, ReadsStripsTilesCompressionsByteOrdersAndStacks)
{
    const support::scratch_folder folder;
    for (const std::uint32_t code : codes)
        for (const layout& how : {layout{"wl"}, layout{"wb"}, layout{"w8"}, layout{"wl", COMPRESSION_LZW},
                                  layout{"wb", COMPRESSION_ADOBE_DEFLATE, 16}, layout{"wb", COMPRESSION_PACKBITS},
                                  layout{"wl", COMPRESSION_NONE, 32}, layout{"wl", COMPRESSION_NONE, 0, 1000}})
            for (const auto& sizes : {std::vector<std::uint32_t>{37, 21}, {21, 7, 3}}) {
                const auto pixels = noise(code, sizes);
                write_with_libtiff(folder / "a.tif", *pixels, how);
                EXPECT_TRUE(same_image(*read_image(folder / "a.tif"), *pixels))
                    << code << " " << how.mode << " " << how.compression << " " << how.tile;
            }
}

TEST(Tiff, KeepsValuesScaleAndVoltage)
{
    const support::scratch_folder folder;
    for (const std::uint32_t code : codes)
        for (const auto& sizes : {std::vector<std::uint32_t>{5, 4}, {5, 4, 3}}) {
            const auto pixels = noise(code, sizes);
            pixels->set_scale({{{{0.2485, -1.1, "\u00b5m"}, {1.0 / 3, 0, "\u00b5m"}, {1e-7, 2, "\u00b5m"}}}, 200});
            write_image(folder / "a.tif", *pixels);
            const auto read = read_image(folder / "a.tif");
            EXPECT_TRUE(same_image(*read, *pixels)) << code;
            for (std::size_t d = 0; d < 3; ++d) {
                EXPECT_EQ(read->scale().axes[d].step, pixels->scale().axes[d].step);
                EXPECT_EQ(read->scale().axes[d].first, pixels->scale().axes[d].first);
                EXPECT_EQ(read->scale().axes[d].unit, "\u00b5m");
            }
            EXPECT_EQ(read->scale().kilovolts, 200);
        }
    EXPECT_THAT(support::message_of([&] {
                    write_image(folder / "a.tif", *noise(HOST_ELEMENT_COMPLEX64, {2, 2}));
                }),
                testing::HasSubstr("a.tif: cannot be written: TIFF files have no complex numbers"));
    EXPECT_EQ(folder.files(), std::vector<std::string>{"a.tif"});
}

TEST(Tiff, TakesTheScaleFromDescriptionOrTags)
{
    struct row
    {
        const char* description;
        tiff_resolution resolution;
        double step;
        std::string unit;
    };
    for (const auto& [description, resolution, step, unit] : {
             row{"ImageJ=1.5\nunit=nm\n", {static_cast<float>(1 / 0.02), 50, 25.4e6}, 0.02, "nm"},
             row{"ImageJ=1.5\nunit=\\u00B5m\n", {4, 4, 0}, 0.25, "\u00b5m"},
             row{"ImageJ=1.5\nunit=nm\nstep_x=0.0200000001\n", {50, 50, 0}, 0.0200000001, "nm"},
             row{"ImageJ=1.5\nunit=nm\nstep_x=0.04\n", {50, 50, 0}, 0.02, "nm"},  // left by a program that scaled it
             row{"a photograph", {72, 72, 25.4e6}, 0, ""},
             row{"", {2e7f, 2e7f, 1e7}, 0.5, "nm"},
             row{"", {0, 0, 1e7}, 0, ""},
             row{"", {NAN, INFINITY, 1e7}, 0, ""},
             row{"ImageJ=1.5\nunit=nm", {-1, 1e-320, 0}, 0, ""},
         }) {
        const auto scale = tiff_scale(description, resolution);
        EXPECT_EQ(scale.axes[0].step, step) << description;
        EXPECT_EQ(scale.axes[0].unit, unit);
    }
    EXPECT_EQ(images_in("ImageJ=1.5\nimages=7\n"), 7u);
    EXPECT_EQ(images_in("images=7\n"), 1u);
}

TEST(Tiff, ReadsImagesThatFollowTheOnlyPage)
{
    const support::scratch_folder folder;
    const auto stack = noise(HOST_ELEMENT_UINT16, {4, 3, 5});
    const std::uint32_t plane[] = {4, 3};
    const std::ptrdiff_t strides[] = {1, 4};
    const auto first = image::over("first", stack->code(), stack->data(), plane, strides, access::read, stack);
    for (const char* const mode : {"wl", "wb"}) {
        write_with_libtiff(folder / "a.tif", *first, {mode, COMPRESSION_NONE, 0, 3}, "ImageJ=1.5\nimages=5\n");
        std::string contents = folder.read("a.tif");
        // The images are written after the page, and its offset leads to them.
        const bool is_big = contents[0] == 'M';
        const auto end = static_cast<std::uint32_t>(contents.size());
        std::string offset{reinterpret_cast<const char*>(&end), 4}, data{static_cast<const char*>(stack->data()), 120};
        const std::string tag =
            is_big ? std::string{"\x01\x11\0\4\0\0\0\1", 8} : std::string{"\x11\x01\4\0\1\0\0\0", 8};
        if (is_big) {
            std::reverse(offset.begin(), offset.end());
            for (std::size_t i = 0; i < data.size(); i += 2) std::swap(data[i], data[i + 1]);
        }
        contents.replace(contents.find(tag) + 8, 4, offset);
        folder.write("a.tif", contents + data);
        EXPECT_TRUE(same_image(*read_image(folder / "a.tif"), *stack)) << mode;
        folder.write("a.tif", contents + data.substr(1));
        EXPECT_THAT(support::message_of([&] { read_image(folder / "a.tif"); }),
                    testing::HasSubstr("it is cut short: 5 x 3 x 4 elements of 2 bytes are announced, but only 119"));
    }
}

TEST(Tiff, RefusesLiesWithoutPrintingOrAllocating)
{
    const support::scratch_folder folder;
    write_tiff(folder / "good.tif", *noise(HOST_ELEMENT_FLOAT32, {6, 5}));
    const std::string good = folder.read("good.tif");
    const auto with = [&](int tag, std::uint32_t value) {
        std::string changed = good;
        const std::string key{static_cast<char>(tag % 256), static_cast<char>(tag / 256)};
        std::memcpy(&changed[changed.find(key, 24) + 8], &value, 4);
        return changed;
    };
    struct row
    {
        std::string contents, message;
    };
    testing::internal::CaptureStderr();
    for (const auto& [contents, message] : {
             row{good.substr(0, 12), "it is damaged: "},
             row{good.substr(0, 60), "it is damaged: "},
             row{good.substr(0, good.size() - 1), "it is damaged: Read error at scanline"},
             row{with(256, 0x7fffffff), "it is cut short: 5 x 2147483647 elements of 4 bytes are announced, but only "},
             row{with(257, 0x7fffffff), "it is cut short: 2147483647 x 6 elements of 4 bytes are announced, but only "},
             row{with(258, 24), "its elements have 24 bits in format 3; expected integers of 8, 16 or 32 bits, or "},
             row{with(259, 7), "it is compressed by method 7; expected none, LZW, Deflate or PackBits"},
             row{with(277, 3), "its pixels have 3 channels, as colour pictures have; expected one"},
             row{with(339, 5), "its elements have 32 bits in format 5"},
         }) {
        folder.write("bad.tif", contents);
        const std::string text = support::message_of([&] { read_image(folder / "bad.tif"); });
        EXPECT_THAT(text, testing::HasSubstr("bad.tif: " + message));
    }
    auto other = noise(HOST_ELEMENT_UINT8, {6, 6});
    write_with_libtiff(folder / "bad.tif", *noise(HOST_ELEMENT_UINT8, {6, 5}), {"wl"});
    write_with_libtiff(folder / "bad.tif", *other, {"a"});
    EXPECT_THAT(support::message_of([&] { read_image(folder / "bad.tif"); }),
                testing::HasSubstr("page 2 differs from page 1 in size or type; expected pages of one kind"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
