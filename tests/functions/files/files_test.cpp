#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "functions/files/numbered_name.h"
#include "functions/files/raw_file.h"
#include "image/errors.h"
#include "tests/support/same_bytes.h"

namespace {

using namespace qorv;
using dm::element_type;
using support::message_of;

TEST(NumberedName, SortsRunsOfDigitsByTheirValue)
{
    const std::vector<std::string> sorted{"",
                                          "9.raw",
                                          "10.raw",
                                          "a",
                                          "a1b2",
                                          "A1b10",
                                          "a2",
                                          "img-1",
                                          "img1.raw",
                                          "IMG1.raw2",
                                          "img2.raw",
                                          "img010.raw",
                                          "img99999999999999999999.raw",
                                          "img100000000000000000000.raw",
                                          "z",
                                          "\xC3\xA9"};
    auto reversed = sorted;
    std::reverse(reversed.begin(), reversed.end());
    functions::sort_numbered_names(reversed);
    EXPECT_EQ(reversed, sorted);
}

TEST(NumberedName, KeepsTheOrderOfEqualNames)
{
    std::vector<std::string> names, wanted{"img0"};
    for (int zeros = 0; zeros < 40; ++zeros)
        names.push_back((zeros % 2 ? "IMG" : "img") + std::string(zeros * 7 % 40, '0') + "1");
    wanted.insert(wanted.end(), names.begin(), names.end());
    names.push_back("img0");
    functions::sort_numbered_names(names);
    EXPECT_EQ(names, wanted);
}

TEST(RawFile, ReadsAFileOfTheRightLength)
{
    const auto path = std::filesystem::temp_directory_path() / std::filesystem::path{u8"zentrix_raw_\u00e9.bin"};
    const std::vector<std::int16_t> pixels{1, -2, 300, -400, 5, 6};
    std::ofstream{path, std::ios::binary}.write(reinterpret_cast<const char*>(pixels.data()), 12);
    const auto utf8 = path.u8string();
    {
        functions::raw_file file{std::string{utf8.begin(), utf8.end()}};
        EXPECT_EQ(message_of([&] { file.require_length(11); }), dm::errors::invalid_image_size);
        file.require_length(functions::raw_bytes(element_type::int16, 3, 2, 1));
        std::vector<std::int16_t> got(6);
        for (int again = 0; again < 2; ++again) file.read(got.data(), 12);
        EXPECT_EQ(got, pixels);
        EXPECT_EQ(message_of([&] { file.read(std::vector<char>(20).data(), 20); }), functions::file_not_read);
    }
    std::filesystem::remove(path);
    for (const std::string& missing : {std::string{utf8.begin(), utf8.end()}, std::string{"."}, std::string{}})
        EXPECT_EQ(message_of([&] { functions::raw_file{missing}; }), functions::file_not_opened);
}

TEST(RawFile, CountsBytesAndRefusesInvalidSizes)
{
    EXPECT_EQ(functions::raw_bytes(element_type::complex128, 100000, 100000, 10), 1600000000000u);
    EXPECT_EQ(message_of([] { functions::raw_bytes(element_type::none, 0, 1, 1); }), dm::errors::unknown_data_type);
    for (const auto& s : {std::array{0, 1, 1}, {1, -1, 1}, {1, 1, 0}, {INT32_MAX, INT32_MAX, 3}})
        EXPECT_EQ(message_of([&] { functions::raw_bytes(element_type::float32, s[0], s[1], s[2]); }),
                  dm::errors::invalid_image_size);
}

}  // namespace
