#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "binding/host_functions.h"
#include "binding/native.h"
#include "binding/output_window.h"
#include "entry/lock.h"
#include "framework/link.h"
#include "host/engine/engine.h"
#include "host/objects/script_object.h"
#include "tests/support/same_bytes.h"

// The library's calls of host functions, answered by the stand-alone host.
namespace {

using namespace qorv::binding;
using support::message_of;
using testing::Contains;
using testing::IsEmpty;
using zentrix::host::engine;
using zentrix::host::engine_options;
using zentrix::host::fault_point;

struct linked
{
    explicit linked(engine_options options = {}) : host{std::move(options)}
    {
        Gatan::PlugIn::set_current_link(host.link());
    }
    ~linked() { unlink(); }
    void unlink()
    {
        function_slot::release_all();
        Gatan::PlugIn::set_current_link(nullptr);
    }
    engine host;
};

image_ref ramp(std::uint32_t width, std::uint32_t height)
{
    image_ref image = RealImage("ramp", 4, width, height);
    qorv::dm::write_lock lock{image};
    const auto pixels = lock.view<float>();
    for (std::ptrdiff_t i = 0; i < pixels.size(); ++i) pixels.data()[i] = static_cast<float>(i);
    lock.release();
    return image;
}

void use_tags(engine&)
{
    const tag_group_ref list = NewTagList(), group = NewTagGroup();
    TagGroupSetTagAsFloat(group, "ModA1", 2.5f);
    TagGroupSetTagAsLong(group, "AngA1", 359);
    TagGroupSetTagAsString(group, "name", "A1");
    TagGroupInsertTagAsTagGroup(list, 0, group);
    EXPECT_EQ(std::pair(TagGroupCountTags(list), TagGroupCountTags(group)), std::pair(1, 3));
    tag_group_ref found;
    float real = -1;
    std::int32_t whole = -1;
    std::string text;
    EXPECT_FALSE(TagGroupGetTagAsFloat(group, "none", real) || TagGroupGetTagAsLong(group, "none", whole));
    EXPECT_EQ(std::pair(real, whole), std::pair(-1.f, -1));
    EXPECT_TRUE(TagGroupGetTagAsFloat(group, "ModA1", real) && TagGroupGetTagAsLong(group, "AngA1", whole) &&
                TagGroupGetTagAsString(group, "name", text) && TagGroupGetIndexedTagAsTagGroup(list, 0, found));
    EXPECT_EQ(std::tuple(real, whole, text, found), std::tuple(2.5f, 359, "A1", group));
}

void use_images(engine&)
{
    const image_ref image = ramp(3, 2), clone = ImageClone(image), waves = ComplexImage("c", 16, 3, 2);
    std::int32_t width = 0, height = 0;
    GetSize(image, width, height);
    EXPECT_EQ(std::pair(width, height), std::pair(3, 2));
    EXPECT_EQ(std::pair(GetDataType(image), ImageGetDataType(waves)), std::pair(std::int16_t{2}, 13u));
    EXPECT_EQ(qorv::dm::read_lock{clone}.view<float>()(2, 1), 5.f);
    EXPECT_EQ(std::tuple(ImageGetDataElementByteSize(waves), ImageGetNumDimensions(image), ImageGetName(clone)),
              std::tuple(16u, 2u, "ramp"));
    EXPECT_TRUE(ImageIsValid(image) && IsRealDataType(image, 4) && IsComplexDataType(waves, 16));
    EXPECT_FALSE(IsRealDataType(image, 8) || IsComplexDataType(waves, 8));
    const image_ref converted = IntegerImage("i", 4, false, 3, 2);
    EXPECT_EQ(ImageGetDataType(converted), 11u);
    ConvertToFloat(converted);
    EXPECT_EQ(ImageGetDataType(converted), 2u);
    EXPECT_EQ(ImageGetDimensionSize(NewImage("line", 3, {7}), 0), 7u);
    EXPECT_EQ(message_of([] { NewImage("", 2, {1, 1, 1, 1}); }), "num_dim <= kMaxDim");
}

void lock_images(engine&)
{
    const qorv::dm::read_lock lock{NewImage("v", 2, {2, 3, 4})};
    EXPECT_EQ(lock.strides(), (qorv::dm::image<char>::extents{1, 2, 6}));
    EXPECT_EQ(lock.sizes(), (qorv::dm::image<char>::extents{2, 3, 4}));
    EXPECT_EQ(ImageData_CountSlices(ImageGetLockedData(ramp(3, 2), HOST_LOCK_READ, {})), 1u);
    const host_data_slice slice{2, 2, {1, 2, 0}, {3, 4, 0}};
    const auto unpacked = ExtractImageDataSequenceFromScriptObjectOrFail(NewImageDataSlice(slice));
    EXPECT_EQ(std::tie(unpacked.num_dim, unpacked.start[1], unpacked.extent[0]), std::tuple(2u, 2, 3));
}

void use_the_rest(engine& host)
{
    EXPECT_EQ(ImageGetName(OpenImage("a file")), "a file");
    EXPECT_FALSE(DoesFileExist("/no/such/file"));
    OkDialog("read me");
    ShowAlert("careful", 2);
    UnregisterCustomTool(RegisterCustomTool(1, "tool", 2));
    WriteOutputWindow("test", 1, "a line\n");
    EXPECT_EQ(host.records().dialogs().size(), 2u);
    EXPECT_EQ(host.records().output().size(), 1u);
    EXPECT_TRUE(NewThrowableFromString("oops"));
}

void add_method(script_class_ref script_class)
{
    ScriptClassAddMethod(script_class, NewAbstractMethod("OnApply", "void OnApply( ScriptObject self )"));
}

void use_script_classes(engine& host)
{
    Gatan::PlugIn::PlugInMain plug_in;
    add_function<add_method>(plug_in, "void AddMethod(ScriptClass c)");
    const auto script_class = std::make_shared<zentrix::host::script_class>("class");
    host.call("AddMethod", {script_class});
    EXPECT_EQ(script_class->methods().size(), 1u);
}

/// Calls every host function at least once and checks their effects. Returns the messages of the calls that failed.
std::vector<std::string> failures(engine& host)
{
    host.records().clear();
    std::vector<std::string> messages;
    for (auto* call : {use_tags, use_images, lock_images, use_the_rest, use_script_classes})
        if (const auto message = message_of([&] { call(host); }); !message.empty()) messages.push_back(message);
    return messages;
}

engine_options opening_any_file()
{
    return {.open_image = [](const std::string&) {
        return zentrix::host::image::create("a file", 2, std::array{1u, 1u});
    }};
}

TEST(HostFunction, IsFoundByItsExactPrototypeOnce)
{
    linked to{opening_any_file()};
    EXPECT_THAT(failures(to.host), IsEmpty());
    to.host.faults().plan({fault_point::find_function, 0, {}, ""});  // further look-ups would fail
    EXPECT_THAT(failures(to.host), IsEmpty());
    to.unlink();
    EXPECT_EQ(to.host.report().text(), "");
}

TEST(HostFunction, FailureHasTheHostsTextOrNamesTheMissingPrototype)
{
    for (const std::string& prototype : engine{}.functions().prototypes(zentrix::host::origin::host)) {
        auto options = opening_any_file();
        linked failing{options};
        failing.host.faults().plan({fault_point::call, 1, prototype, "no such luck"});
        EXPECT_THAT(failures(failing.host), Contains("no such luck")) << prototype;
        failing.unlink();
        EXPECT_EQ(failing.host.report().text(), "") << prototype;

        if (prototype.starts_with("void WriteOutputWindow")) continue;
        options.withheld = {prototype};
        linked without{options};
        EXPECT_THAT(failures(without.host),
                    Contains("A function of the following prototype can not be found:\n\n" + prototype));
        without.unlink();
        EXPECT_THAT(without.host.report().references, IsEmpty()) << prototype;
    }
}

TEST(HostFunction, MethodsAreFoundByNameAndPrototype)
{
    EXPECT_EQ(message_of([] { call_method<void>({}, "OnApply", "void OnApply( ScriptObject self )"); }),
              "Attempt to dispatch off a null object.");
    linked to;
    const script_object_ref lock = ImageGetLockedData(ramp(1, 1), HOST_LOCK_READ, {});
    EXPECT_EQ(message_of([&] { call_method<void>(lock, "Fly", "void Fly( ScriptObject self )"); }),
              "A function of the following prototype can not be found:\n\nvoid Fly( ScriptObject self )");
}

#ifndef _WIN32
TEST(HostFunction, WithoutOutputWindowALineGoesToStandardError)
{
    const linked to{{.has_output_window = false}};
    testing::internal::CaptureStderr();
    WriteOutputWindow("test", 1, "a line\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "No DM output window\n");
}
#endif

TEST(ImageLock, IsSharedByCopiesUntilReleased)
{
    linked to;
    qorv::dm::write_lock lock{ramp(3, 2)};
    std::optional copy{lock};
    copy.reset();
    EXPECT_EQ(to.host.report().locks.size(), 1u);
    EXPECT_EQ(message_of([&] { lock.view<double>(); }), "Invalid data type.");
    lock.release();
    EXPECT_EQ(to.host.report().locks.size(), 0u);
    EXPECT_EQ(message_of([] { qorv::dm::read_lock{image_ref{}}; }), "Parameters are invalid.");
}

TEST(ImageLock, DestructorLogsTheErrorThatItCannotThrow)
{
    linked to;
    {
        const qorv::dm::write_lock lock{ramp(2, 2)};
        to.host.faults().plan({fault_point::call, 1, "void ImageDataChanged( ImageRef )", "no redraw"});
    }
    const auto lines = to.host.records().output();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].module + lines[0].text, "ZentrixAn image's lock ended with an error: no redraw\n");
    EXPECT_EQ(lines[0].type, 1u);
    EXPECT_THAT(to.host.report().locks, IsEmpty());
}

