#include "host/program/many_files.h"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "host/batch/input_files.h"
#include "host/batch/progress.h"
#include "host/batch/worker_process.h"
#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/parameters/record.h"
#include "host/program/json.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

namespace fs = std::filesystem;

bool can_be_written(const std::string& ending, host::element_class meaning)
{
    try {
        host::require_writable_kind(host::system_path("x" + ending), meaning);
    } catch (const host::file_error&) {
        return false;
    }
    return ending != ".png";  // a picture does not keep the values
}

/// Of the files in a folder.
bool is_input(const fs::path& file)
{
    return host::has_readable_extension(file) && !host::is_made_from_neighbour(file);
}

std::string count_of(std::size_t files) { return std::to_string(files) + (files == 1 ? " file" : " files"); }

/// Shows the outcomes of several files as they come.
class report
{
  public:
    report(std::size_t files, bool prints_values, bool in_json)
        : files_{files},
          in_json_{in_json},
          draws_bar_{!in_json && !prints_values && host::is_terminal_for_bar()},
          progress_{files, draws_bar_}
    {}

    void add(const host::file_task& task, const host::file_outcome& outcome)
    {
        progress_.print_above(outcome.notes);
        if (outcome.state == host::file_state::failed)
            add_failure(task, outcome.text);
        else if (in_json_)
            print_json(task, outcome.facts);
        else if (!draws_bar_ || !host::output_is_terminal())
            progress_.print_output(outcome.text);
        if (outcome.state == host::file_state::skipped) ++skipped_;
        progress_.count(outcome.state == host::file_state::failed);
    }

    /// Throws  std::runtime_error if files failed
    void finish()
    {
        const double seconds = progress_.elapsed().count();
        const std::size_t done = files_ - skipped_ - failures_.size();
        const double rate = static_cast<double>(done) / std::max(seconds, 1e-3);
        std::string text =
            "zentrix: " + count_of(files_) + " in " + host::number_text(std::round(seconds * 100) / 100) + " s";
        if (done > 0) text += ", " + host::number_text(std::round(rate * 10) / 10) + " per second";
        if (skipped_ > 0) text += ", " + std::to_string(skipped_) + " done before";
        if (!in_json_) progress_.print_above(text + "\n");
        if (failures_.empty()) return;
        std::string list = "zentrix: failed:\n";
        for (const std::string& failure : failures_) list += "  " + failure + "\n";
        if (!in_json_) progress_.print_above(list);
        throw std::runtime_error{std::to_string(failures_.size()) + " of " + count_of(files_) + " failed"};
    }

  private:
    void add_failure(const host::file_task& task, const std::string& reason)
    {
        // Most reasons start with the name of the file.
        const std::string failure = reason.find(task.input) == std::string::npos ? task.input + ": " + reason : reason;
        failures_.push_back(failure);
        if (in_json_)
            print_json(task, {{"error", {{"kind", "failure"}, {"message", reason}}}});
        else
            progress_.print_above("zentrix: " + failure + "\n");
    }

    void print_json(const host::file_task& task, const json& facts)
    {
        json line{{"input", task.input}};
        line.update(facts);
        progress_.print_output(line.dump(-1, ' ', false, json::error_handler_t::replace) + "\n");
    }

    std::size_t files_, skipped_ = 0;
    bool in_json_, draws_bar_;
    host::progress progress_;
    std::vector<std::string> failures_;
};

/// Without the files that the command reads for each input, unless they are named themselves.
std::vector<std::string> without_others(const many_files& files, std::vector<std::string> inputs)
{
    std::erase_if(inputs, [&](const std::string& input) {
        return std::ranges::find(files.inputs, input) == files.inputs.end() &&
               std::ranges::any_of(files.others, [&](const std::string& other) {
                   std::error_code ignored;
                   return fs::equivalent(host::system_path(input), host::system_path(other), ignored);
               });
    });
    if (inputs.empty()) throw std::runtime_error{"there is no input but " + files.others.front()};
    return inputs;
}

/// "--A1 14 35" would take 35 for a file.
void refuse_numbers(const std::vector<std::string>& words)
{
    for (const std::string& word : words)
        if (host::parse_number<double>(word) && !fs::exists(host::system_path(word)))
            throw usage_error{"unexpected argument \"" + word +
                              "\": an angle follows as in 14@35, a second number as in "
                              "1,2"};
}

}  // namespace

host::destination destination_of(const std::string& output, const many_files& files, host::element_class meaning)
{
    const std::size_t dot = files.suffix.rfind('.');
    const bool has_ending = dot != std::string::npos;
    if (files.suffix.find_first_of("/\\") != std::string::npos)
        throw usage_error{"--suffix is a part of a file's name, not \"" + files.suffix + "\""};
    return {output, has_ending ? files.suffix.substr(dot) : "", files.suffix.substr(0, dot),
            [meaning](const std::string& ending) { return can_be_written(ending, meaning); }};
}

host::destination destination_of_pictures(const std::string& output, const many_files& files)
{
    host::destination pictures = destination_of(output, files);
    pictures.ending = ".png";
    return pictures;
}

std::string example_of(const host::destination& where)
{
    if (where.to.empty() || !host::is_folder(where.to)) return where.to;
    return "result" + (where.ending.empty() ? ".npy" : where.ending);
}

void print_outcome(const host::file_outcome& outcome, const global_options& global)
{
    std::cerr << outcome.notes;
    if (global.json)
        print(outcome.facts);
    else
        std::cout << outcome.text;
}

void process_files(const many_files& files, const std::vector<host::destination>& destinations,
                   const global_options& global, const host::file_process& process,
                   const std::function<void()>& prepare)
{
    if (global.is_worker) {
        host::end_with_parent();
        return host::serve_tasks(process);
    }
    refuse_numbers(files.inputs);
    const auto inputs = without_others(
        files, host::input_files(files.inputs, destinations.empty() ? host::has_readable_extension : is_input));
    const bool is_single = inputs.size() == 1;
    for (const host::destination& where : destinations)
        if (!is_single && !where.to.empty() && !host::is_folder(where.to))
            throw usage_error{where.to + ": several results need a folder: end its name with /"};
    if (!files.suffix.empty() &&
        std::ranges::none_of(destinations, [](const auto& where) { return host::is_folder(where.to); }))
        throw usage_error{"--suffix is for results in a folder, such as -o results/"};
    const auto tasks = host::plan_outputs(inputs, destinations);
    prepare();
    host::create_folders(destinations);
    if (is_single) return print_outcome(process(tasks.front()), global);

    report shown{tasks.size(), files.prints_values, global.json};
    const auto listen = [&](const host::file_task& task, const host::file_outcome& outcome) {
        shown.add(task, outcome);
    };
    if (files.jobs == 1)
        host::process_here(tasks, process, listen);
    else
        host::process_in_workers(tasks, files.jobs, global.words, listen);
    shown.finish();
}

}  // namespace zentrix::program
