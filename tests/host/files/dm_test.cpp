#include "host/files/dm.h"

#include <gtest/gtest.h>

#include <numbers>

#include "host/files/image_file.h"
#include "host/pictures/for_each_pixel.h"
#include "tests/host/files/dm_tree.h"
#include "tests/support/same_bytes.h"
#include "tests/support/scratch.h"

using namespace zentrix::host;
using support::dm_writer;

namespace {

constexpr std::uint64_t record = 15, array = 20;

template <class... T>
std::string joined(const dm_writer& to, T... values)
{
    return (to.in_order(values) + ...);
}

image_ref read(const std::string& contents)
{
    const support::scratch_folder folder;
    folder.write("image.bin", contents);  // the first bytes decide
    return read_image(folder / "image.bin");
}

std::string problem_of(const std::string& contents)
{
    const std::string text = support::message_of([&] { read(contents); });
    return text.substr(text.find(": ") + 2);
}

const dm_writer writers[] = {{3, true}, {3, false}, {4, true}, {4, false}};

}  // namespace

TEST(Dm, ReadsEveryTypeOfElementInBothVersionsAndByteOrders)
{
    for (const dm_writer& to : writers) {
        using words = std::vector<std::uint64_t>;
        struct row
        {
            int code;
            words type;
            std::string bytes;
            std::uint32_t read_as;
        };
        const row rows[] = {
            {1, {array, 2, 2}, joined(to, std::int16_t{-3}, std::int16_t{4}), HOST_ELEMENT_INT16},
            {2, {array, 6, 2}, joined(to, -3.0f, 4.0f), HOST_ELEMENT_FLOAT32},
            {3, {array, record, 0, 2, 0, 6, 0, 6, 2}, joined(to, -3.0f, 5.0f, 4.0f, 6.0f), HOST_ELEMENT_COMPLEX64},
            {6, {array, 10, 2}, joined(to, std::int8_t{-3}, std::int8_t{4}), HOST_ELEMENT_UINT8},
            {7, {array, 3, 2}, joined(to, std::int32_t{-3}, std::int32_t{4}), HOST_ELEMENT_INT32},
            {9, {array, 9, 2}, joined(to, std::int8_t{-3}, std::int8_t{4}), HOST_ELEMENT_INT8},
            {10, {array, 4, 2}, joined(to, std::uint16_t{65533}, std::uint16_t{4}), HOST_ELEMENT_UINT16},
            {11, {array, 5, 2}, joined(to, std::uint32_t{4294967293}, std::uint32_t{4}), HOST_ELEMENT_UINT32},
            {12, {array, 7, 2}, joined(to, -3.0, 4.0), HOST_ELEMENT_FLOAT64},
            {13, {array, record, 0, 2, 0, 7, 0, 7, 2}, joined(to, -3.0, 5.0, 4.0, 6.0), HOST_ELEMENT_COMPLEX128},
            {14, {array, 8, 2}, std::string{"\0\2", 2}, HOST_ELEMENT_UINT8},
            {39, {array, 11, 2}, joined(to, std::int64_t{-3}, std::int64_t{4}), HOST_ELEMENT_FLOAT64},
            {40, {array, 12, 2}, joined(to, std::uint64_t{1} << 53, std::uint64_t{4}), HOST_ELEMENT_FLOAT64},
        };
        for (const row& one : rows) {
            const auto got = read(dm_file(to, {one.code, {2, 1}, one.type, one.bytes}));
            ASSERT_EQ(got->code(), one.read_as) << one.code;
            std::vector<std::complex<double>> values;
            for_each_pixel_of_plane(*got, 0, [&](std::complex<double> value) { values.push_back(value); });
            const std::complex<double> imaginary{0, got->type().meaning == element_class::complex ? 1.0 : 0.0};
            const double start = one.code == 6    ? 253
                                 : one.code == 10 ? 65533
                                 : one.code == 11 ? 4294967293
                                 : one.code == 14 ? 0
                                 : one.code == 40 ? 0x1p53
                                                  : -3;
            EXPECT_EQ(values.at(0), start + 5.0 * imaginary) << one.code;
            EXPECT_EQ(values.at(1), (one.code == 14 ? 1.0 : 4.0) + 6.0 * imaginary) << one.code;
        }
    }
}

TEST(Dm, HasScaleVoltageAndNameOfTheImageThatItsWindowShows)
{
    for (const dm_writer& to : writers) {
        const auto stack = read(dm_file(to, {9, {2, 1, 3}, {array, 9, 6}, "abcdef"}));
        EXPECT_EQ(stack->name(), "kept");
        EXPECT_EQ(stack->at<std::int8_t>(1, 0, 2), 'f');
        EXPECT_EQ(stack->scale().kilovolts, 200);
        for (std::size_t d = 0; d < 3; ++d) {
            const double step = 0.25 * static_cast<double>(d + 1);
            EXPECT_EQ(stack->scale().axes[d].step, step);
            EXPECT_EQ(stack->scale().axes[d].first, -step * static_cast<double>(d + 1));
            EXPECT_EQ(stack->scale().axes[d].unit, "\u00b5m");
        }
    }
}

