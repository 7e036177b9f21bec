#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "binding/call.h"
#include "binding/host_functions.h"
#include "binding/native.h"
#include "entry/lock.h"
#include "framework/link.h"
#include "host/engine/engine.h"
#include "host/objects/script_object.h"
#include "tests/support/same_bytes.h"

// The plug-in's calls of host functions, answered by the stand-alone host.
namespace {

using namespace qorv::binding;
using zentrix::host::engine;
using zentrix::host::engine_options;
using zentrix::host::fault_point;

struct linked
{
    explicit linked(engine_options options = {}) : host{std::move(options)}
    {
        Gatan::PlugIn::on_link_change(function_slot::forget_all);
        Gatan::PlugIn::set_current_link(host.link());
    }
    ~linked() { Gatan::PlugIn::set_current_link(nullptr); }
    engine host;
};

image_ref ramp(std::int32_t width, std::int32_t height)
{
    image_ref image = RealImage("ramp", 4, static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height));
    qorv::dm::write_lock lock{image};
    const auto pixels = lock.view<float>();
    for (std::ptrdiff_t i = 0; i < pixels.size(); ++i) pixels.data()[i] = static_cast<float>(i);
    lock.release();
    return image;
}

/// Tags of every kind come back from a group that a list holds; outputs of tags that are not there keep their values.
void keep_tags()
{
    const tag_group_ref list = NewTagList(), inside = NewTagGroup();
    TagGroupSetTagAsFloat(inside, "ModA1", 2.5f);
    TagGroupSetTagAsLong(inside, "AngA1", 359);
    TagGroupSetTagAsString(inside, "name", "A1");
    EXPECT_EQ(std::pair(TagGroupCountTags(list), TagGroupCountTags(inside)), std::pair(0, 3));
    TagGroupInsertTagAsTagGroup(list, 0, inside);
    tag_group_ref found;
    EXPECT_TRUE(TagGroupGetIndexedTagAsTagGroup(list, 0, found) && found == inside);
    float real = -1;
    std::int32_t whole = -1;
    std::string text;
    EXPECT_FALSE(TagGroupGetTagAsFloat(inside, "none", real) || TagGroupGetTagAsLong(inside, "none", whole));
    EXPECT_EQ(std::pair(real, whole), std::pair(-1.f, -1));
    EXPECT_TRUE(TagGroupGetTagAsFloat(inside, "ModA1", real) && TagGroupGetTagAsLong(inside, "AngA1", whole));
    EXPECT_TRUE(TagGroupGetTagAsString(inside, "name", text));
    EXPECT_EQ(std::tuple(real, whole, text), std::tuple(2.5f, 359, "A1"));
}

void tell_of_an_image()
{
    const image_ref image = ramp(3, 2), clone = ImageClone(image), waves = ComplexImage("c", 16, 3, 2);
    std::int32_t width = 0, height = 0;
    GetSize(image, width, height);
    EXPECT_EQ(std::pair(width, height), std::pair(3, 2));
    EXPECT_EQ(std::pair(GetDataType(image), ImageGetDataType(waves)), std::pair(std::int16_t{2}, 13u));
    EXPECT_EQ(qorv::dm::read_lock{clone}.view<float>()(2, 1), 5.f);
    EXPECT_EQ(ImageGetDataElementByteSize(waves), 16u);
    EXPECT_EQ(std::pair(ImageGetNumDimensions(image), ImageGetDimensionSize(image, 1)), std::pair(2u, 2u));
    EXPECT_EQ(ImageGetName(clone), "ramp");
    EXPECT_TRUE(ImageIsValid(image));
    EXPECT_TRUE(IsRealDataType(image, 4) && IsComplexDataType(waves, 16));
    EXPECT_FALSE(IsRealDataType(image, 8) || IsComplexDataType(waves, 8));
}

void make_images()
{
    EXPECT_EQ(ImageGetDataType(IntegerImage("i", 1, true, 2, 2)), 9u);
    EXPECT_EQ(ImageGetDataType(IntegerImage("i", 4, false, 1, 1)), 11u);
    EXPECT_EQ(ImageGetDataType(RealImage("", 8, 1, 1)), 12u);
    EXPECT_EQ(ImageGetDimensionSize(NewImage("line", 3, {7}), 0), 7u);
    EXPECT_EQ(support::message_of([] { NewImage("", 2, {1, 1, 1, 1}); }), "num_dim <= kMaxDim");
    const image_ref image = IntegerImage("i", 2, true, 3, 2);
    ConvertToFloat(image);
    EXPECT_EQ(ImageGetDataType(image), 2u);
}

void lock_images()
{
    const qorv::dm::read_lock lock{NewImage("v", 2, {2, 3, 4})};
    EXPECT_EQ(lock.strides(), (qorv::dm::image<char>::extents{1, 2, 6}));
    EXPECT_EQ(lock.sizes(), (qorv::dm::image<char>::extents{2, 3, 4}));
    EXPECT_EQ(ImageData_CountSlices(ImageGetLockedData(ramp(3, 2), HOST_LOCK_READ, {})), 1u);
    const host_data_slice slice{2, 2, {1, 2, 0}, {3, 4, 0}};
    const auto back = ExtractImageDataSequenceFromScriptObjectOrFail(NewImageDataSlice(slice));
    EXPECT_EQ(std::tie(back.num_dim, back.start[1], back.extent[0]), std::tuple(2u, 2, 3));
}

