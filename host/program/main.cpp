#ifdef _WIN32
#include <windows.h>

#include <shellapi.h>
#endif

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <exception>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "host/batch/file_runner.h"
#include "host/batch/worker_process.h"
#include "host/files/pending_file.h"
#include "host/program/argument.h"
#include "host/program/commands.h"
#include "host/program/help/completion.h"
#include "host/program/help/man_page.h"
#include "host/program/help/option_facts.h"
#include "host/program/help/usage_problem.h"
#include "host/program/help/version.h"
#include "host/program/json.h"
#include "host/text/encoding.h"

using namespace zentrix::program;

namespace {

constexpr int success = 0;
constexpr int failure = 1;
constexpr int bad_usage = 2;

void add_global_options(CLI::App& app, global_options& global)
{
    app.add_flag("--json", global.json, "Print results as JSON, and errors, too");
    app.add_option("--library", global.library, "Library file (default: next to this program)")->type_name("FILE");
    app.add_option_function<std::string>(
           "--simd", [&](const std::string& word) { global.use_simd = word == "on"; },
           "Use vector instructions (default: on)")
        ->check(CLI::IsMember({"on", "off"}).description(""))
        ->type_name("on|off");
    app.add_flag_callback(
        "-V,--version", [] { throw CLI::CallForVersion{}; }, "Print the versions of program, compiler and libraries");
}

/// The words of the command line in UTF-8, with the program's name.
std::vector<std::string> utf8_words(int argc, char** argv)
{
#ifdef _WIN32
    // Those in argv are in the system's code page, which cannot hold every file name.
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&LocalFree)> wide{CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree};
    if (wide) {
        std::vector<std::string> words;
        for (int i = 0; i < count; ++i) words.push_back(zentrix::host::narrow(wide.get()[i]));
        return words;
    }
#endif
    return {argv, argv + argc};
}

/// "help correct" as "correct --help".
std::vector<std::string> without_help_command(std::vector<std::string> words)
{
    const auto at = words.begin() + static_cast<std::ptrdiff_t>(index_of_command(words));
    if (at == words.end() || *at != "help") return words;
    words.erase(at);
    words.push_back("--help");
    return words;
}

/// Sets the words after the program's name. Those of a worker come from the process that started it.
void set_words(global_options& global, int argc, char** argv)
{
    global.words = utf8_words(argc, argv);
    if (!global.words.empty()) global.words.erase(global.words.begin());
    global.is_worker = global.words == std::vector<std::string>{zentrix::host::worker_argument};
    global.words = global.is_worker ? zentrix::host::read_words_of_worker() : without_help_command(global.words);
}

/// In reverse order as the parser takes them.
std::vector<std::string> for_parser(std::vector<std::string> words)
{
    const auto call = std::find(words.begin(), words.end(), "call");
    std::transform(call, words.end(), call, protect_number);
    std::reverse(words.begin(), words.end());
    return words;
}

/// Known before the words are parsed, because the parser's errors are printed as JSON, too.
bool wants_json(const global_options& global)
{
    const auto end = std::find(global.words.begin(), global.words.end(), "--");
    return !global.is_worker && std::find(global.words.begin(), end, "--json") != end;
}

/// Prints an error on standard error, and as JSON on standard output, where a program expects the result.
/// Returns `code`
int fail(int code, const std::string& message, const global_options& global)
{
    std::cerr << "zentrix: " << message << "\n";
    if (wants_json(global))
        print({{"error",
                {{"kind", code == bad_usage ? "usage" : "failure"}, {"message", message}, {"exit_code", code}}}});
    return code;
}

int print_help(const CLI::App& app, const global_options& global, const CLI::CallForHelp& call)
{
    const auto chosen = app.get_subcommands();
    if (chosen.empty() && index_of_command(global.words) < global.words.size())
        return fail(bad_usage, explain(app, global.words, call), global);
    std::cout << (chosen.empty() ? app.help() : chosen.front()->help("zentrix"));
    return success;
}

int print_version(const global_options& global)
{
    const json facts = version_facts(global.library);
    if (global.json)
        print(facts);
    else
        std::cout << version_text(facts);
    return success;
}

void add_commands(CLI::App& app, const global_options& global)
{
    add_info_command(app, global);
    add_correct_command(app, global);
    add_aberrate_command(app, global);
    add_unwrap_command(app, global);
    add_hologram_command(app, global);
    add_ctf_command(app, global);
    add_fft_commands(app, global);
    add_convert_command(app, global);
    add_estimate_command(app, global);
    add_call_command(app, global);
    add_functions_command(app, global);
    add_panel_command(app, global);
    add_help_command(app);
    add_man_command(app);
    add_completion_command(app);
}

int run(global_options& global)
{
    CLI::App app{
        "Removes lens aberrations from electron waves, applies and estimates them, reconstructs holograms, unwraps "
        "phases, transforms, and calls the script functions of the Zentrix64 library.",
        "zentrix"};
    app.require_subcommand(1);
    app.fallthrough();
    app.allow_windows_style_options(false);  // "/x" is a path
    set_value_names(app);
    add_global_options(app, global);
    add_commands(app, global);
    app.footer(  // after the commands, which would inherit it
        "Examples:\n  zentrix info wave.npy\n  zentrix help correct\n\n"
        "Exit code: 0 success, 1 a file or a function failed, 2 the command line is wrong,\n"
        "3 zentrix estimate determined no coefficient.");
    try {
        if (const std::string problem = single_hyphen(app, global.words); !problem.empty()) throw usage_error{problem};
        app.parse(for_parser(global.words));
        return success;
    } catch (const CLI::CallForHelp& call) {
        return print_help(app, global, call);
    } catch (const CLI::CallForVersion&) {
        return print_version(global);
    } catch (const CLI::RuntimeError& ended) {  // a command with an exit code of its own
        return ended.get_exit_code();
    } catch (const CLI::ParseError& problem) {
        fail(bad_usage, explain(app, global.words, problem), global);
        const auto chosen = app.get_subcommands();
        std::cerr << "Try: zentrix " << (chosen.empty() ? "" : chosen.front()->get_name() + " ") << "--help\n";
        return bad_usage;
    } catch (const usage_error& problem) {
        return fail(bad_usage, problem.what(), global);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    global_options global;
    try {
#ifdef _WIN32
        SetConsoleOutputCP(CP_UTF8);
#endif
        zentrix::host::remove_pending_files_on_signals();
        set_words(global, argc, argv);
        const int code = run(global);
        if (std::cout.flush() || code != success) return code;
        return fail(failure, "standard output: not everything could be written", global);
    } catch (const std::bad_alloc&) {
        return fail(failure, "there is not enough memory for images of this size", global);
    } catch (const std::exception& problem) {
        return fail(failure, problem.what(), global);
    }
}
