#include <algorithm>

#include "tests/script/function_rows.h"

// Tables of script functions: their element types, destinations and timing.
namespace {

using namespace script;

const integer three{3};

TEST(Functions, FillTheirDestination)
{
    for (const auto& row : destination_rows()) expect_destination_rules(row);
}

TEST(Functions, GiveTheSameBitsOnEveryPlatform)
{
    script_host script;
    const extents sizes{37, 29, 2}, deep{37, 29, 11};
    const auto a = whole_numbers(HOST_ELEMENT_FLOAT32, sizes), b = whole_numbers(HOST_ELEMENT_FLOAT32, sizes, 11),
               z = whole_numbers(HOST_ELEMENT_COMPLEX64, sizes);
    const auto eighth = script.call_image("ZXPolar", {0.125, b, null});  // fractions
    for (const auto& [name, args, expected] : std::vector<std::tuple<const char*, arguments, std::uint64_t>>{
             {"ZXPolar", {a, b, null}, 0xd5f0b23ec77939c9},
             {"ZXExp2", {script.call_image("ZXLog2", {a, null}), null}, 0x575f5d8e818130bd},
             {"ZXPow", {a, script.call_image("ZXAbs", {eighth, null}), null}, 0x1a284460ebdf1c55},
             {"ZXLog2", {b, null}, 0x54a4817a7e2a519d},
             {"ZXCArg", {z, null}, 0x91852a64bf0e9aed},
             {"ZXNorm", {eighth, 1e3, null}, 0xc5b04a5bed1a3229},
             {"ZXMovingAverage", {whole_numbers(HOST_ELEMENT_FLOAT32, deep), three, null}, 0xa75d865754ac7892},
             {"ZXMovingAverageX", {whole_numbers(HOST_ELEMENT_COMPLEX64, deep), three, null}, 0x658404acb72250f9},
             {"ZXMovingAverageZ", {whole_numbers(HOST_ELEMENT_FLOAT32, deep), three, null}, 0x61addca05b6c2d5c},
             {"ZXGaussianBlur",
              {whole_numbers(HOST_ELEMENT_FLOAT32, {67, 53}), 2., three, null},
              0x2fb170c1e81ac9a8}}) {
        const auto got = digest(script.call_image(name, args));
        EXPECT_EQ(got, expected) << name << std::hex << " 0x" << got;
    }
}

TEST(Functions, AcceptTheirTypesOnly)
{
    for (const auto& row : source_rows()) {
        script_host script;
        for (const std::uint32_t code : {1u, 2u, 3u, 6u, 7u, 9u, 10u, 11u, 12u, 13u, 14u, 23u}) {
            const auto source = whole_numbers(code, {9, 4});
            const auto before = bytes_of(source);
            const bool is_accepted = std::ranges::count(row.types, code) > 0;
            EXPECT_EQ(script.failure(row.name, row(source)), is_accepted ? "" : row.refusal) << row.name << code;
            EXPECT_EQ(bytes_of(source), before) << row.name;
        }
        EXPECT_EQ(script.host().records().traces().at(row.counter).reports, 12u) << row.counter;
    }
}

}  // namespace
