#include "host/files/npy.h"

#include <gtest/gtest.h>

#include <complex>
#include <cstring>
#include <string>
#include <vector>

#include "host/files/npy_header.h"
#include "tests/support/same_bytes.h"
#include "tests/support/scratch.h"

#ifndef _WIN32
#include <sys/stat.h>
#endif

using namespace zentrix::host;
using support::scratch_folder;

namespace {

std::string npy_text(const std::string& dictionary, const std::string& elements, int version = 1)
{
    std::string header = dictionary + "\n";
    std::string text{"\x93NUMPY", 6};
    text += static_cast<char>(version);
    text += '\0';
    for (int i = 0; i < (version == 1 ? 2 : 4); ++i) text += static_cast<char>(header.size() >> (8 * i));
    return text + header + elements;
}

template <class T>
std::string bytes_of(const std::vector<T>& values)
{
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T)};
}

std::string problem_of(const std::filesystem::path& file)
{
    return support::message_of([&] { read_npy(file); });
}

}  // namespace

TEST(Npy, KeepsEveryTypeAndDimensionToTheBit)
{
    const scratch_folder folder;
    const std::vector<std::vector<std::uint32_t>> shapes{{7}, {5, 3}, {4, 3, 2}, {1, 1, 1}};
    for (const std::uint32_t code : {HOST_ELEMENT_INT8, HOST_ELEMENT_UINT8, HOST_ELEMENT_INT16, HOST_ELEMENT_UINT16,
                                     HOST_ELEMENT_INT32, HOST_ELEMENT_UINT32, HOST_ELEMENT_FLOAT32,
                                     HOST_ELEMENT_FLOAT64, HOST_ELEMENT_COMPLEX64, HOST_ELEMENT_COMPLEX128})
        for (const auto& sizes : shapes) {
            auto written = image::create("written", code, sizes);
            const std::size_t bytes = written->count() * written->type().bytes;
            auto* data = static_cast<unsigned char*>(written->data());
            for (std::size_t i = 0; i < bytes; ++i) data[i] = static_cast<unsigned char>(37 * i + code);
            write_npy(folder / "array.npy", *written);

            const auto read = read_npy(folder / "array.npy");
            ASSERT_EQ(read->code(), code);
            ASSERT_EQ(read->dimensions(), sizes.size());
            for (std::size_t d = 0; d < 3; ++d) ASSERT_EQ(read->size(d), written->size(d));
            EXPECT_EQ(std::memcmp(read->data(), data, bytes), 0) << dtype_name(read->type());
            EXPECT_EQ(read->name(), "array");
            EXPECT_EQ((std::filesystem::file_size(folder / "array.npy") - bytes) % 64, 0u);  // aligned for mapping
        }
    EXPECT_EQ(folder.files(), std::vector<std::string>{"array.npy"});
}

TEST(Npy, ReadsByteOrdersColumnMajorOrderAndVersions)
{
    const scratch_folder folder;
    const std::vector<std::int16_t> by_rows{1, 2, 3, 4, 5, 6}, by_columns{1, 4, 2, 5, 3, 6};
    std::vector<std::int16_t> swapped;
    for (const std::int16_t value : by_rows) swapped.push_back(static_cast<std::int16_t>(value * 256));
    struct row
    {
        std::string dictionary, elements;
        int version;
    };
    for (const auto& [dictionary, elements, version] : {
             row{"{'descr': '<i2', 'fortran_order': False, 'shape': (2, 3), }", bytes_of(by_rows), 1},
             row{"{'shape':(2,3),'fortran_order':False,'descr':'<i2'}", bytes_of(by_rows) + "trailing", 2},
             row{"{\"descr\": \"=i2\", 'fortran_order': False, 'shape': (2L, 3L)}   ", bytes_of(by_rows), 3},
             row{"{'descr': '>i2', 'fortran_order': False, 'shape': (2, 3), }", bytes_of(swapped), 1},
             row{"{'descr': '<i2', 'fortran_order': True, 'shape': (2, 3), }", bytes_of(by_columns), 1},
         }) {
        folder.write("a.npy", npy_text(dictionary, elements, version));
        auto picture = read_npy(folder / "a.npy");
        EXPECT_EQ(picture->size(0), 3u);
        EXPECT_EQ(picture->size(1), 2u);
        EXPECT_EQ(picture->at<std::int16_t>(2, 0), 3) << dictionary;
        EXPECT_EQ(picture->at<std::int16_t>(0, 1), 4) << dictionary;
    }

    // Both parts of a complex number are swapped separately; column-major order reverses all three dimensions.
    folder.write("c.npy", npy_text("{'descr': '>c8', 'fortran_order': False, 'shape': (1,)}",
                                   std::string{"?\x80\0\0@\0\0\0", 8}));
    EXPECT_EQ(read_npy(folder / "c.npy")->at<std::complex<float>>(0), (std::complex<float>{1, 2}));
    std::vector<std::uint8_t> volume(24);
    for (std::size_t i = 0; i < 24; ++i) volume[i] = static_cast<std::uint8_t>(i);
    folder.write("f.npy", npy_text("{'descr': '|u1', 'fortran_order': True, 'shape': (2, 3, 4)}", bytes_of(volume)));
    EXPECT_EQ(read_npy(folder / "f.npy")->at<std::uint8_t>(3, 1, 1), 1 + 2 * (1 + 3 * 3));
}

