// The engine and a library written against the contract in plain C, loaded from its file.

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

image_ref picture() { return image::create("p", 2, {{std::uint32_t{3}, std::uint32_t{2}}}); }

TEST(running_library, goes_through_its_life_in_order_and_leaves_nothing)
{
    engine host;
    {
        library loaded{host, TEST_LIBRARY};
        EXPECT_EQ(host.functions().prototypes(origin::library).size(), 5u);
        EXPECT_EQ(host.open("Test", host.link()), nullptr);
        void* window = host.open("Test", nullptr);
        EXPECT_NE(window, nullptr);
        EXPECT_EQ(host.open("Test", nullptr), window);
        EXPECT_EQ(loaded.close(), 7);
        EXPECT_EQ(loaded.close(), 0);
    }
    std::vector<std::string> order;
    for (const auto& told : host.records().errors()) order.push_back(told.text);
    EXPECT_THAT(order, ElementsAre("DMPlugIn_Link_2", "PlugInRegisterFloatingWindows", "PlugInStartup", "PlugInRun",
                                   "window created", "window created", "PlugInRequestClose", "PlugInPrepareClose",
                                   "window destroyed", "PlugInCleanup", "PlugInShutdown"));
    EXPECT_EQ(host.report().text(), "");
    EXPECT_EQ(failure(host, "TestFill", {}), "There is no script function \"TestFill\".");
}

TEST(running_library, is_refused_when_it_cannot_be_loaded_or_linked)
{
    engine host;
    EXPECT_THAT(support::message_of([&] {
                    library{host, "no such file"};
                }),
                testing::StartsWith("\"no such file\" cannot be loaded: "));
    auto entries = module{TEST_LIBRARY}.entries();
    entries.get_version = [] { return std::int32_t{1}; };
    EXPECT_EQ(support::message_of([&] {
                  library{host, entries};
              }),
              "The library uses version 1 of the linking protocol, but this host uses version 2.");
    entries.cleanup = nullptr;
    EXPECT_EQ(support::message_of([&] { library{host, entries}; }), "The library lacks an entry point.");
    EXPECT_THAT(host.records().errors(), IsEmpty());
    EXPECT_TRUE(host.report().clean());
}

TEST(running_library, takes_and_gives_values_by_its_prototypes)
{
    engine host;
    library loaded{host, TEST_LIBRARY};
    const auto rest = make_cell(number(9));
    EXPECT_EQ(host.call("TestDivide", {17.9, number(5), rest}), number(3));
    EXPECT_EQ(rest->value, number(2));
    EXPECT_EQ(host.call("TestDivide", {number(17), number(5), {}}), number(3));
    EXPECT_EQ(failure(host, "TestDivide", {number(1), number(0), rest}), "Division by zero.");
    EXPECT_EQ(rest->value, number(2));
    EXPECT_EQ(failure(host, "TestDivide", {3e9, number(1), rest}), "bad numeric conversion: positive overflow");
    EXPECT_EQ(host.call("TestOverload", {number(1)}), script_value{std::string{"double"}});
    EXPECT_EQ(host.call("TestOverload", {std::complex<double>{1, 1}}), script_value{std::string{"complex"}});

    std::vector<float> memory(12);
    const auto columns = image::over("v", 2, memory.data() + 10, {{std::uint32_t{2}, std::uint32_t{3}}},
                                     {{std::ptrdiff_t{1}, std::ptrdiff_t{-4}}}, access::write, {});
    EXPECT_EQ(host.call("TestFill", {columns, 0.5}), script_value{object_ref{columns}});
    EXPECT_THAT(memory, ElementsAre(0, 0, 0.5, 0.5, 0, 0, 0.5, 0.5, 0, 0, 0.5, 0.5));
    EXPECT_EQ(columns->changes(), 1u);
    EXPECT_EQ(columns->locks(), 0u);
    EXPECT_EQ(columns.use_count(), 1);
    loaded.close();
    EXPECT_EQ(host.report().text(), "");
}

