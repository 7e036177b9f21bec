#include "host/engine/engine.h"
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

struct row
{
    const char* text;
    const char* signature;
};

// Every type word and every form of a parameter list.
const row rows[] = {
    {"ComplexImagePtr ComplexImage( string, long, long, long )", "I ComplexImage siii"},
    {"bool DoesFileExist( dm_string )", "i DoesFileExist s"},
    {"void GetSize( ImageRef, long *, long * )", "v GetSize I>i>i"},
    {"RealImagePtr IntegerImage( string, short, Boolean, long, long )", "I IntegerImage siiii"},
    {"TagGroup NewTagGroup(  )", "T NewTagGroup "},
    {"uint64 RegisterCustomTool( uint64, string, uint64 )", "U RegisterCustomTool UsU"},
    {"Boolean TagGroupGetIndexedTagAsTagGroup( TagGroup, long, TagGroup * )", "i TagGroupGetIndexedTagAsTagGroup Ti>T"},
    {"Throwable NewThrowableFromString( dm_string )", "X NewThrowableFromString s"},
    {"BasicImage NewImage( dm_string, uint32, uint32... )", "I NewImage suu*"},
    {"ScriptObject ImageGetLockedData( BasicImage, ulong, ScriptObject )", "O ImageGetLockedData IuO"},
    {"void *ImageData_GetSlice( ScriptObject img_src, uint32 *act_num_dim, sint32 *dimension_info...)",
     "p ImageData_GetSlice O>u>i*"},
    {"Function ScriptClassAddMethod( ScriptClass, Function )", "F ScriptClassAddMethod CF"},
    {"ComplexImagePtr ZXWTFMulDLL(ComplexImagePtr cimSrc, float lambda, complex c22, long  lEnvelope, double f)",
     "I ZXWTFMulDLL Ifcid"},
    {"long ZXIsPaletteOpen(void )", "i ZXIsPaletteOpen "},
    {"long ZXGetNumThreads()", "i ZXGetNumThreads "},
    {"ImageRef ZXGoldstain(Image * imgSrc, long nMaxBoxSize)", "I ZXGoldstain Ii"},
    {"TagGroup ZXSelectImageFiles(dm_string * path, char* cOwnerName)", "T ZXSelectImageFiles >ss"}};

TEST(Prototypes, AreParsedIntoKinds)
{
    for (const auto& r : rows) EXPECT_EQ(signature_of(r.text), r.signature);
}

TEST(Prototypes, AreRefusedWithTheReason)
{
    const row faults[] = {{"", "a type is missing"},
                          {"long", "the name is missing"},
                          {"long f", "\"(\" is missing"},
                          {"long f(long a b)", "\")\" or \",\" is missing"},
                          {"long f(long,)", "a type is missing"},
                          {"long f() g", "text follows the parameter list"},
                          {"long * f()", "a result cannot be an output parameter"},
                          {"long f(void, long)", "a parameter is void"},
                          {"long f(long..., long)", "\"...\" stands before the last parameter"},
                          {"int f()", "the type \"int\" is unknown"},
                          {"long f(char c)", "the type \"char\" is unknown"}};
    for (const auto& r : faults)
        EXPECT_EQ(support::message_of([&] { parse_prototype(r.text); }),
                  std::string{"The prototype \""} + r.text + "\" cannot be read: " + r.signature + ".");
}

TEST(Prototypes, MatchMethodsWhateverTheirSpacesAndParameterNames)
{
    script_object handler;
    handler.add_method("void OnChangeDisplay(ScriptObject self, uint32 nMode)", [](auto) { return script_value{}; });
    const auto finds = [&](const char* text) {
        const auto signature = parse_prototype(text);
        return handler.find_method(signature.name, signature) != nullptr;
    };
    EXPECT_TRUE(finds("void OnChangeDisplay( ScriptObject me,ulong mode )"));
    EXPECT_FALSE(finds("void OnChangeDisplay( ScriptObject self, long mode )"));
    EXPECT_FALSE(finds("void OnChange( ScriptObject self, uint32 mode )"));
}

}  // namespace
