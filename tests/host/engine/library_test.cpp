#include "host/engine/library.h"

#include "host/engine/engine_state.h"
#include "tests/host/engine/calls.h"

#include <gmock/gmock.h>
#include <thread>

namespace {

using namespace zentrix::host;
using support::failure;
using support::number;
using testing::ElementsAre;
using testing::IsEmpty;

image_ref picture() { return image::create("p", HOST_ELEMENT_FLOAT32, {{std::uint32_t{3}, std::uint32_t{2}}}); }

TEST(RunningLibrary, GoesThroughItsLifeCycleInOrderAndLeavesNothing)
{
    engine host;
    {
        library loaded{host, TEST_LIBRARY};
        EXPECT_EQ(host.functions().prototypes(origin::library).size(), 1u);
        EXPECT_EQ(host.open("Test", host.link()), nullptr);
        void* window = host.open("Test", nullptr);
        EXPECT_NE(window, nullptr);
        EXPECT_EQ(host.open("Test", nullptr), window);
        EXPECT_EQ(loaded.close(), 7);
        EXPECT_EQ(loaded.close(), 0);
    }
    std::vector<std::string> order;
    for (const auto& error : host.records().errors()) order.push_back(error.text);
    EXPECT_THAT(order, ElementsAre("DMPlugIn_Link_2", "PlugInRegisterFloatingWindows", "PlugInStartup", "PlugInRun",
                                   "window created", "window created", "PlugInRequestClose", "PlugInPrepareClose",
                                   "window destroyed", "PlugInCleanup", "PlugInShutdown"));
    EXPECT_EQ(host.report().text(), "");
    EXPECT_EQ(failure(host, "TestMisbehave", {}), "There is no script function \"TestMisbehave\".");
}

TEST(RunningLibrary, IsRefusedWhenItCannotBeLoadedOrLinked)
{
    engine host;
    const auto refusal = [&](const auto& source) { return support::message_of([&] { library{host, source}; }); };
    EXPECT_THAT(refusal(std::string{"no such file"}), testing::StartsWith("\"no such file\" cannot be loaded: "));
    EXPECT_EQ(refusal(std::string{"/"}), "\"/\" cannot be loaded: it is not a regular file.");
    auto entries = module{TEST_LIBRARY}.entries();
    entries.get_version = [] { return std::int32_t{1}; };
    EXPECT_EQ(refusal(entries), "The library uses version 1 of the linking protocol, but this host uses version 2.");
    entries.cleanup = nullptr;
    EXPECT_EQ(refusal(entries), "The library lacks an entry point.");
    EXPECT_THAT(host.records().errors(), IsEmpty());
    EXPECT_TRUE(host.report().clean());
}

TEST(RunningLibrary, IsFoundToBreakTheRules)
{
    struct row
    {
        const char* how;
        const char* error;   ///< of the script
        const char* breach;  ///< end of the only violation; null: no violation
    };
    const char* const wrong_kind = "A value of kind string is passed where the prototype has image.";
    const char* const not_locked = "The memory of image \"p\" (3 x 2, Real 4 Byte) is not locked.";
    const row rows[] = {{"nothing wrong", "", nullptr},
                        {"release twice", "", " is released after its last release."},
                        {"use after release", "", " is used after its last release."},
                        {"foreign pointer", "", "A pointer that is not a host object is referenced."},
                        {"release lent", "", ", which was only lent, is released."},
                        {"unlocked access", not_locked, " is asked for its data while it is not locked."},
                        {"unlock twice", not_locked, " is unlocked but was not locked."},
                        {"drop locked", "", " was released while its memory was locked."},
                        {"wrong kind", wrong_kind, wrong_kind},
                        {"wrong count", "\"void ImageDataChanged( ImageRef )\" is called with 0 arguments.",
                         "\"void ImageDataChanged( ImageRef )\" is called with 0 arguments."},
                        {"null string", "A null string is passed.", "A null string is passed."},
                        {"fail and write", "Failed on purpose.", "failed but wrote to an output parameter."},
                        {"wrong result", "A value of kind double is passed where the prototype has void.",
                         "A value of kind double is passed where the prototype has void."},
                        {"write under read lock", "", " is for reading, but the pixels changed."}};
    for (const auto& r : rows) {
        engine_options options;
        options.check_read_locks = true;
        engine host{options};
        library loaded{host, TEST_LIBRARY};
        const auto locked = picture();
        const auto output = make_cell(0.25);
        EXPECT_EQ(failure(host, "TestMisbehave", {locked, std::string{r.how}, output}), r.error) << r.how;
        EXPECT_EQ(output->value, script_value{0.25}) << r.how;
        EXPECT_EQ(locked->locks(), 0u) << r.how;
        const auto breaches = host.records().violations();
        ASSERT_EQ(breaches.size(), r.breach ? 1u : 0u) << r.how;
        EXPECT_THAT(r.breach ? breaches[0] : "", testing::EndsWith(r.breach ? r.breach : "")) << r.how;
        EXPECT_THAT(host.report().references, IsEmpty()) << r.how;
    }
}

TEST(RunningLibrary, ReceivesNoTextWithANullCharacter)
{
    engine host;
    library loaded{host, TEST_LIBRARY};
    const auto locked = picture();
    const std::string cut{"drop\0locked", 11};
    const char refused[] = "A text with a null character cannot be passed to the library.";
    EXPECT_EQ(failure(host, "TestMisbehave", {locked, cut, make_cell(0.0)}), refused);
    EXPECT_EQ(locked.use_count(), 1);  // no longer lent
}

TEST(RunningLibrary, IsReportedWithTheObjectsThatItStillHolds)
{
    engine host;
    const auto locked = picture();
    {
        library loaded{host, TEST_LIBRARY};
        host.call("TestMisbehave", {locked, std::string{"keep a lock"}, {}});
    }
    EXPECT_EQ(host.report().text(),
              "held: read lock of image \"p\" (3 x 2, Real 4 Byte): 1 reference\n"
              "locked: read lock of image \"p\" (3 x 2, Real 4 Byte)\n");
    EXPECT_EQ(locked->locks(access::read), 1u);
    host.forget_held();
    EXPECT_EQ(locked->locks(), 0u);
    EXPECT_EQ(locked.use_count(), 1);
}

TEST(ContractTable, RefusesOtherThreadsWhereOnlyTheMainThreadMayCallAndLetsNoExceptionOut)
{
    engine host;
    host.records().listening.error = [](const error_record&) { throw script_error{"by a listener"}; };
    auto* link = host.link();
    host_object* text = link->table->string_new(link, "a", 1);
    std::thread{[&] {
        link->table->object_release(link, text);
        EXPECT_EQ(link->table->find_function(link, "TagGroup NewTagGroup(  )"), nullptr);
        link->table->trace_add(link, "counter", 5);
        link->table->report_error(link, 28802, "on another thread");
        link->table->add_reference(link);
        for (int i = 0; i < 2; ++i) link->table->release(link);
    }}.join();
    EXPECT_THAT(host.records().violations(),
                ElementsAre("object_release is called on a thread other than the main thread.",
                            "find_function is called on a thread other than the main thread.",
                            "The link is released more often than it was referenced."));
    EXPECT_STREQ(link->table->string_text(link, text, nullptr), "a");
    EXPECT_EQ(host.records().traces()["counter"].ticks, 5);
    EXPECT_EQ(host.records().errors().at(0).code, 28802u);
}

TEST(ContractTable, ReplacesAndCountsTheObjectsInOutputsUnlessOneIsRefused)
{
    engine host;
    auto* link = host.link();
    const auto& table = *link->table;
    const char prototype[] = "void Read( dm_string *, dm_string * )";
    std::string first = "a", second = "b";
    const auto body = [&](std::span<const script_value> cells) -> script_value {
        std::get<cell_ref>(cells[0])->value = first;
        std::get<cell_ref>(cells[1])->value = second;
        return {};
    };
    host.functions().add(make_function(prototype, body), origin::host);
    host_value cells[2]{}, arguments[2]{};
    for (int i = 0; i < 2; ++i) {
        cells[i].kind = HOST_STRING;
        cells[i].as.object = table.string_new(link, "before", 6);
        arguments[i].kind = HOST_OUTPUT;
        arguments[i].as.cell = &cells[i];
    }
    host_object *read = table.find_function(link, prototype), *error = nullptr;
    EXPECT_EQ(table.call(link, read, arguments, 2, nullptr, &error), 0);
    first = "c";
    second = std::string{"\0", 1};
    EXPECT_EQ(table.call(link, read, arguments, 2, nullptr, &error), 1);
    EXPECT_STREQ(table.string_text(link, cells[0].as.object, nullptr), "a");
    EXPECT_STREQ(table.string_text(link, cells[1].as.object, nullptr), "b");
    for (auto* held : {cells[0].as.object, cells[1].as.object, read, error}) table.object_release(link, held);
    EXPECT_EQ(host.report().text(), "");
}

TEST(Engine, ReportsObjectsWhoseDescriptionReleasesOthers)
{
    struct foreign_object : object
    {
        using object::object;
        std::string describe() const override { return on_describe(), "foreign"; }
        std::function<void()> on_describe;
    };
    engine host;
    auto& handles = host.state().handles;
    const auto foreign = std::make_shared<foreign_object>(object_kind::script_object);
    handles.give(foreign);
    auto* other = handles.give(std::make_shared<string_object>("other"));
    foreign->on_describe = [&] { handles.release(std::exchange(other, nullptr)); };
    EXPECT_EQ(host.report().text(), "held: foreign: 1 reference\nheld: string \"other\": 1 reference\n");
    EXPECT_EQ(host.report().text(), "held: foreign: 1 reference\n");
}

TEST(Engine, HasTheFeaturesOfItsOptions)
{
    engine_options options;
    options.version = std::nullopt;
    options.has_error_manager = false;
    options.has_output_window = false;
    options.withheld = {"void OkDialog( string )"};
    options.file_exists = [](const std::string& path) { return path == "ä.gtk"; };
    engine bare{options}, full;
    std::uint32_t version = 0;
    EXPECT_EQ(bare.link()->table->version(bare.link(), &version), 0);
    EXPECT_EQ(full.link()->table->version(full.link(), &version), 1);
    EXPECT_EQ(bare.link()->table->has_error_manager(bare.link()), 0);
    EXPECT_EQ(full.link()->table->has_error_manager(full.link()), 1);
    EXPECT_FALSE(bare.functions().find("void OkDialog( string )"));
    EXPECT_TRUE(full.functions().find("void OkDialog( string )"));
    EXPECT_FALSE(full.functions().find("void OkDialog(string)"));
    EXPECT_EQ(bare.call("DoesFileExist", {std::string{"ä.gtk"}}), number(1));
    EXPECT_EQ(full.call("DoesFileExist", {std::string{TEST_LIBRARY}}), number(1));
    EXPECT_EQ(failure(bare, "OpenImage", {std::string{"a"}}), "\"a\" cannot be opened: this host reads no files.");
    const auto tool = full.call("RegisterCustomTool", {number(1), std::string{"t"}, number(0)});
    EXPECT_EQ(full.report().text(), "left: the custom tool \"t\" is registered\n");
    full.call("UnregisterCustomTool", {tool});
    EXPECT_EQ(failure(full, "UnregisterCustomTool", {tool}), "There is no such custom tool.");
}

TEST(ScriptClasses, DefineMethodsOfTheirObjectsWhichObjectsOverride)
{
    engine host;
    const script_value name = std::string{"OnApply"}, prototype = std::string{"long OnApply( ScriptObject self )"};
    const auto abstract = object_in<function>(host.call("NewAbstractMethod", {name, prototype}));
    const auto handlers = std::make_shared<script_class>("Handler");
    const auto handler = std::make_shared<script_object>("handler", handlers);
    const auto run = [&] { return abstract->call(std::array{script_value{handler}}); };
    EXPECT_EQ(support::message_of(run),
              "script object \"handler\" has no method \"long OnApply( ScriptObject self )\".");
    const auto of_class = make_function("long OnApply(ScriptObject self)", [](auto) { return number(1); });
    host.call("ScriptClassAddMethod", {handlers, of_class});
    EXPECT_EQ(run(), number(1));
    handler->add_method("long OnApply(ScriptObject me)", [](auto) { return number(2); });
    EXPECT_EQ(run(), number(2));
}

}  // namespace