TEST(running_library, survives_the_failure_of_every_single_request)
{
    engine host;
    library loaded{host, TEST_LIBRARY};
    const auto filled = picture();
    const auto fill = [&] { host.call("TestFill", {filled, 0.5}); };
    struct row
    {
        fault_point point;
        std::uint64_t requests;
        const char* told;
    };
    const row rows[] = {{fault_point::call, 5, "This host call was made to fail."},
                        {fault_point::find_function, 3, "A host function is missing."},
                        {fault_point::find_method, 2, "A method is missing."},
                        {fault_point::make_string, 4, "A method is missing."}};
    for (const auto& r : rows) {
        host.faults().clear();
        fill();
        EXPECT_EQ(host.faults().count(r.point), r.requests);
        for (std::uint64_t k = 1; k <= r.requests; ++k) {
            host.faults().plan({r.point, k});
            EXPECT_EQ(support::message_of(fill), r.told) << k;
            EXPECT_EQ(host.faults().fired(), 1u) << k;
            EXPECT_THAT(host.report().references, IsEmpty()) << k;
            EXPECT_EQ(filled->locks(), 0u) << k;
            // Only a lock whose unlocking could not even be asked for is given free by its death, which is told.
            const bool unlocking_unasked = r.point != fault_point::call && r.told == rows[2].told && k > r.requests / 2;
            EXPECT_EQ(host.records().violations().size(), unlocking_unasked ? 1u : 0u) << k;
            host.records().clear();
        }
    }
    host.faults().plan({fault_point::call, 2, "void ImageDataChanged( ImageRef )", "Not now."});
    fill();
    EXPECT_EQ(support::message_of(fill), "Not now.");
    fill();
    host.faults().plan({fault_point::call, 0, "void ImageDataChanged( ImageRef )"});
    for (int i = 0; i < 3; ++i) EXPECT_NE(support::message_of(fill), "");
    EXPECT_EQ(host.faults().fired(), 3u);
}

TEST(running_library, that_breaks_the_rules_is_found_out)
{
    struct row
    {
        const char* how;
        const char* told;    ///< to the script
        const char* breach;  ///< the end of the first violation
    };
    const char* const handed_wrong = "A value of kind string is passed where the prototype has image.";
    const char* const not_locked = "The memory of image \"p\" (3 x 2, Real 4 Byte) is not locked.";
    const row rows[] = {{"nothing wrong", "", nullptr},
                        {"release twice", "", " is released after its last release."},
                        {"use after release", "", " is used after its last release."},
                        {"foreign pointer", "", "A pointer that is not a host object is referenced."},
                        {"release lent", "", ", which was only lent, is released."},
                        {"unlocked access", not_locked, " is asked for its data while it is not locked."},
                        {"unlock twice", not_locked, " is unlocked but was not locked."},
                        {"drop locked", "", " was released while its memory was locked."},
                        {"wrong kind", handed_wrong, handed_wrong},
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
        EXPECT_EQ(failure(host, "TestMisbehave", {locked, std::string{r.how}, output}), r.told) << r.how;
        EXPECT_EQ(output->value, script_value{0.25}) << r.how;
        EXPECT_EQ(locked->locks(), 0u) << r.how;
        const auto breaches = host.records().violations();
        ASSERT_EQ(breaches.size(), r.breach ? 1u : 0u) << r.how;
        EXPECT_THAT(r.breach ? breaches[0] : "", testing::EndsWith(r.breach ? r.breach : "")) << r.how;
        EXPECT_THAT(host.report().references, IsEmpty()) << r.how;
    }
}

TEST(running_library, is_reported_for_what_it_still_holds)
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

TEST(the_table, refuses_other_threads_where_only_the_main_one_may_call)
{
    engine host;
    auto* link = host.link();
    host_object* text = link->table->string_new(link, "a", 1);
    std::thread{[&] {
        link->table->object_release(link, text);
        EXPECT_EQ(link->table->find_function(link, "TagGroup NewTagGroup(  )"), nullptr);
        link->table->trace_add(link, "counter", 5);
        link->table->report_error(link, 28802, "from afar");
    }}.join();
    EXPECT_THAT(host.records().violations(),
                ElementsAre("object_release is called on a thread other than the main thread.",
                            "find_function is called on a thread other than the main thread."));
    EXPECT_STREQ(link->table->string_text(link, text, nullptr), "a");
    EXPECT_EQ(host.records().traces()["counter"].ticks, 5);
    EXPECT_EQ(host.records().errors().at(0).code, 28802u);
}

