#include <gmock/gmock.h>

#ifndef _WIN32
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>
#endif

#include "tests/script/script_host.h"

// What the library registers, and the small functions that need no image.
namespace {

using namespace script;

TEST(Registration, HasEveryPrototypeInOrder)
{
    script_host script;
    std::string all;
    for (const std::string& prototype : script.host().functions().prototypes(origin::library)) all += prototype + '\n';
    // Tests of the Python package compare the list itself, which its stubs contain.
    EXPECT_EQ(digest(all), 0x6422ecbe1889741c) << all;
}

TEST(Utilities, DataTypeCodes)
{
    script_host script;
    const integer codes[] = {-1, 9, 6, 1, 10, 7, 11, 2, 12, 3, 13};
    for (integer index = -1; index <= 9; ++index)
        EXPECT_EQ(script.call("ZXToDMDataType", {index}), script_value{codes[index + 1]});
    for (integer index : {-2, 10, 2147483647})
        EXPECT_EQ(script.failure("ZXToDMDataType", {index}), "Unknown data type.");
}

TEST(Utilities, ThreadCounts)
{
    script_host script;
    const auto most_after = [&](const script_value& count) {
        script.call("ZXSetNumThreads", {count});
        return std::get<integer>(script.call("ZXGetMaxThreads", {}));
    };
    const script_value before = script.call("ZXGetMaxThreads", {});
    EXPECT_EQ(most_after(integer{4}), 4);
    EXPECT_EQ(script.call("ZXGetNumThreads", {}), script_value{integer{1}});
    EXPECT_EQ(most_after(integer{-3}), 1);
    EXPECT_EQ(most_after(integer{2000}), 1024);
    most_after(before);
    const auto traces = script.host().records().traces();
    EXPECT_EQ(traces.at("SetNumThreadsDM").reports, 4u);
    EXPECT_EQ(traces.at("GetNumThreadsDM").reports, 1u);
    EXPECT_EQ(traces.at("GetMaxThreadsDM").reports, 5u);
}

TEST(Utilities, SystemServicesRunAndNeverReport)
{
    script_host script;
    const std::string file = "exec_wait_test.txt";
#ifdef _WIN32
    script.call("ZXExecWait", {"cmd /c echo done> " + file});
    const auto home = std::get<std::string>(script.call("ZXGetSpecialDirectory", {integer{0x28}, integer{0}}));
    EXPECT_TRUE(home.ends_with('\\')) << home;
#else
    script.call("ZXExecWait", {"echo done > " + file});
#endif
    EXPECT_EQ(std::remove(file.c_str()), 0) << "it was written";
    for (const char* function : {"ZXExec", "ZXExecWait"})
        EXPECT_EQ(script.failure(function, {"no-such-program-anywhere --now"}), "");
    EXPECT_EQ(script.call("ZXGetSpecialDirectory", {integer{0x7777}, integer{0}}), script_value{""});
}

#ifndef _WIN32
/// Changes an environment variable during a test.
class changed_variable
{
  public:
    changed_variable(const char* name, const std::string& value) : name_{name}
    {
        if (const char* old = std::getenv(name)) before_ = old;
        setenv(name, value.c_str(), 1);
    }
    ~changed_variable() { setenv(name_, before_.c_str(), 1); }

  private:
    const char* name_;
    std::string before_;
};

TEST(Utilities, UserFoldersAreFoundAndCreated)
{
    script_host script;
    const auto home = std::filesystem::absolute("special_directory_home");
    std::filesystem::remove_all(home);
    std::filesystem::create_directories(home / "settings");
    const changed_variable at_home{"HOME", home}, settings{"XDG_CONFIG_HOME", home / "settings"};
    std::ofstream{home / "settings/user-dirs.dirs"} << "# made by hand\n\nXDG_DOCUMENTS_DIR=\"$HOME/My papers\"\n"
                                                    << "XDG_MUSIC_DIR=\"" << (home / "tunes").string() << "\"\n";
    for (const auto& [type, name] :
         {std::pair{0x05, "My papers/"}, {0x0d, "tunes/"}, {0x27, "Pictures/"}, {0x1a, "settings/"}, {0x28, ""}}) {
        const script_value path{(home / name).string()};
        const auto folder = [&](integer create) {
            return script.call("ZXGetSpecialDirectory", {integer{type}, create});
        };
        EXPECT_EQ(folder(0), type == 0x1a || type == 0x28 ? path : script_value{""});
        EXPECT_EQ(folder(1), path);
        EXPECT_EQ(folder(0), path);
    }
    const integer create_templates = 0x8015;
    EXPECT_EQ(script.call("ZXGetSpecialDirectory", {create_templates, integer{0}}),
              script_value{(home / "Templates/").string()});
    std::filesystem::remove_all(home);
}

TEST(Utilities, ExecLeavesNoProcessToCollect)
{
    script_host script;
    const std::string file = "exec_test.txt";
    std::remove(file.c_str());
    script.call("ZXExec", {"sleep 0.2; echo done > " + file});
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    for (int k = 0; k < 500 && !std::filesystem::exists(file); ++k)
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
    EXPECT_EQ(std::remove(file.c_str()), 0);
}
#endif

TEST(CoreFunctions, WithoutAPanelQueriesReturnZero)
{
    script_host script;
    script.call("ZXZentrixPanelUpdate", {});
    EXPECT_EQ(script.call("ZXIsPaletteOpen", {}), script_value{integer{0}});
    EXPECT_EQ(script.call("ZXIsWindowVisible", {}), script_value{integer{0}});
}

TEST(CoreFunctions, KeepEarlierHandlersAndNothingElse)
{
    engine host;
    library zentrix{host, ZENTRIX_LIBRARY_FILE};
    const auto set = [&](const char* name) {
        auto tags = memory_tag_group::make_group();
        tags->set("name", std::string{name});
        host.call("ZXSetZentrixHandler", {script_value{std::make_shared<script_object>(name)}, script_value{tags}});
    };
    set("first");
    set("second");
    zentrix.close();
    const auto report = host.report();
    EXPECT_THAT(report.references, testing::UnorderedElementsAre(testing::HasSubstr("script object \"first\""),
                                                                 testing::HasSubstr("tag group")));
    EXPECT_TRUE(report.locks.empty() && report.others.empty() && report.violations.empty());
}

}  // namespace
