#ifdef _WIN32
#include <windows.h>

#include <shellapi.h>
#endif

#include <algorithm>
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
#include "host/text/encoding.h"

using namespace zentrix::program;

namespace {

constexpr int success = 0;
constexpr int failure = 1;
constexpr int bad_usage = 2;

void add_global_options(CLI::App& app, global_options& global)
{
    app.add_flag("--json", global.json, "Print results as JSON");
    app.add_option("--library", global.library, "Library file (default: next to this program)")->type_name("FILE");
    app.add_option_function<std::string>(
           "--simd", [&](const std::string& word) { global.use_simd = word == "on"; },
           "Use vector instructions (default: on)")
        ->check(CLI::IsMember({"on", "off"}).description(""))
        ->type_name("on|off");
}

/// "functions, call, info, ..."
std::string commands_of(const CLI::App& app)
{
    std::string names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        names += (names.empty() ? "" : ", ") + command->get_name();
    return names;
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

/// Sets the words after the program's name. Those of a worker come from the process that started it.
void set_words(global_options& global, int argc, char** argv)
{
    global.words = utf8_words(argc, argv);
    if (!global.words.empty()) global.words.erase(global.words.begin());
    global.is_worker = global.words == std::vector<std::string>{zentrix::host::worker_argument};
    if (global.is_worker) global.words = zentrix::host::read_words_of_worker();
}

/// In reverse order as the parser takes them.
std::vector<std::string> reversed_words(std::vector<std::string> words)
{
    const auto call = std::find(words.begin(), words.end(), "call");
    std::transform(call, words.end(), call, protect_number);
    std::reverse(words.begin(), words.end());
    return words;
}

int run(int argc, char** argv)
{
    global_options global;
    set_words(global, argc, argv);
    CLI::App app{
        "Removes lens aberrations from electron waves and applies them, unwraps phases, and calls the script functions "
        "of the Zentrix64 library.",
        "zentrix"};
    app.require_subcommand(1);
    app.fallthrough();
    app.allow_windows_style_options(false);  // "/x" is a path
    app.footer("Exit code: 0 success, 1 a file or a function failed, 2 the command line is wrong.");
    add_global_options(app, global);
    add_functions_command(app, global);
    add_call_command(app, global);
    add_info_command(app, global);
    add_correct_command(app, global);
    add_aberrate_command(app, global);
    add_unwrap_command(app, global);
    add_convert_command(app, global);
    add_estimate_command(app, global);
    add_panel_command(app, global);
    try {
        app.parse(reversed_words(global.words));
        return success;
    } catch (const CLI::CallForHelp&) {
        const auto chosen = app.get_subcommands();
        std::cout << (chosen.empty() ? app.help() : chosen.front()->help("zentrix"));
        return success;
    } catch (const CLI::RuntimeError& ended) {  // a command with an exit code of its own
        return ended.get_exit_code();
    } catch (const CLI::ParseError& problem) {
        const auto chosen = app.get_subcommands();
        if (chosen.empty() && dynamic_cast<const CLI::RequiredError*>(&problem) != nullptr)
            std::cerr << "zentrix: expected a command: " << commands_of(app) << "\n";
        else
            std::cerr << "zentrix: " << problem.what() << "\n";
        std::cerr << "Try: zentrix " << (chosen.empty() ? "" : chosen.front()->get_name() + " ") << "--help\n";
        return bad_usage;
    } catch (const usage_error& problem) {
        std::cerr << "zentrix: " << problem.what() << "\n";
        return bad_usage;
    }
}

}  // namespace

int main(int argc, char** argv)
{
    try {
#ifdef _WIN32
        SetConsoleOutputCP(CP_UTF8);
#endif
        zentrix::host::remove_pending_files_on_signals();
        return run(argc, argv);
    } catch (const std::bad_alloc&) {
        std::cerr << "zentrix: there is not enough memory for images of this size\n";
    } catch (const std::exception& problem) {
        std::cerr << "zentrix: " << problem.what() << "\n";
    }
    return failure;
}
