#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "framework/error_manager.h"
#include "framework/link.h"
#include "host/engine/engine.h"
#include "host/engine/library.h"
#include "plugin/entries.h"
#include "plugin/guarded.h"
#include "plugin/module.h"
#include "plugin/plugin.h"

// The lifecycle entries, linked into this program and driven by the stand-alone host.
namespace {

using namespace zentrix::host;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr char too_old[] = "This plugin requires DM 3.10.0 or later.";
constexpr char companion_missing[] =
    "The gtk for Zentrix is missing. In order to use the Zentrix install the gtk for Zentrix on to the plug-in folder "
    "and launch the DM again.";

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

struct lifecycle : testing::Test
{
    void SetUp() override { qorv::dm::set_module_handle(nullptr); }
};

TEST_F(lifecycle, NormalOrderRegistersAndLetsGoOfEverything)
{
    engine host;
    {
        library zentrix{host, entries()};
        EXPECT_EQ(script_functions(host), 64u);
        EXPECT_TRUE(the_plug_in().started() && the_plug_in().enlisted());
        EXPECT_EQ(zentrix.close(), 1);
    }
    EXPECT_EQ(host.report().text(), "");
    EXPECT_FALSE(the_plug_in().started() || the_plug_in().enlisted());
    for (const char* name :
         {"RegisterFloatingWindows", "Start", "Run", "RequestClose", "PrepareClose", "Cleanup", "End"})
        EXPECT_EQ(host.records().traces().at(std::string{"PlugIn_"} + name).reports, 1u) << name;
    EXPECT_THAT(error_texts(host), testing::IsEmpty());
}

TEST_F(lifecycle, OutOfOrderAndRepeatedCallsLeaveNothingBehind)
{
    engine host;
    PlugInShutdown();  // before there is a link at all
    DMPlugIn_Link_2(host.link());
    PlugInShutdown();  // before start-up
    PlugInCleanup();
    PlugInStartup();
    PlugInStartup();  // the host refuses the second registration; the first one stays
    EXPECT_EQ(script_functions(host), 64u);
    EXPECT_EQ(host.records().errors().size(), 1u);
    PlugInRegisterFloatingWindows();
    PlugInShutdown();
    PlugInShutdown();
    EXPECT_EQ(script_functions(host), 0u);
    PlugInStartup();
    EXPECT_EQ(script_functions(host), 64u);
    PlugInShutdown();
    DMPlugIn_Link_2(nullptr);
    DMPlugIn_Link_2(nullptr);
    EXPECT_EQ(host.report().text(), "");
}

TEST_F(lifecycle, StartUpWithoutAHostReportsAndReturns)
{
    PlugInStartup();
    PlugInRun();
    EXPECT_EQ(PlugInRequestClose(), 1);
    PlugInShutdown();
}

TEST_F(lifecycle, LinkIsCountedOnceAndReplacedInOrder)
{
    struct counting_link
    {
        host_link link;
        int references = 0;
    };
    static host_table table{};
    table.add_reference = [](host_link* link) { ++reinterpret_cast<counting_link*>(link)->references; };
    table.release = [](host_link* link) { --reinterpret_cast<counting_link*>(link)->references; };
    counting_link first{{&table}}, second{{&table}};
    const auto counts = [&] { return std::pair{first.references, second.references}; };
    DMPlugIn_Link_2(&first.link);
    DMPlugIn_Link_2(&first.link);
    EXPECT_EQ(counts(), std::pair(1, 0));
    DMPlugIn_Link_2(&second.link);
    EXPECT_EQ(counts(), std::pair(0, 1));
    DMPlugIn_Link_2(nullptr);
    EXPECT_EQ(counts(), std::pair(0, 0));
    EXPECT_EQ(DMPlugIn_GetVersion(), 2);
}

TEST_F(lifecycle, HeldHandlerAndTagsGoWithTheLink)
{
    engine host;
    DMPlugIn_Link_2(host.link());
    PlugInStartup();
    host.call("ZXSetZentrixHandler", {std::make_shared<script_object>("handler"), memory_tag_group::make_group()});
    DMPlugIn_Link_2(nullptr);  // without a shut-down
    EXPECT_THAT(host.report().references, testing::IsEmpty());
    EXPECT_THAT(host.report().violations, testing::IsEmpty());
    PlugInShutdown();
}

TEST_F(lifecycle, HostVersionIsCheckedAndStartGoesOn)
{
    struct row
    {
        std::optional<std::uint32_t> version;
        bool has_manager, refused;
    };
    for (const row& r : {row{0x0309FFFF, true, true}, row{0x030A0000, true, false}, row{0x04000000, true, false},
                         row{std::nullopt, true, true}, row{0x02FFFFFF, false, true}}) {
        engine host{{.version = r.version, .has_error_manager = r.has_manager}};
        library zentrix{host, entries()};
        const auto wanted =
            r.refused ? std::vector<std::string>{std::string{"28802 "} + too_old} : std::vector<std::string>{};
        EXPECT_EQ(error_texts(host), wanted) << r.version.value_or(0);
        EXPECT_EQ(script_functions(host), 64u);
    }
}

TEST_F(lifecycle, CompanionPackageStandsBesideTheLibraryUnderItsStem)
{
    static const char somewhere_in_this_program = 0;
    for (const bool there : {true, false}) {
        qorv::dm::set_module_handle(const_cast<char*>(&somewhere_in_this_program));
        std::string asked;
        engine host{{.file_exists = [&](const std::string& path) { return asked = path, there; }}};
        library zentrix{host, entries()};
#ifdef _WIN32
        EXPECT_EQ(asked, "");  // a program's address is no module handle there
#else
        EXPECT_THAT(asked, testing::EndsWith("/plugin_tests.gtk"));
        EXPECT_EQ(host.records().dialogs().size(), there ? 0u : 1u);
        for (const auto& dialog : host.records().dialogs()) EXPECT_EQ(dialog.text, companion_missing);
#endif
        EXPECT_EQ(script_functions(host), 64u);
    }
#ifdef _WIN32
    const std::string folder = "C:\\a.b\\";
#else
    const std::string folder = "/a.b/";
#endif
    EXPECT_EQ(qorv::dm::with_extension(folder + "Renamed.dll", ".gtk"), folder + "Renamed.gtk");
    EXPECT_EQ(qorv::dm::with_extension(folder + "Renamed", ".gtk"), folder + "Renamed.gtk");
}

TEST_F(lifecycle, EveryRefusedRegistrationIsReportedAndTakenBack)
{
    for (std::uint64_t k = 1; k <= 64; ++k) {
        engine host;
        host.faults().plan({fault_point::register_function, k, {}, "no room"});
        {
            library zentrix{host, entries()};
            EXPECT_THAT(error_texts(host), ElementsAre("28802 no room"));
            EXPECT_EQ(script_functions(host), k - 1);
        }
        EXPECT_EQ(host.report().text(), "");
    }
}

TEST_F(lifecycle, NothingIsThrownOutOfAnEntry)
{
    engine host;
    DMPlugIn_Link_2(host.link());
    qorv::dm::guarded("A", [] { throw std::runtime_error{"first"}; });
    qorv::dm::guarded("B", [] { throw Gatan::gatan_exception{"second", Gatan::error_code::com_error}; });
    qorv::dm::guarded("C", [] { throw 3; });
    EXPECT_THAT(error_texts(host), ElementsAre("28802 first", "28811 second", HasSubstr("28803 ")));
    for (const char* name : {"A", "B", "C"}) EXPECT_EQ(host.records().traces().at(name).reports, 1u);
    DMPlugIn_Link_2(nullptr);  // the host lives shorter than the plug-in here
}

}  // namespace