TEST(Npy, NamesWhatIsWrongWithAFile)
{
    const scratch_folder folder;
    const std::string four(4 * 4, 'x');
    const std::string damaged = "its header is damaged; expected {'descr': ..., 'fortran_order': ..., 'shape': ...}";
    const auto shaped = [&](const std::string& shape, const std::string& descr = "<f4") {
        return npy_text("{'descr': '" + descr + "', 'fortran_order': False, 'shape': " + shape + ", }", four);
    };
    struct row
    {
        std::string contents, message;
    };
    for (
        const auto& [contents, message] : {
            row{"", "it is not a .npy file: expected the first bytes \\x93NUMPY"},
            row{"\x89PNG\r\n\x1a\n", "it is not a .npy file: expected the first bytes \\x93NUMPY"},
            row{npy_text("{}", four, 4), "it has .npy format version 4; expected 1, 2 or 3"},
            row{shaped("(4,)").substr(0, 30), "it ends within its header"},
            row{std::string{"\x93NUMPY\x02\0\xff\xff\xff\x7f", 12},
                "its header is 2147483647 bytes long; expected at most 65536"},
            row{npy_text("{'descr': '<f4', 'shape': (4,)}", four), damaged},
            row{npy_text("{'descr': '<f4', 'fortran_order': maybe, 'shape': (4,)}", four), damaged},
            row{npy_text("{'descr': '<f4', 'fortran_order': False, 'shape': (4,", four), damaged},
            row{shaped("(-4,)"), damaged},
            row{shaped("(4,)", std::string{"<f4\0", 4}), damaged},
            row{npy_text("{'descr': [('a', '<f4')], 'fortran_order': False, 'shape': (4,)}", four),
                "it holds records with several fields; expected plain numbers"},
            row{shaped("(4,)", "<i8"),
                "its elements are of type '<i8'; expected int8, uint8, int16, uint16, int32, uint32, float32, float64, "
                "complex64 or complex128 (in NumPy: array.astype(\"float32\"))"},
            row{shaped("()"), "the array has 0 dimensions; expected 1, 2 or 3"},
            row{shaped("(1, 1, 2, 2)"), "the array has 4 dimensions; expected 1, 2 or 3"},
            row{shaped("(0, 4)"), "one of its dimensions is 0 long; expected 1 to 2147483647"},
            row{shaped("(4294967296,)"), "one of its dimensions is 4294967296 long; expected 1 to 2147483647"},
            row{shaped("(99999999999999999999999,)"),
                "one of its dimensions has more than 64 bits; expected 1 to 2147483647"},
            row{shaped("(2147483647, 2147483647, 2147483647)"),
                "it is cut short: 2147483647 x 2147483647 x 2147483647 elements of 4 bytes are announced, but only 16 "
                "bytes "
                "follow"},
            row{shaped("(1, 5)"), "it is cut short: 1 x 5 elements of 4 bytes are announced, but only 16 bytes follow"},
        }) {
        folder.write("bad.npy", contents);
        EXPECT_EQ(problem_of(folder / "bad.npy"), (folder / "bad.npy").string() + ": " + message);
    }
}

TEST(Npy, RefusesWhatIsNotAFileAtOnce)
{
    const scratch_folder folder;
    std::filesystem::create_directory(folder / "folder.npy");
    std::vector<std::pair<std::string, std::string>> rows{{"none.npy", "there is no such file"},
                                                          {"folder.npy", "cannot be read: it is a folder"}};
#ifndef _WIN32
    ASSERT_EQ(mkfifo((folder / "pipe.npy").c_str(), 0600), 0);
    std::filesystem::create_symlink("loop.npy", folder / "loop.npy");
    rows.insert(rows.end(), {{"pipe.npy", "cannot be read: it is not a regular file"},
                             {"loop.npy", "cannot be read: Too many levels of symbolic links"},
                             {std::string(300, 'n'), "cannot be read: File name too long"}});
#endif
    for (const auto& [name, message] : rows)
        EXPECT_EQ(problem_of(folder / name), (folder / name).string() + ": " + message);
}
