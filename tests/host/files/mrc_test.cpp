#include "host/files/mrc.h"

#include <gtest/gtest.h>

#include <complex>

#include "host/files/image_file.h"
#include "host/files/mrc_header.h"
#include "host/pictures/for_each_pixel.h"
#include "tests/support/same_bytes.h"
#include "tests/support/scratch.h"

using namespace zentrix::host;

namespace {

std::vector<std::complex<double>> values_of(const image& pixels)
{
    std::vector<std::complex<double>> values;
    for (std::uint32_t z = 0; z < pixels.size(2); ++z)
        for_each_pixel_of_plane(pixels, z, [&](std::complex<double> value) { values.push_back(value); });
    return values;
}

/// 3 x 2 or 3 x 2 x 2 with values that every type has.
image_ref sample(std::uint32_t code, std::size_t dimensions)
{
    const std::uint32_t sizes[] = {3, 2, 2};
    auto pixels = image::create("sample", code, std::span{sizes}.first(dimensions));
    auto* bytes = static_cast<std::uint8_t*>(pixels->data());
    const std::uint32_t word = pixels->type().bytes;
    for (std::size_t i = 0; i < pixels->count(); ++i) {
        const auto value = static_cast<float>(i + 1);
        if (pixels->type().meaning == element_class::real && word == 4)
            pixels->at<float>(0, 0) = value, std::memcpy(bytes + 4 * i, &value, 4);
        else if (code == HOST_ELEMENT_COMPLEX64)
            static_cast<std::complex<float>*>(pixels->data())[i] = {value, -value};
        else if (code == HOST_ELEMENT_COMPLEX128)
            static_cast<std::complex<double>*>(pixels->data())[i] = {value, -value};
        else if (code == HOST_ELEMENT_FLOAT64)
            static_cast<double*>(pixels->data())[i] = value;
        else
            bytes[word * i] = static_cast<std::uint8_t>(i + 1);
    }
    return pixels;
}

}  // namespace

TEST(Mrc, KeepsValuesAndPixelSizeInTheTypesThatItHas)
{
    const support::scratch_folder folder;
    const std::pair<std::uint32_t, std::uint32_t> rows[] = {
        {HOST_ELEMENT_INT8, HOST_ELEMENT_INT8},           {HOST_ELEMENT_UINT8, HOST_ELEMENT_UINT16},
        {HOST_ELEMENT_INT16, HOST_ELEMENT_INT16},         {HOST_ELEMENT_UINT16, HOST_ELEMENT_UINT16},
        {HOST_ELEMENT_INT32, HOST_ELEMENT_FLOAT32},       {HOST_ELEMENT_UINT32, HOST_ELEMENT_FLOAT32},
        {HOST_ELEMENT_FLOAT32, HOST_ELEMENT_FLOAT32},     {HOST_ELEMENT_FLOAT64, HOST_ELEMENT_FLOAT32},
        {HOST_ELEMENT_COMPLEX64, HOST_ELEMENT_COMPLEX64}, {HOST_ELEMENT_COMPLEX128, HOST_ELEMENT_COMPLEX64}};
    for (const auto& [code, stored] : rows)
        for (const std::size_t dimensions : {2u, 3u}) {
            const auto written = sample(code, dimensions);
            written->set_scale({{{{0.02, 1.5, "nm"}, {0.02, -3, "nm"}, {0.7, 0, dimensions == 3 ? "nm" : ""}}}, 300});
            write_image(folder / "a.mrc", *written);
            const auto read = read_image(folder / "a.mrc");
            EXPECT_EQ(read->code(), stored);
            EXPECT_EQ(read->dimensions(), dimensions);
            EXPECT_EQ(values_of(*read), values_of(*written));
            for (std::size_t d = 0; d < dimensions; ++d) {
                EXPECT_EQ(read->scale().axes[d].step, written->scale().axes[d].step);
                EXPECT_EQ(read->scale().axes[d].first, written->scale().axes[d].first);
                EXPECT_EQ(read->scale().axes[d].unit, "nm");
            }
        }
    EXPECT_EQ(folder.files(), std::vector<std::string>{"a.mrc"});
}

