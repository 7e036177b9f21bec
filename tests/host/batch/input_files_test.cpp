#include <gtest/gtest.h>

#include "host/batch/input_files.h"
#include "host/batch/output_files.h"
#include "host/batch/wildcard.h"
#include "host/files/file_error.h"
#include "host/text/system_path.h"
#include "tests/support/scratch.h"

using zentrix::host::utf8_path;
using names = std::vector<std::string>;

namespace {

bool is_npy(const std::filesystem::path& file) { return file.extension() == ".npy"; }

/// The names of the tasks' files, or the message of the error.
template <class F>
names or_error(F call)
{
    try {
        return call();
    } catch (const zentrix::host::file_error& problem) {
        return {problem.what()};
    }
}

}  // namespace

TEST(Wildcard, FitsWholeNames)
{
    const struct
    {
        const char *pattern, *fits, *does_not_fit;
    } rows[] = {
        {"a*.npy", "a.npy", "ba.npy"},
        {"*a*b*", "xaaxbb", "xbxa"},
        {"?.npy", "\u00e9.npy", "ab.npy"},
        {"w[0-3].npy", "w2.npy", "w4.npy"},
        {"w[!0-3]", "w4", "w0"},
        {"[]x]", "]", "a"},
        {"a[b", "a[b", "ab"},
        {"*", "a", ".hidden"},
        {".*", ".hidden", "a"},
        {"*.npy", "a.npy.npy", "a.npy.x"},
        {"", "", "a"},
        {"[a-]*", "-1", "b"},
    };
    for (const auto& [pattern, fits, does_not_fit] : rows) {
        EXPECT_TRUE(zentrix::host::fits_wildcard(pattern, fits)) << pattern;
        EXPECT_FALSE(zentrix::host::fits_wildcard(pattern, does_not_fit)) << pattern;
    }
}

TEST(InputFiles, ComeFromNamesFoldersAndPatterns)
{
    const support::scratch_folder scratch;
    const std::string folder = utf8_path(scratch / "");
    std::filesystem::create_directories(scratch / "d" / "inner.npy");
    std::filesystem::create_directory(scratch / "empty");
    for (const char* file : {"d/b.npy", "d/a.npy", "d/a.json", "d/.a.npy", "x[1].npy", "x1.npy"})
        scratch.write(file, "");
    const auto inputs = [&](names words) {
        for (auto& word : words) word = folder + word;
        auto found = or_error([&] { return zentrix::host::input_files(words, is_npy); });
        for (auto& file : found)
            if (file.starts_with(folder))
                file = utf8_path(zentrix::host::system_path(file.substr(folder.size())).generic_string());
        return found;
    };
    EXPECT_EQ(inputs({"d"}), (names{"d/a.npy", "d/b.npy"}));
    EXPECT_EQ(inputs({"d/b.npy", "d/", "d/*.npy"}), (names{"d/b.npy", "d/a.npy"}));
    EXPECT_EQ(inputs({"d/a*"}), (names{"d/a.json", "d/a.npy"}));
    EXPECT_EQ(inputs({"x[1].npy"}), names{"x[1].npy"});  // a file of this name is preferred
    EXPECT_EQ(inputs({"x?.npy", "missing.npy"}), (names{"x1.npy", "missing.npy"}));
    EXPECT_EQ(inputs({"q*"}), names{"q*: no file has such a name"});
    EXPECT_EQ(inputs({"empty"}), names{"empty: contains no image files"});
}

TEST(OutputFiles, KeepTheNamesOfInputsAndNeverReplaceThem)
{
    const support::scratch_folder scratch;
    const std::string out = utf8_path(scratch / "out") + "/", in = utf8_path(scratch / "a.npy");
    scratch.write("a.npy", "");
    const auto can_write = [](const std::string& ending) { return ending == ".npy" || ending == ".mrc"; };
    const auto plan = [&](const names& inputs, const std::string& to, const std::string& suffix,
                          const std::string& ending) {
        return or_error([&] {
            names outputs;
            for (const auto& task : zentrix::host::plan_outputs(inputs, {{to, ending, suffix, can_write}}))
                outputs.push_back(task.outputs.at(0));
            return outputs;
        });
    };
    EXPECT_EQ(plan({"d/a.npy", "b.MRC", "c.dm4", "d.e.npy"}, out, "", ""),
              (names{out + "a.npy", out + "b.mrc", out + "c.npy", out + "d.e.npy"}));
    EXPECT_EQ(plan({"d/a.npy"}, out, "_c", ".png"), names{out + "a_c.png"});
    EXPECT_EQ(plan({"d/a.npy"}, "x.npy", "_c", ".png"), names{"x.npy"});
    EXPECT_EQ(plan({"d/a.npy"}, "", "", ""), names{""});
    EXPECT_TRUE(plan({in}, utf8_path(scratch / "."), "", "")
                    .at(0)
                    .ends_with("a.npy: is an input and cannot be the result, too"));
    for (const names& clash : {names{"d/a.npy", "e/a.npy"}, {"d/a.npy", "d/a.mrc"}, {"d/a.npy", "d/A.npy"}}) {
        const std::string message = "d/a.npy: its result and that of " + clash[1] + " would both be called ";
        EXPECT_EQ(plan(clash, out, "", "").at(0).substr(0, message.size()), message);
    }
    EXPECT_FALSE(std::filesystem::exists(scratch / "out"));  // nothing is created
}
