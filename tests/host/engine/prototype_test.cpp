#include "host/objects/prototype.h"
#include "tests/support/same_bytes.h"

namespace {

using namespace zentrix::host;

/// One letter for each kind: v void, i u U integers, f d c numbers, s string, I image, T tag group, O script object,
/// F function, C script class, X throwable, p pointer; > output, * any number of arguments.
std::string letter_of(const prototype_type& type)
{
    constexpr char letters[] = "viuUfdcsITOFCXp>";
    const std::string letter{letters[type.kind]};
    return type.kind == HOST_OUTPUT ? letter + letters[type.cell_kind] : letter;
}

std::string signature_of(const std::string& text)
{
    const auto parsed = parse_prototype(text);
    std::string signature = letter_of(parsed.result) + " " + parsed.name + " ";
    for (const auto& one : parsed.parameters) signature += letter_of(one.type) + (one.variadic ? "*" : "");
    return signature;
}

struct prototype_row
{
    const char* text;
    const char* signature;
};

// Every type word and every form of a parameter list.
const prototype_row prototypes[] = {{"void f( long, short, sint32, Boolean, bool )", "v f iiiii"},
                                    {"uint32 f( ulong a, uint64 b )", "u f uU"},
                                    {"double  f(float a,complex  b)", "d f fc"},
                                    {"dm_string f( string, dm_string, char* c )", "s f sss"},
                                    {"RealImagePtr f(ImageRef, BasicImage, ComplexImagePtr, Image * d)", "I f IIII"},
                                    {"TagGroup f( ScriptObject, Function, ScriptClass, Throwable )", "T f OFCX"},
                                    {"void *f( void * a, long *, dm_string *b, TagGroup * )", "p f p>i>s>T"},
                                    {"BasicImage NewImage( dm_string, uint32, uint32... )", "I NewImage suu*"},
                                    {"void *f( uint32 *b, sint32 *info...)", "p f >u>i*"},
                                    {"TagGroup NewTagGroup(  )", "T NewTagGroup "},
                                    {"long ZXIsPaletteOpen(void )", "i ZXIsPaletteOpen "},
                                    {"long ZXGetNumThreads()", "i ZXGetNumThreads "}};

TEST(Prototypes, AreParsedIntoKinds)
{
    for (const auto& r : prototypes) EXPECT_EQ(signature_of(r.text), r.signature);
}

TEST(Prototypes, AreRefusedWithTheReason)
{
    const prototype_row faults[] = {{"", "a type is missing"},
                                    {"long", "the name is missing"},
                                    {"long f", "\"(\" is missing"},
                                    {"long f(long a b)", "\")\" or \",\" is missing"},
                                    {"long f(long,)", "a type is missing"},
                                    {"long f() g", "text follows the parameter list"},
                                    {"long * f()", "a result cannot be an output parameter"},
                                    {"long f(void, long)", "a parameter is void"},
                                    {"long f(long..., long)", "\"...\" is allowed for the last parameter only"},
                                    {"int f()", "the type \"int\" is unknown"},
                                    {"long f(char c)", "the type \"char\" is unknown"}};
    for (const auto& r : faults)
        EXPECT_EQ(support::message_of([&] { parse_prototype(r.text); }),
                  std::string{"The prototype \""} + r.text + "\" cannot be read: " + r.signature + ".");
}

}  // namespace
