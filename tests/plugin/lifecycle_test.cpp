#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "framework/error_manager.h"
#include "host/engine/engine.h"
#include "host/engine/library.h"
#include "plugin/entries.h"
#include "plugin/guarded.h"
#include "plugin/module.h"
#include "tests/support/same_bytes.h"

// The lifecycle entries, linked into this program and called by the stand-alone host.
namespace {

using namespace zentrix::host;
using testing::ElementsAre;
using testing::IsEmpty;

library_entries entries()
{
    return {DMPlugIn_GetVersion, DMPlugIn_Link_2, PlugInRegisterFloatingWindows,
            PlugInStartup,       PlugInRun,       PlugInRequestClose,
            PlugInPrepareClose,  PlugInCleanup,   PlugInShutdown};
}

std::vector<std::string> error_texts(engine& host)
{
    std::vector<std::string> texts;
    for (const auto& error : host.records().errors()) texts.push_back(std::to_string(error.code) + " " + error.text);
    return texts;
}

std::size_t script_functions(engine& host) { return host.functions().prototypes(origin::library).size(); }

/// The number of functions that a start-up registers.
std::size_t all_script_functions()
{
    engine host;
    const library zentrix{host, entries()};
    return script_functions(host);
}

struct lifecycle : testing::Test
{
    void SetUp() override { qorv::dm::set_module_handle(nullptr); }
};

TEST_F(lifecycle, NormalOrderRegistersAndReleasesEverything)
{
    engine host;
    {
        library zentrix{host, entries()};
        EXPECT_EQ(script_functions(host), the_plug_in().functions().size());
        EXPECT_GT(script_functions(host), 0u);
        EXPECT_EQ(zentrix.close(), 1);
    }
    EXPECT_EQ(host.report().text(), "");
    EXPECT_FALSE(the_plug_in().started() || the_plug_in().enlisted());
    for (const char* name :
         {"RegisterFloatingWindows", "Start", "Run", "RequestClose", "PrepareClose", "Cleanup", "End"})
        EXPECT_EQ(host.records().traces().at(std::string{"PlugIn_"} + name).reports, 1u) << name;
    EXPECT_THAT(error_texts(host), IsEmpty());
}

TEST_F(lifecycle, RepeatedAndMisplacedCallsLeakNothing)
{
    const auto all = all_script_functions();
    engine host;
    PlugInStartup();  // before there is a link
    EXPECT_EQ(PlugInRequestClose(), 1);
    PlugInShutdown();
    DMPlugIn_Link_2(host.link());
    PlugInShutdown();  // before start-up
    PlugInCleanup();
    PlugInStartup();
    EXPECT_TRUE(the_plug_in().started() && the_plug_in().enlisted());
    PlugInStartup();  // the host refuses the second registration; the first one stays
    EXPECT_EQ(script_functions(host), all);
    EXPECT_EQ(host.records().errors().size(), 1u);
    PlugInRegisterFloatingWindows();
    PlugInShutdown();
    PlugInShutdown();
    EXPECT_EQ(script_functions(host), 0u);
    PlugInStartup();
    EXPECT_EQ(script_functions(host), all);
    PlugInShutdown();
    DMPlugIn_Link_2(nullptr);
    EXPECT_EQ(host.report().text(), "");
}

/// A link whose interface table has two operations and nothing after them. Its first member is the table.
struct counted_link
{
    void (*const* table)(counted_link*);
    std::string name;

