#include "host/engine/engine.h"
#include "tests/support/same_bytes.h"

namespace {

using namespace zentrix::host;

/// A letter for each kind: v void, i u U integers, f d c numbers, s string, I image, T tag group, O script object,
/// F function, C script class, X throwable, p pointer; > output, * any number.
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

// Together they have every word and mark that prototypes have.
const row rows[] = {
    {"ComplexImagePtr ComplexImage( string, long, long, long )", "I ComplexImage siii"},
    {"bool DoesFileExist( dm_string )", "i DoesFileExist s"},
    {"short GetDataType( ImageRef )", "i GetDataType I"},
    {"void GetSize( ImageRef, long *, long * )", "v GetSize I>i>i"},
    {"uint32 ImageGetDimensionSize( ImageRef, uint32 )", "u ImageGetDimensionSize Iu"},
    {"RealImagePtr IntegerImage( string, long, Boolean, long, long )", "I IntegerImage siiii"},
    {"TagGroup NewTagGroup(  )", "T NewTagGroup "},
    {"uint64 RegisterCustomTool( uint64, string, uint64 )", "U RegisterCustomTool UsU"},
    {"Boolean TagGroupGetIndexedTagAsTagGroup( TagGroup, long, TagGroup * )", "i TagGroupGetIndexedTagAsTagGroup Ti>T"},
    {"Boolean TagGroupGetTagAsFloat( TagGroup, string, float * )", "i TagGroupGetTagAsFloat Ts>f"},
    {"Boolean TagGroupGetTagAsString( TagGroup, string, dm_string * )", "i TagGroupGetTagAsString Ts>s"},
    {"Throwable NewThrowableFromString( dm_string )", "X NewThrowableFromString s"},
    {"BasicImage NewImage( dm_string, uint32, uint32... )", "I NewImage suu*"},
    {"ScriptObject ImageGetLockedData( BasicImage, ulong, ScriptObject )", "O ImageGetLockedData IuO"},
    {"void *ImageData_GetSlice( ScriptObject img_src, uint32 slice_index, uint32 des_num_dim, uint32 *act_num_dim, "
     "uint32 *data_type, uint32 *pack_style, sint32 *dimension_info...)",
     "p ImageData_GetSlice Ouu>u>u>u>i*"},
    {"Function ScriptClassAddMethod( ScriptClass, Function )", "F ScriptClassAddMethod CF"},
    {"ComplexImagePtr ZXWTFMulDLL(ComplexImagePtr cimSrc, float lambda, float step, float c20, complex c22, long  "
     "lEnvelope, complex tilt, ComplexImagePtr cimDst)",
     "I ZXWTFMulDLL IfffcicI"},
    {"long ZXIsPaletteOpen(void )", "i ZXIsPaletteOpen "},
    {"long ZXGetNumThreads()", "i ZXGetNumThreads "},
    {"ImageRef ZXGoldstain(Image * imgSrc, long nMaxBoxSize)", "I ZXGoldstain Ii"},
    {"TagGroup ZXSelectImageFiles(dm_string * path, string strFilter, long * nW,char* cOwnerName)",
     "T ZXSelectImageFiles >ss>is"},
    {"void ZXAbsArg(ComplexImagePtr cimSrc, ImageRef * imgRho, ImageRef * imgTheta)", "v ZXAbsArg I>I>I"},
    {"double ZXNthElement(ImageRef imgSrc, long n)", "d ZXNthElement Ii"}};

TEST(prototypes, parse_into_kinds)
{
    for (const auto& r : rows) EXPECT_EQ(signature_of(r.text), r.signature);
}

TEST(prototypes, find_host_functions_by_their_exact_text)
{
    engine host;
    EXPECT_EQ(host.functions().prototypes(origin::host).size(), 43u);
    EXPECT_TRUE(host.functions().find("TagGroup NewTagGroup(  )"));
    EXPECT_FALSE(host.functions().find("TagGroup NewTagGroup()"));
}

TEST(prototypes, that_cannot_be_read_say_why)
{
    const row faults[] = {{"", "a type is missing"},
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

TEST(prototypes, methods_match_by_signature_whatever_their_blanks_and_parameter_names)
{
    script_object handler;
    handler.add_method("void OnChangeDisplay(ScriptObject self, uint32 nMode)", [](auto) { return script_value{}; });
    const auto finds = [&](const char* text) {
        const auto wanted = parse_prototype(text);
        return handler.find_method(wanted.name, wanted) != nullptr;
    };
    EXPECT_TRUE(finds("void OnChangeDisplay( ScriptObject me,ulong mode )"));
    EXPECT_FALSE(finds("void OnChangeDisplay( ScriptObject self, long mode )"));
    EXPECT_FALSE(finds("void OnChangeDisplay( ScriptObject self )"));
    EXPECT_FALSE(finds("void OnChange( ScriptObject self, uint32 mode )"));
}

}  // namespace