void use_tool() { UnregisterCustomTool(RegisterCustomTool(1, "tool", 2)); }

/// Every host function with a call that reaches it and checks its effect.
const std::pair<const char*, std::function<void()>> all_calls[] = {
    {"ComplexImagePtr ComplexImage( string, long, long, long )", tell_of_an_image},
    {"void ConvertToFloat( ImageRef )", make_images},
    {"bool DoesFileExist( dm_string )", [] { EXPECT_FALSE(DoesFileExist("/no/such/file")); }},
    {"short GetDataType( ImageRef )", tell_of_an_image},
    {"void GetSize( ImageRef, long *, long * )", tell_of_an_image},
    {"ImageRef ImageClone( ImageRef )", tell_of_an_image},
    {"void ImageDataChanged( ImageRef )", [] { ImageDataChanged(ramp(1, 1)); }},
    {"uint32 ImageGetDataElementByteSize( ImageRef )", tell_of_an_image},
    {"uint32 ImageGetDataType( ImageRef )", tell_of_an_image},
    {"uint32 ImageGetDimensionSize( ImageRef, uint32 )", tell_of_an_image},
    {"dm_string ImageGetName( ImageRef )", tell_of_an_image},
    {"uint32 ImageGetNumDimensions( ImageRef )", tell_of_an_image},
    {"Boolean ImageIsValid( ImageRef )", tell_of_an_image},
    {"RealImagePtr IntegerImage( string, long, Boolean, long, long )", make_images},
    {"Boolean IsComplexDataType( ImageRef, long )", tell_of_an_image},
    {"Boolean IsRealDataType( ImageRef, long )", tell_of_an_image},
    {"TagGroup NewTagGroup(  )", keep_tags},
    {"TagGroup NewTagList(  )", keep_tags},
    {"void OkDialog( string )", [] { OkDialog("read me"); }},
    {"BasicImage OpenImage( dm_string )", [] { EXPECT_EQ(ImageGetName(OpenImage("a file")), "a file"); }},
    {"RealImagePtr RealImage( dm_string, uint32, uint32, uint32 )", make_images},
    {"uint64 RegisterCustomTool( uint64, string, uint64 )", use_tool},
    {"void UnregisterCustomTool( uint64 )", use_tool},
    {"void WriteOutputWindow( dm_string module_name, uint32 output_type, dm_string text )",
     [] { WriteOutputWindow("test", 1, "a line\n"); }},
    {"void ShowAlert( dm_string, long )", [] { ShowAlert("careful", 2); }},
    {"long TagGroupCountTags( TagGroup )", keep_tags},
    {"Boolean TagGroupGetIndexedTagAsTagGroup( TagGroup, long, TagGroup * )", keep_tags},
    {"Boolean TagGroupGetTagAsFloat( TagGroup, string, float * )", keep_tags},
    {"Boolean TagGroupGetTagAsLong( TagGroup, string, long * )", keep_tags},
    {"Boolean TagGroupGetTagAsString( TagGroup, string, dm_string * )", keep_tags},
    {"void TagGroupInsertTagAsTagGroup( TagGroup, long, TagGroup )", keep_tags},
    {"void TagGroupSetTagAsFloat( TagGroup, string, float )", keep_tags},
    {"void TagGroupSetTagAsLong( TagGroup, string, long )", keep_tags},
    {"void TagGroupSetTagAsString( TagGroup, string, dm_string )", keep_tags},
    {"Throwable NewThrowableFromString( dm_string )", [] { EXPECT_TRUE(NewThrowableFromString("oops")); }},
    {"BasicImage NewImage( dm_string, uint32, uint32... )", make_images},
    {"ScriptObject ImageGetLockedData( BasicImage, ulong, ScriptObject )", lock_images},
    {"uint32 ImageData_CountSlices( ScriptObject img_src )", lock_images},
    {"void *ImageData_GetSlice( ScriptObject img_src, uint32 slice_index, uint32 des_num_dim, uint32 *act_num_dim, "
     "uint32 *data_type, uint32 *pack_style, sint32 *dimension_info...)",
     lock_images},
    {"ScriptObject NewImageDataSlice( uint32, uint32, long... )", lock_images},
    {"void ExtractImageDataSequenceFromScriptObjectOrFail( ScriptObject, void * )", lock_images},
    {"Function NewAbstractMethod( dm_string, dm_string )",
     [] { EXPECT_TRUE(NewAbstractMethod("OnApply", "void OnApply( ScriptObject self )")); }},
};

engine_options opening_any_file()
{
    engine_options options;
    options.open_image = [](const std::string& path) {
        return zentrix::host::image::create(path, 2, std::array{1u, 1u});
    };
    return options;
}

