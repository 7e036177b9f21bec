#include "host/program/result_record.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "host/engine/library_search.h"
#include "host/program/describe.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace fs = std::filesystem;

namespace {

/// Options that name files or hold for a batch as a whole; the number of words after each.
struct batch_option
{
    std::string_view name;
    int values;
};
constexpr batch_option batch_options[] = {{"-o", 1},     {"--output", 1}, {"--png", 1},    {"--cuts", 1},
                                          {"--wave", 1}, {"--jobs", 1},   {"--suffix", 1}, {"--continue", 0}};

/// Options whose value is a file that may be an input, too.
constexpr std::string_view options_of_files[] = {"--reference", "--mask", "--params", "--limits-of"};

/// How many words an option of a batch takes, its values included; 0 for all other words.
int words_of_batch_option(const std::string& word)
{
    for (const auto& [name, values] : batch_options) {
        if (word == name) return 1 + values;
        if (values > 0 && word.starts_with(name) && (name.size() == 2 || word[name.size()] == '=')) return 1;
    }
    return 0;
}

}  // namespace

std::vector<fs::path> results_of(const host::file_task& task)
{
    std::vector<fs::path> results;
    for (const std::string& output : task.outputs)
        if (!output.empty()) results.push_back(host::system_path(output));
    return results;
}

std::vector<std::string> command_for(const host::file_task& task, const many_files& files,
                                     const std::vector<std::string>& outputs, const global_options& global)
{
    std::vector<std::string> command{"zentrix"};
    for (std::size_t i = 0; i < global.words.size(); ++i) {
        const std::string& word = global.words[i];
        if (const int count = words_of_batch_option(word); count > 0)
            i += static_cast<std::size_t>(count) - 1;
        else if (std::ranges::find(files.inputs, word) == files.inputs.end() ||
                 (i > 0 && std::ranges::find(options_of_files, global.words[i - 1]) != std::end(options_of_files)))
            command.push_back(word);
    }
    command.push_back(task.input);
    for (std::size_t i = 0; i < task.outputs.size(); ++i) {
        if (task.outputs[i].empty()) continue;
        command.push_back(outputs.at(i));
        command.push_back(task.outputs[i]);
    }
    return command;
}

const json& program_with_library(const global_options& global)
{
    static const json facts = host::program_facts(
        host::system_path(global.library.empty() ? host::find_library_file() : global.library), global.use_simd);
    return facts;  // the options are the same for all tasks of a process
}

void finish_with_record(const fs::path& record, const host::provenance& made,
                        const std::vector<host::recorded_result>& results)
{
    try {
        host::write_record(record, made, results);
    } catch (...) {
        std::error_code ignored;
        fs::remove(record, ignored);
        throw;
    }
}

host::file_outcome done_before(const host::file_task& task)
{
    host::file_outcome outcome;
    outcome.state = host::file_state::skipped;
    outcome.text = task.input + " -> " + task.outputs.at(0) + ": done before\n";
    outcome.facts = {{"result", {{"file", task.outputs.at(0)}}}, {"done_before", true}};
    return outcome;
}

}  // namespace zentrix::program
