#include "host/objects/conversion.h"
#include "host/engine/engine.h"
#include "tests/support/same_bytes.h"

#include <cmath>
#include <limits>

namespace {

using namespace zentrix::host;

constexpr char overflow[] = "bad numeric conversion: overflow";
constexpr char positive[] = "bad numeric conversion: positive overflow";
constexpr char negative[] = "bad numeric conversion: negative overflow";

prototype_type type_of(const std::string& word)
{
    return parse_prototype("void f( " + word + " )").parameters.at(0).type;
}

script_value integer(std::int64_t number) { return number; }

image_ref picture(std::uint32_t code) { return image::create("p", code, {{std::uint32_t{2}, std::uint32_t{2}}}); }

TEST(Conversions, CheckNumbersAtTheLimitsOfTheirType)
{
    struct row
    {
        const char* word;
        script_value passed;
        script_value converted;
        const char* refused;
    };
    const double infinite = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double greatest_float = std::numeric_limits<float>::max();
    const row rows[] = {{"long", integer(INT32_MAX + 1ll), {}, positive},
                        {"long", integer(INT32_MIN - 1ll), {}, negative},
                        {"long", 2147483647.9, integer(INT32_MAX), nullptr},
                        {"long", 2147483648.0, {}, positive},
                        {"long", -2147483648.9, integer(INT32_MIN), nullptr},
                        {"long", -2147483649.0, {}, negative},
                        {"long", infinite, {}, positive},
                        {"long", nan, {}, overflow},
                        {"short", integer(32768), {}, positive},
                        {"uint32", integer(UINT32_MAX + 1ll), {}, positive},
                        {"uint64", 2e19, {}, positive},
                        {"Boolean", integer(1ll << 40), integer(1), nullptr},
                        {"float", 0.1, double{0.1f}, nullptr},
                        {"float", greatest_float, greatest_float, nullptr},
                        {"float", 3.5e38, {}, positive},
                        {"float", -infinite, -infinite, nullptr},
                        {"complex", 0.5, std::complex<double>{0.5, 0}, nullptr}};
    for (const auto& r : rows) {
        script_value got;
        EXPECT_EQ(support::message_of([&] { got = convert(r.passed, type_of(r.word)); }), r.refused ? r.refused : "")
            << describe(r.passed) << " as " << r.word;
        EXPECT_EQ(got, r.converted) << describe(r.passed) << " as " << r.word;
    }
    EXPECT_TRUE(std::isnan(std::get<double>(convert(nan, type_of("float")))));
}

TEST(Conversions, RefuseOtherKindsOfValues)
{
    const auto refusal = [](const script_value& passed, const char* word) {
        return support::message_of([&] { convert(passed, type_of(word)); });
    };
    EXPECT_EQ(refusal(std::string{"1"}, "long"), "text \"1\" cannot be passed as 32-bit integer.");
    EXPECT_EQ(refusal(std::complex<double>{1, 2}, "double"), "complex number (1,2) cannot be passed as double.");
    EXPECT_EQ(refusal(picture(HOST_ELEMENT_FLOAT32), "TagGroup"),
              "image \"p\" (2 x 2, Real 4 Byte) cannot be passed as tag group.");
    EXPECT_EQ(refusal(integer(1), "long *"), "integer 1 cannot be passed as output parameter.");
}

TEST(Overloads, AreChosenByNumberKindAndLeastLossOfArguments)
{
    function_table table;
    const char* texts[] = {
        "long F(long a)",     "long F(double a)",          "long F(complex a)",        "long F(ImageRef a)",
        "long F(string a)",   "long F(long a, long b)",    "long G(complex a)",        "long G(long a)",
        "long P(ImageRef a)", "long P(ComplexImagePtr a)", "long V(long a, long... b)"};
    for (const auto* text : texts) table.add(make_function(text, [](auto) { return script_value{}; }), origin::library);
    struct row
    {
        const char* name;
        std::vector<script_value> passed;
        const char* chosen;
    };
    const row rows[] = {{"F", {integer(1)}, "long F(long a)"},
                        {"F", {std::complex<double>{}}, "long F(complex a)"},
                        {"F", {integer(1), 2.0}, "long F(long a, long b)"},
                        {"G", {1.0}, "long G(complex a)"},
                        {"P", {picture(HOST_ELEMENT_COMPLEX64)}, "long P(ComplexImagePtr a)"},
                        {"P", {picture(HOST_ELEMENT_FLOAT32)}, "long P(ImageRef a)"},
                        {"V", {integer(1), integer(2), integer(3)}, "long V(long a, long... b)"}};
    for (const auto& r : rows) EXPECT_EQ(table.resolve(r.name, r.passed)->signature().text, r.chosen);

    const std::vector<script_value> passed{integer(1), std::string{"a"}};
    EXPECT_EQ(support::message_of([&] { table.resolve("P", passed); }),
              "P cannot be called with (integer 1, text \"a\"). Its prototypes are:\n    long P(ImageRef a)\n    long "
              "P(ComplexImagePtr a)");
    EXPECT_EQ(support::message_of([&] { table.add(table.find(texts[0]), origin::library); }),
              "The prototype \"long F(long a)\" is already registered.");
}

}  // namespace