/// As at the end of a process whose host shuts the library down last.
TEST(FunctionSlot, GivesItsFunctionBackOnceWhenItIsDestroyedBeforeTheLibraryEnds)
{
    linked to;
    auto slot = std::make_unique<function_slot>("TagGroup NewTagGroup(  )");
    function_slot other{"TagGroup NewTagList(  )"};
    ASSERT_TRUE(slot->find() && other.find());
    slot.reset();
    EXPECT_EQ(to.host.report().references.size(), 1u);
    function_slot::release_all();
    EXPECT_THAT(to.host.report().references, IsEmpty());
    EXPECT_THAT(to.host.report().violations, IsEmpty());
}

std::int32_t takes_long(std::int32_t) { return 0; }
void sets_double(output<double>) {}

TEST(ScriptFunction, IsRefusedUnlessItMatchesItsPrototype)
{
    linked to;
    Gatan::PlugIn::PlugInMain plug_in;
    for (const char* prototype : {"double F(long n)", "long F(double n)", "long F(long n, long m)", "long F()"})
        EXPECT_EQ(message_of([&] { add_function<takes_long>(plug_in, prototype); }),
                  "The native function does not fit the prototype \"" + std::string{prototype} + "\".");
    EXPECT_EQ(message_of([&] { add_function<takes_long>(plug_in, "long F(long n)"); }), "");
    EXPECT_NE(message_of([&] { add_function<sets_double>(plug_in, "void G(float * x)"); }), "");
    EXPECT_EQ(message_of([&] { add_function<sets_double>(plug_in, "void G(double * x)"); }), "");
}

}  // namespace
