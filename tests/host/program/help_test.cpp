#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "host/files/npy.h"
#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"

using support::workbench;
using testing::HasSubstr;

namespace {

/// The commands that "zentrix help" lists.
std::vector<std::string> commands_of(const workbench& bench)
{
    std::istringstream lines{bench.zentrix("--help").out};
    std::vector<std::string> commands;
    bool are_commands = false;
    for (std::string line; std::getline(lines, line);) {
        if (are_commands && line.starts_with("  ")) commands.push_back(line.substr(2, line.find(' ', 2) - 2));
        are_commands = line == "Subcommands:" || (are_commands && line.starts_with("  "));
    }
    std::erase(commands, "");
    return commands;
}

/// The words of a line for the shell; the only quotes are ".
std::vector<std::string> words_of(const std::string& line)
{
    std::vector<std::string> words;
    std::string word;
    bool quoted = false, has_word = false;
    for (const char c : line + " ")
        if (c == '"') {
            quoted = !quoted;
            has_word = true;
        } else if (c != ' ' || quoted) {
            word += c;
            has_word = true;
        } else if (has_word) {
            words.push_back(std::exchange(word, ""));
            has_word = false;
        }
    return words;
}

/// The examples of a command, as words after "zentrix".
std::vector<std::vector<std::string>> examples_of(const workbench& bench, const std::string& command)
{
    const std::string mark = "  zentrix ";
    std::istringstream lines{bench.zentrix(command + " --help").out};
    std::vector<std::vector<std::string>> examples;
    bool are_examples = false;
    for (std::string line; std::getline(lines, line);) {
        are_examples = line.starts_with("Example") || (are_examples && line.starts_with(mark));
        if (are_examples && line.starts_with(mark)) examples.push_back(words_of(line.substr(mark.size())));
    }
    return examples;
}

/// Files of the names that the examples use.
void write_samples(const workbench& bench)
{
    constexpr int size = 64;
    const auto wave = [](int x, int y) {
        return std::polar(1.0F, 0.3F * static_cast<float>(x) - 0.1F * static_cast<float>(y));
    };
    for (const char* name : {"waves", "series"}) std::filesystem::create_directory(bench / name);
    for (const char* name : {"waves/a.npy", "waves/b.npy"}) support::write_wave(bench / name, size, size, wave);
    support::write_wave(bench / "wave.npy", size, size, [](int x, int y) {  // of atoms, so that it can be estimated
        double phase = 0;
        for (int atom = 0; atom < 12; ++atom) {
            const int dx = (x - 37 * atom + 91) % size, dy = (y - 23 * atom - 11 * (atom * atom % 7) + 7 * size) % size;
            phase +=
                0.5 *
                std::exp(-(std::pow((dx + size) % size - size / 2, 2) + std::pow((dy + size) % size - size / 2, 2)) /
                         6.5);
        }
        return std::polar(1.0F, static_cast<float>(phase));
    });
    support::write_real(bench / "phase.npy", size, size, [&](int x, int y) { return std::arg(wave(x, y)); });
    support::write_real(bench / "in.npy", size, size, [](int x, int y) { return x * y % 7; });
    support::write_real(bench / "spot.npy", size, size,
                        [](int x, int y) { return std::exp(-std::hypot(x - 12, y - 15)); });
    support::write_real(bench / "mask.npy", size, size, [](int x, int) { return x < 9; });
    for (const char* name : {"holo.dm3", "vacuum.dm3", "series/a.dm3"})  // the first bytes decide on the format
        support::write_real(bench / name, size, size,
                            [](int x, int) { return 9 + std::cos(1.5708F * static_cast<float>(x)); });
    std::filesystem::create_directory(bench / "data");
    bench.folder().write("data/a.raw", std::string(512 * 512 * 4, '\0'));
    support::write_real(bench / "data/a.npy", size, size, [](int x, int y) { return x + y; });
}

}  // namespace

TEST(Help, EveryExampleOfEveryCommandRuns)
{
    const workbench bench;
    write_samples(bench);
    const auto commands = commands_of(bench);
    EXPECT_THAT(commands, testing::IsSupersetOf({"info", "correct", "unwrap", "fft", "call", "help"}));
    for (const std::string& command : commands) {
        const auto examples = examples_of(bench, command);
        EXPECT_FALSE(examples.empty()) << command;
        for (const auto& words : examples) {
            if (command == "panel") continue;  // opens windows
            const auto done = bench.zentrix(words);
            EXPECT_EQ(done.code, 0) << testing::PrintToString(words) << done.err;
        }
    }
}

#ifndef _WIN32

TEST(Help, TheManualPageHasEveryCommandAndNoWarning)
{
    const workbench bench;
    const std::string page = bench.zentrix("man").out;
    for (const std::string& command : commands_of(bench))
        EXPECT_THAT(page, HasSubstr("\\fBzentrix " + command + "\\fR"));
    EXPECT_THAT(page, HasSubstr("\\fB\\-\\-C1\\fR \\fINUMBER\\fR\n"));
    EXPECT_TRUE(std::ranges::all_of(page, [](char c) { return c == '\n' || (c >= ' ' && c < 127); }));
    EXPECT_THAT(page, HasSubstr("\n.TP\n3\n\\fBzentrix estimate\\fR determined no coefficient"));
    bench.folder().write("zentrix.1", page);
    if (bench.run("groff", {"--version"}).code != 0) GTEST_SKIP() << "groff is not installed";
    const auto formatted = bench.run("groff", {"-man", "-ww", "-Tascii", "zentrix.1"});
    EXPECT_EQ(formatted.code, 0);
    EXPECT_EQ(formatted.err, "");
}

TEST(Help, BashCompletesCommandsOptionsChoicesAndFunctions)
{
    const workbench bench;
    bench.folder().write("completion", bench.zentrix("completion bash").out);
    bench.folder().write("test",
                         std::string{"zentrix() { \""} + ZENTRIX_PROGRAM +
                             "\" \"$@\"; }\n"
                             ". ./completion\n"
                             "complete -p zentrix\n"
                             "for line in 'zentrix unw' 'zentrix --ver' 'zentrix help fun' 'zentrix correct --C'"
                             " 'zentrix correct w.npy --show ph' 'zentrix correct --show = im'"
                             " 'zentrix fft --simd o' 'zentrix call ZXMedianF' 'zentrix correct --kv 3'"
                             " 'zentrix correct -o o'; do\n"
                             "    COMP_WORDS=($line) COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                             "    _zentrix; echo \"${COMPREPLY[*]}\"\n"
                             "done\n");
    const auto done = bench.run("bash", {"test"});
    EXPECT_EQ(done.err, "");
    EXPECT_EQ(done.out,
              "complete -o default -F _zentrix zentrix\n"
              "unwrap\n--version\nfunctions\n--C1 --C3 --C5\nphase\nimaginary\non off\nZXMedianFilter\n\n\n");
}

TEST(Help, ZshLoadsItsCompletion)
{
    const workbench bench;
    bench.folder().write("_zentrix", bench.zentrix("completion zsh").out);
    if (bench.run("zsh", {"-c", "exit"}).code != 0) GTEST_SKIP() << "zsh is not installed";
    const auto done = bench.run(
        "zsh", {"-f", "-c", "autoload -Uz compinit && compinit -u -d ./dump && . ./_zentrix && whence -w _zentrix"});
    EXPECT_EQ(done.text(), "0 _zentrix: function\n");
}

#endif