/// Packed spectra of 4 x 4 and 5 x 3 pixels, against the transform by its definition.
TEST(Dm, ExpandsPackedSpectraOfRealImages)
{
    using complex = std::complex<double>;
    const dm_writer to{4, true};
    const auto transform = [](std::int64_t width, std::int64_t height, std::int64_t kx, std::int64_t ky) {
        complex sum;
        for (std::int64_t y = 0; y < height; ++y)
            for (std::int64_t x = 0; x < width; ++x) {
                const double turns = static_cast<double>(kx * x) / static_cast<double>(width) +
                                     static_cast<double>(ky * y) / static_cast<double>(height);
                sum += static_cast<double>((3 * x * x + 7 * y * x + y) % 11) *
                       std::polar(1.0, -2 * std::numbers::pi * turns);
            }
        return sum;
    };
    struct row
    {
        int code;
        std::int64_t width, height;
    };
    for (const row& spectrum : {row{5, 4, 6}, row{27, 5, 3}, row{27, 4, 6}, row{28, 5, 4}}) {
        const auto code = spectrum.code;
        const auto width = spectrum.width, height = spectrum.height;
        std::string bytes;
        const auto add = [&](complex value) {
            const auto re = value.real(), im = value.imag();
            bytes += code == 28 ? joined(to, re, im) : joined(to, static_cast<float>(re), static_cast<float>(im));
        };
        for (std::int64_t y = 0; y < height; ++y)
            for (std::int64_t x = 0; x < (code == 5 ? width / 2 : width / 2 + 1); ++x) {
                const auto at = [&](std::int64_t kx, std::int64_t ky) { return transform(width, height, kx, ky); };
                if (code != 5)
                    add(std::conj(at(x, y - height / 2)));
                else if (x > 0)
                    add(at(x, y - height / 2));
                else if (const std::int64_t kx = y < height / 2 ? -width / 2 : 0, ky = y % (height / 2); ky > 0)
                    add(at(kx, ky));
                else
                    add({at(kx, 0).real(), at(kx, -height / 2).real()});
            }
        const std::uint64_t word = code == 28 ? 8 : 4;
        const auto got = read(dm_file(to, {code,
                                           {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)},
                                           {array, word == 8 ? 7u : 6u, bytes.size() / word},
                                           bytes}));
        for (std::int64_t y = 0; y < height; ++y)
            for (std::int64_t x = 0; x < width; ++x) {
                const complex value = code == 28 ? got->at<complex>(x, y) : complex{got->at<std::complex<float>>(x, y)};
                EXPECT_LT(std::abs(value - transform(width, height, x - width / 2, y - height / 2)), 1e-4)
                    << code << ": " << x << ", " << y;
            }
    }
}

TEST(Dm, NamesWhatIsWrongAndAllocatesNothingForIt)
{
    const dm_writer to{3, true}, four{4, true};
    const auto bytes_image = [&](std::vector<std::uint32_t> sizes) {
        return dm_file(to, {9, std::move(sizes), {array, 9, 4}, "abcd"});
    };
    const std::string good = bytes_image({2, 2});
    std::string nested = to.number("deep", 3, 1);
    for (int i = 0; i < 100; ++i) nested = to.group("g", {nested});
    const std::uint64_t huge = 0xffffffffffff;
    const auto tagged = [&](const std::vector<std::uint64_t>& type) {
        return four.file({four.tag("t", type, "abcd")});
    };
    struct row
    {
        std::string contents, message;
    };
    for (const auto& [contents, message] : {
             row{good.substr(0, 200), "it ends within its header"},
             row{good.substr(0, good.find("abcd") + 2),
                 "it is cut short: 4 elements of 1 bytes are announced, but only 2 bytes follow"},
             row{to.file({}), "it has no image"},
             row{to.file({nested}), "its tags are damaged: more than 64 groups within each other at byte 662"},
             row{four.file({}).substr(0, 18) + four.length(huge) + std::string(8, 'x'),
                 "its tags are damaged: 281474976710655 tags announced at byte 26"},
             row{to.file({"xyz"}), "it ends within its header"},
             row{to.file({std::string{"\x16\0\0", 3}}), "its tags are damaged: a tag of kind 22 at byte 21"},
             row{tagged({array, 3, huge}),
                 "it is cut short: 281474976710655 elements of 4 bytes are announced, but only "
                 "12 bytes follow"},
             row{tagged({array, array, 7, huge, huge}),
                 "it is cut short: 281474976710655 elements of 8 bytes are "
                 "announced, but only 12 bytes follow"},
             row{tagged({array, record, 0, huge}), "its tags are damaged: an incomplete type at byte 82"},
             row{tagged({99}), "its tags are damaged: a value of type 99 at byte 58"},
             row{bytes_image({2, 3}),
                 "it is cut short: 3 x 2 elements of 1 bytes are announced, but only 4 bytes follow"},
             row{bytes_image({2, 0}), "one of its dimensions is 0 long; expected 1 to 2147483647"},
             row{bytes_image({1, 1, 2, 2}), "it has 4 dimensions; expected 1, 2 or 3"},
             row{bytes_image({0x7fffffff, 0x7fffffff}),
                 "it is cut short: 2147483647 x 2147483647 elements of 1 bytes are announced, but only 4 bytes follow"},
             row{dm_file(to, {23, {1, 1}, {array, 5, 1}, "abcd"}), "it is a colour picture; expected measured values"},
             row{dm_file(to, {77, {1, 1}, {array, 5, 1}, "abcd"}), "its elements are of type 77, which is unknown"},
             row{dm_file(to, {5, {3, 2}, {array, 6, 6}, std::string(24, 'x')}),
                 "its packed spectrum has odd sizes, 3 x 2; expected even ones"},
             row{dm_file(to, {27, {4, 2}, {array, 6, 8}, std::string(32, 'x')}),
                 "it is cut short: a packed spectrum of 2 rows of 24 bytes is announced, but only 32 bytes follow"},
             row{dm_file(to, {39, {1, 1}, {array, 11, 1}, to.in_order(std::int64_t{-9007199254740993})}),
                 "it has integers of 64 bits beyond 2^53, such as -9007199254740993, which float64 cannot hold"},
         })
        EXPECT_EQ(problem_of(contents), message);
}