TEST(HostInterface, EveryFunctionIsFoundByItsTextAndCalled)
{
    linked to{opening_any_file()};
    for (const auto& [prototype, call] : all_calls) {
        to.host.faults().clear();
        EXPECT_EQ(support::message_of(call), "") << prototype;
        EXPECT_EQ(support::message_of(call), "") << prototype << ", again from its slot";
    }
    EXPECT_EQ(to.host.records().dialogs().size(), 4u);
    EXPECT_EQ(to.host.records().output().size(), 2u);
    Gatan::PlugIn::set_current_link(nullptr);
    EXPECT_EQ(to.host.report().text(), "");
}

TEST(HostInterface, MissingFunctionsAreNamed)
{
    for (const auto& [prototype, call] : all_calls) {
        if (std::string_view{prototype}.find("WriteOutputWindow") != std::string_view::npos) continue;
        linked to{{.withheld = {prototype}}};
        EXPECT_EQ(support::message_of(call),
                  std::string{"A function of the following prototype can not be found:\n\n"} + prototype);
        Gatan::PlugIn::set_current_link(nullptr);
        EXPECT_THAT(to.host.report().references, testing::IsEmpty()) << prototype;
    }
}

TEST(HostInterface, FailingCallsCarryTheHostsText)
{
    for (const auto& [prototype, call] : all_calls) {
        linked to{opening_any_file()};
        to.host.faults().plan({fault_point::call, 1, prototype, "no such luck"});
        EXPECT_EQ(support::message_of(call), "no such luck") << prototype;
        Gatan::PlugIn::set_current_link(nullptr);
        EXPECT_EQ(to.host.report().text(), "") << prototype;
    }
}

TEST(HostInterface, MethodsAreFoundByNameAndPrototype)
{
    EXPECT_EQ(support::message_of([] { call_method<void>({}, "OnApply", "void OnApply( ScriptObject self )"); }),
              "Attempt to dispatch off a null object.");
    linked to;
    const script_object_ref lock = ImageGetLockedData(ramp(1, 1), HOST_LOCK_READ, {});
    EXPECT_EQ(support::message_of([&] { call_method<void>(lock, "Fly", "void Fly( ScriptObject self )"); }),
              "A function of the following prototype can not be found:\n\nvoid Fly( ScriptObject self )");
}

TEST(HostInterface, WithoutAnOutputWindowTheDebuggerGetsALine)
{
    linked to{{.has_output_window = false}};
#ifndef _WIN32
    testing::internal::CaptureStderr();
    WriteOutputWindow("test", 1, "a line\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "No DM output window\n");
#endif
    EXPECT_EQ(to.host.records().output().size(), 0u);
}

TEST(ImageLock, CopiesShareOneLockAndTheLastGivesItBack)
{
    linked to;
    const image_ref image = ramp(3, 2);
    {
        qorv::dm::write_lock lock{image};
        const auto view = lock.view<float>();
        EXPECT_EQ(to.host.report().locks.size(), 1u);
        {
            const qorv::dm::write_lock copy = lock;
        }
        EXPECT_EQ(to.host.report().locks.size(), 1u);
        EXPECT_EQ(support::message_of([&] { lock.view<double>(); }), "Invalid data type.");
        lock.release();
        EXPECT_EQ(to.host.report().locks.size(), 0u);
        lock.release();
    }
    EXPECT_EQ(support::message_of([] { qorv::dm::read_lock{image_ref{}}; }), "Parameters are invalid.");
}

TEST(ImageLock, AnErrorThatADestructorMeetsIsLogged)
{
    linked to;
    const image_ref image = ramp(2, 2);
    {
        const qorv::dm::write_lock lock{image};
        to.host.faults().plan({fault_point::call, 1, "void ImageDataChanged( ImageRef )", "no redraw"});
    }
    const auto lines = to.host.records().output();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].module + lines[0].text, "ZentrixAn image's lock ended with an error: no redraw\n");
    EXPECT_EQ(lines[0].type, 1u);
    EXPECT_THAT(to.host.report().locks, testing::IsEmpty());
}

// The check that a native function fits its prototype.
std::int32_t takes_long(std::int32_t) { return 0; }
void gives_double(output<double>) {}

TEST(Registration, MisfitsAreRefused)
{
    linked to;
    Gatan::PlugIn::PlugInMain plug_in;
    for (const char* prototype : {"double F(long n)", "long F(double n)", "long F(long n, long m)", "long F()"})
        EXPECT_EQ(support::message_of([&] { add_function<takes_long>(plug_in, prototype); }),
                  "The native function does not fit the prototype \"" + std::string{prototype} + "\".");
    EXPECT_EQ(support::message_of([&] { add_function<takes_long>(plug_in, "long F(long n)"); }), "");
    EXPECT_NE(support::message_of([&] { add_function<gives_double>(plug_in, "void G(float * x)"); }), "");
    EXPECT_EQ(support::message_of([&] { add_function<gives_double>(plug_in, "void G(double * x)"); }), "");
}

}  // namespace