    host_link* get() { return reinterpret_cast<host_link*>(this); }
};

TEST_F(lifecycle, LinkIsCountedByTheFirstTwoOperationsOfItsTable)
{
    static std::string calls;
    static constexpr void (*operations[])(counted_link*) = {[](counted_link* link) { calls += "+" + link->name; },
                                                            [](counted_link* link) { calls += "-" + link->name; }};
    counted_link a{operations, "a"}, b{operations, "b"};
    const std::pair<host_link*, const char*> steps[] = {
        {a.get(), "+a"}, {a.get(), ""}, {b.get(), "+b-a"}, {nullptr, "-b"}, {nullptr, ""}};
    for (const auto& [link, expected] : steps) {
        calls.clear();
        DMPlugIn_Link_2(link);
        EXPECT_EQ(calls, expected);
    }
    EXPECT_EQ(DMPlugIn_GetVersion(), 2);
}

TEST_F(lifecycle, ObjectsOfAReplacedLinkAreAbandoned)
{
    const auto start_and_hold = [](engine& host) {
        DMPlugIn_Link_2(host.link());
        PlugInStartup();
        host.call("ZXSetZentrixHandler", {std::make_shared<script_object>("handler"), memory_tag_group::make_group()});
        EXPECT_GE(host.report().references.size(), 2u);
    };
    engine second;
    {
        engine first;
        start_and_hold(first);
        const auto held = first.report().references;
        start_and_hold(second);  // its functions are looked up again
        EXPECT_EQ(first.report().references, held);
        EXPECT_THAT(first.report().violations, IsEmpty());
    }
    PlugInShutdown();
    EXPECT_THAT(second.report().references, IsEmpty());
    start_and_hold(second);
    const auto held = second.report().references;
    DMPlugIn_Link_2(nullptr);
    PlugInShutdown();
    EXPECT_EQ(second.report().references, held);
    EXPECT_THAT(second.report().violations, IsEmpty());
}

TEST_F(lifecycle, HostStopsACallIfItsTableHasTheOperation)
{
    engine host{{.interrupted = [] { return true; }}};
    const auto blur = [&] {
        const script_value picture{image::create("picture", HOST_ELEMENT_FLOAT32, {{4, 3}})};
        return support::message_of([&] {
            host.call("ZXGaussianBlur", {picture, 1.0, std::int64_t{3}, script_value{}});
        });
    };
    {
        const library zentrix{host, entries()};
        EXPECT_EQ(blur(), "The call was interrupted.");
        EXPECT_THAT(host.report().locks, IsEmpty());
    }
    EXPECT_EQ(host.report().text(), "");
    host_table shorter = *host.link()->table;
    shorter.size = offsetof(host_table, is_interrupted);
    shorter.is_interrupted = nullptr;
    host.link()->table = &shorter;
    const library zentrix{host, entries()};
    EXPECT_EQ(blur(), "");
}

TEST_F(lifecycle, HostVersionIsCheckedAndStartUpContinues)
{
    struct row
    {
        std::optional<std::uint32_t> version;
        bool has_manager, refused;
    };
    const auto all = all_script_functions();
    const std::vector<std::string> refusal{"28802 This plugin requires DM 3.10.0 or later."};
    for (const row& r : {row{0x0309FFFF, true, true}, row{0x030A0000, true, false}, row{0x04000000, true, false},
                         row{std::nullopt, true, true}, row{0x02FFFFFF, false, true}}) {
        engine host{{.version = r.version, .has_error_manager = r.has_manager}};
        const library zentrix{host, entries()};
        EXPECT_EQ(error_texts(host), r.refused ? refusal : std::vector<std::string>{}) << r.version.value_or(0);
        EXPECT_EQ(script_functions(host), all);
    }
}

TEST_F(lifecycle, CompanionPackageHasTheLibrarysPathAndStem)
{
    static const char somewhere_in_this_program = 0;
    for (const bool exists : {true, false}) {
        qorv::dm::set_module_handle(const_cast<char*>(&somewhere_in_this_program));
        std::string path_checked;
        engine host{{.file_exists = [&](const std::string& path) { return path_checked = path, exists; }}};
        const library zentrix{host, entries()};
#ifdef _WIN32
        EXPECT_EQ(path_checked, "");  // on Windows this address is no module handle
#else
        EXPECT_THAT(path_checked, testing::EndsWith("/plugin_tests.gtk"));
        EXPECT_EQ(host.records().dialogs().size(), exists ? 0u : 1u);
        for (const auto& dialog : host.records().dialogs())
            EXPECT_EQ(dialog.text,
                      "The gtk for Zentrix is missing. In order to use the Zentrix install the gtk for Zentrix on to "
                      "the plug-in folder and launch the DM again.");
#endif
        EXPECT_GT(script_functions(host), 0u);
    }
    for (const char* name : {"Renamed.dll", "Renamed"})
        EXPECT_EQ(qorv::dm::with_extension((std::filesystem::path{"a.b"} / name).string(), ".gtk"),
                  (std::filesystem::path{"a.b"} / "Renamed.gtk").string());
}

TEST_F(lifecycle, NoExceptionLeavesAnEntry)
{
    engine host;
    DMPlugIn_Link_2(host.link());
    qorv::dm::guarded("A", [](auto&) { throw std::runtime_error{"first"}; });
    qorv::dm::guarded("B", [](auto&) { throw Gatan::gatan_exception{"second", Gatan::error_code::com_error}; });
    qorv::dm::guarded("C", [](auto&) { throw 3; });
    EXPECT_THAT(error_texts(host), ElementsAre("28802 first", "28811 second", "28803 An unknown exception occurred."));
    for (const char* name : {"A", "B", "C"}) EXPECT_EQ(host.records().traces().at(name).reports, 1u);
    DMPlugIn_Link_2(nullptr);
}

}  // namespace
