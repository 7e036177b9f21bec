#include "host/program/result_record.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "host/engine/library_search.h"
#include "host/files/file_error.h"
#include "host/parameters/json_file.h"
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
constexpr batch_option batch_options[] = {{"-o", 1},     {"--output", 1}, {"--png", 1},     {"--cuts", 1},
                                          {"--jobs", 1}, {"--suffix", 1}, {"--continue", 0}};

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
        else if (std::ranges::find(files.inputs, word) == files.inputs.end())
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

bool is_done(const std::vector<fs::path>& results, const host::provenance& made)
{
    if (!host::is_recorded(results, made)) return false;
    return std::ranges::any_of(host::places_of_record(results.at(0)), [&](const fs::path& record) {
        std::error_code missing;
        const auto recorded = fs::last_write_time(record, missing);
        return !missing && std::ranges::all_of(results, [&](const fs::path& result) {
            const auto written = fs::last_write_time(result, missing);
            return !missing && written <= recorded;
        });
    });
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

bool is_made_from_neighbour(const fs::path& file)
{
    return std::ranges::any_of(host::places_of_record(file), [&](const fs::path& place) {
        std::error_code ignored;
        if (!fs::is_regular_file(place, ignored)) return false;
        try {
            const json record = host::read_json(place);
            if (!record.is_object() || !record.contains("program") || !record.contains("input")) return false;
            const json& input = record["input"].is_array() ? record["input"].at(0) : record["input"];
            const fs::path name = host::system_path(input.at("name").get<std::string>()).filename();
            const fs::path neighbour = fs::path{file}.replace_filename(name);
            return name != file.filename() && fs::is_regular_file(neighbour, ignored) &&
                   host::fingerprint_of(neighbour).digest == input.at("digest").get<std::string>();
        } catch (const std::exception&) {  // it is no record
            return false;
        }
    });
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