TEST(Mrc, ReadsTheOtherByteOrderExtendedHeadersAndFilesWithoutMark)
{
    const support::scratch_folder folder;
    mrc::header words{};
    words[mrc::size] = 2, words[mrc::size + 1] = 1, words[mrc::size + 2] = 1, words[mrc::mode] = 4;
    words[mrc::start + 1] = 5;
    words[mrc::sampling] = words[mrc::sampling + 1] = 10;
    words[mrc::cell] = mrc::word_of(40), words[mrc::cell + 1] = mrc::word_of(30);
    words[mrc::axes] = 2, words[mrc::axes + 1] = 1,
    words[mrc::axes + 2] = 3;  // columns run along the cell's second axis
    words[mrc::extended_bytes] = 5;
    const float parts[] = {1, 2, 3, 4};
    std::string bytes{reinterpret_cast<const char*>(words.data()), sizeof words};
    bytes += "extra" + std::string{reinterpret_cast<const char*>(parts), sizeof parts};
    std::string swapped = bytes;
    for (std::size_t at = 0; at < bytes.size(); at += 4) {
        if (at == sizeof words) at += 5;
        std::reverse(&swapped[at], &swapped[at] + 4);
    }
    for (const std::string& contents : {bytes, swapped}) {
        folder.write("old.mrc", contents);
        const auto read = read_image(folder / "old.mrc");
        EXPECT_EQ(values_of(*read), (std::vector<std::complex<double>>{{1, 2}, {3, 4}}));
        EXPECT_EQ(read->scale().axes[0].step, 0.3);
        EXPECT_EQ(read->scale().axes[1].step, 0.4);
        EXPECT_EQ(read->scale().axes[1].first, 2);
    }
}

TEST(Mrc, ReadsFilesOfBytesInTheOtherByteOrder)
{
    const support::scratch_folder folder;
    const std::uint32_t sizes[] = {300, 2};
    const auto pixels = image::create("a", HOST_ELEMENT_INT8, sizes);
    static_cast<std::int8_t*>(pixels->data())[301] = -7;
    write_mrc(folder / "a.mrc", *pixels);
    std::string contents = folder.read("a.mrc");
    for (std::size_t at = 0; at < sizeof(mrc::header); at += 4) std::reverse(&contents[at], &contents[at] + 4);
    contents.replace(4 * mrc::map_mark, 4, "MAP ");
    folder.write("swapped.mrc", contents);
    EXPECT_EQ(values_of(*read_image(folder / "swapped.mrc")), values_of(*pixels));
}

TEST(Mrc, RefusesLiesAndWhatItCannotHold)
{
    const support::scratch_folder folder;
    struct row
    {
        std::size_t place;
        std::uint32_t word;
        std::string message;
    };
    for (const auto& [place, word, message] : {
             row{mrc::mode, 3, "it has mode 3; expected 0 (int8), 1 (int16), 2 (float32), 4 (complex64) or 6 (uint16)"},
             row{mrc::mode, 0x01020304, "it is not an MRC file: its mode is 16909060"},
             row{mrc::size, 0, "one of its dimensions is 0 long; expected 1 to 2147483647"},
             row{mrc::size + 1, 0xffffffff, "one of its dimensions is -1 long; expected 1 to 2147483647"},
             row{mrc::size + 2, 0x7fffffff,
                 "it is cut short: 2147483647 x 2 x 3 elements of 4 bytes are announced, but only 24 bytes follow"},
             row{mrc::extended_bytes, 0xffffffff, "it ends within its header"},
             row{mrc::extended_bytes, 4,
                 "it is cut short: 2 x 3 elements of 4 bytes are announced, but only 20 bytes follow"},
         }) {
        write_mrc(folder / "a.mrc", *sample(HOST_ELEMENT_FLOAT32, 2));
        std::string contents = folder.read("a.mrc");
        std::memcpy(&contents[4 * place], &word, 4);
        folder.write("a.mrc", contents);
        EXPECT_EQ(support::message_of([&] { read_image(folder / "a.mrc"); }),
                  (folder / "a.mrc").string() + ": " + message);
    }
    const std::string before = folder.read("a.mrc");
    auto large = sample(HOST_ELEMENT_FLOAT64, 2), odd = sample(HOST_ELEMENT_UINT32, 2);
    large->at<double>(1) = 1e39;
    odd->at<std::uint32_t>(1) = (1u << 24) + 1;
    const std::string too_large =
        "cannot be written: MRC files have float32 at most, which some of its values do not "
        "fit; .npy keeps them";
    for (const auto& [pixels, message] :
         {std::pair{large, too_large}, std::pair{odd, too_large},
          std::pair{sample(HOST_ELEMENT_BINARY, 2),
                    std::string{"an image of type Binary 1 Byte cannot be written as .mrc"}}})
        EXPECT_EQ(support::message_of([&, image = pixels] { write_mrc(folder / "a.mrc", *image); }),
                  (folder / "a.mrc").string() + ": " + message);
    EXPECT_EQ(folder.read("a.mrc"), before);
}
