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
    struct row
    {
        const char* word;
        script_value passed;
        const char* refused;
    };
    const row rows[] = {
        {"long", std::string{"1"}, "text \"1\" cannot be passed as 32-bit integer."},
        {"double", std::complex<double>{1, 2}, "complex number (1,2) cannot be passed as double."},
        {"string", {}, "null cannot be passed as string."},
        {"ImageRef", 0.5, "real number 0.5 cannot be passed as image."},
        {"TagGroup", picture(HOST_ELEMENT_FLOAT32), "image \"p\" (2 x 2, Real 4 Byte) cannot be passed as tag group."},
        {"long *", integer(1), "integer 1 cannot be passed as output parameter."},
        {"long", make_cell(), "output parameter cannot be passed as 32-bit integer."}};
    for (const auto& r : rows) EXPECT_EQ(support::message_of([&] { convert(r.passed, type_of(r.word)); }), r.refused);
}

TEST(Overloads, AreChosenByNumberKindAndLeastLossOfArguments)
{
    function_table table;
    const char* texts[] = {"long F(long a)",
                           "long F(double a)",
                           "long F(complex a)",
                           "long F(ImageRef a)",
                           "long F(string a)",
                           "long F(long a, long b)",
                           "long G(complex a)",
                           "long G(long a)",
                           "long H(ImageRef a, double b)",
                           "long H(ImageRef a, complex b)",
                           "long P(ImageRef a)",
                           "long P(ComplexImagePtr a)",
                           "long V(long a, long... b)"};
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
                        {"H", {script_value{}, std::complex<double>{}}, "long H(ImageRef a, complex b)"},
                        {"P", {picture(HOST_ELEMENT_COMPLEX64)}, "long P(ComplexImagePtr a)"},
                        {"P", {picture(HOST_ELEMENT_FLOAT32)}, "long P(ImageRef a)"},
                        {"V", {integer(1), integer(2), integer(3)}, "long V(long a, long... b)"}};
    for (const auto& r : rows) EXPECT_EQ(table.resolve(r.name, r.passed)->signature().text, r.chosen);

    const auto refusal = [&](const char* name, std::vector<script_value> passed) {
        return support::message_of([&] { table.resolve(name, passed); });
    };
    EXPECT_EQ(refusal("Nothing", {}), "There is no script function \"Nothing\".");
    EXPECT_EQ(refusal("P", {integer(1), std::string{"a"}}),
              "P cannot be called with (integer 1, text \"a\"). Its prototypes are:\n    long P(ImageRef a)\n    long "
              "P(ComplexImagePtr a)");
    EXPECT_EQ(support::message_of([&] { table.add(table.find(texts[0]), origin::library); }),
              "The prototype \"long F(long a)\" is already registered.");
    EXPECT_FALSE(table.remove(texts[0], origin::host));
    EXPECT_TRUE(table.remove(texts[0], origin::library));
    EXPECT_EQ(table.resolve("F", std::vector<script_value>{integer(1)})->signature().text, "long F(double a)");
}

}  // namespace