TEST(the_table, exchanges_what_an_output_holds_and_counts_it)
{
    engine host;
    auto* link = host.link();
    const auto& table = *link->table;
    const auto group = memory_tag_group::make_group();
    group->write("a", std::string{"stored"});
    host_value arguments[3]{{HOST_TAG_GROUP, 0, {}}, {HOST_STRING, 0, {}}, {HOST_OUTPUT, 0, {}}};
    host_value cell{HOST_STRING, 0, {}}, found{};
    cell.as.object = table.string_new(link, "before", 6);
    arguments[0].as.object = host.state().handles.give(group);
    arguments[1].as.object = table.string_new(link, "a", 1);
    arguments[2].as.cell = &cell;
    host_object* error = nullptr;
    auto* read = table.find_function(link, "Boolean TagGroupGetTagAsString( TagGroup, string, dm_string * )");
    ASSERT_EQ(table.call(link, read, arguments, 3, &found, &error), 0);
    EXPECT_EQ(found.as.i32, 1);
    EXPECT_STREQ(table.string_text(link, cell.as.object, nullptr), "stored");
    for (auto* held : {cell.as.object, arguments[0].as.object, arguments[1].as.object, read})
        table.object_release(link, held);
    EXPECT_EQ(host.report().text(), "");
}

TEST(the_host, has_what_its_options_say)
{
    engine_options options;
    options.version = std::nullopt;
    options.has_error_manager = false;
    options.has_output_window = false;
    options.withheld = {"void OkDialog( string )"};
    options.file_exists = [](const std::string& path) { return path == "ä.gtk"; };
    options.open_image = [](const std::string& path) -> image_ref { throw script_error{"no " + path}; };
    engine bare{options}, full;
    std::uint32_t version = 0;
    EXPECT_EQ(bare.link()->table->version(bare.link(), &version), 0);
    EXPECT_EQ(full.link()->table->version(full.link(), &version), 1);
    EXPECT_GE(version, 0x030A0000u);
    EXPECT_EQ(bare.link()->table->has_error_manager(bare.link()), 0);
    EXPECT_EQ(full.link()->table->has_error_manager(full.link()), 1);
    for (const char* text : {"void OkDialog( string )",
                             "void WriteOutputWindow( dm_string module_name, uint32 output_type, dm_string text )"}) {
        EXPECT_EQ(bare.link()->table->find_function(bare.link(), text), nullptr);
        EXPECT_TRUE(full.functions().find(text));
    }
    EXPECT_EQ(bare.call("DoesFileExist", {std::string{"ä.gtk"}}), number(1));
    EXPECT_EQ(bare.call("DoesFileExist", {std::string{TEST_LIBRARY}}), number(0));
    EXPECT_EQ(full.call("DoesFileExist", {std::string{TEST_LIBRARY}}), number(1));
    EXPECT_EQ(failure(bare, "OpenImage", {std::string{"a.tif"}}), "no a.tif");
    full.call("OkDialog", {std::string{"Hello"}});
    full.call("ShowAlert", {std::string{"Oh"}, number(2)});
    EXPECT_EQ(full.records().dialogs().at(1).kind, 2);
    full.call("WriteOutputWindow", {std::string{"m"}, number(1), std::string{"line\n"}});
    EXPECT_EQ(full.records().output().at(0).text, "line\n");
    const auto tool = full.call("RegisterCustomTool", {number(1), std::string{"t"}, number(0)});
    EXPECT_EQ(full.report().text(), "left: the custom tool \"t\" is registered\n");
    full.call("UnregisterCustomTool", {tool});
    EXPECT_EQ(failure(full, "UnregisterCustomTool", {tool}), "There is no such custom tool.");
}

TEST(script_classes, give_methods_to_their_objects_and_abstract_ones_find_the_objects_own)
{
    engine host;
    const auto handlers = std::make_shared<script_class>("Handler");
    const auto abstract =
        host.call("NewAbstractMethod", {std::string{"OnApply"}, std::string{"long OnApply( ScriptObject self )"}});
    const auto run_abstract = [&](const script_value& self) {
        return object_in<function>(abstract)->call(std::array{self});
    };
    EXPECT_EQ(support::message_of([&] { run_abstract({}); }), "Attempt to dispatch off a null object.");
    const auto handler = std::make_shared<script_object>("handler", handlers);
    EXPECT_EQ(support::message_of([&] { run_abstract(handler); }),
              "script object \"handler\" has no method \"long OnApply( ScriptObject self )\".");
    host.call("ScriptClassAddMethod",
              {handlers, make_function("long OnApply(ScriptObject self)", [](auto) { return number(1); })});
    EXPECT_EQ(run_abstract(handler), number(1));
    handler->add_method("long OnApply(ScriptObject me)", [](auto) { return number(2); });
    EXPECT_EQ(run_abstract(handler), number(2));
}

}  // namespace
