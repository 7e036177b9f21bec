#include "host/batch/output_files.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <system_error>

#include "host/files/file_error.h"
#include "host/files/pending_file.h"
#include "host/text/system_path.h"

namespace zentrix::host {

namespace fs = std::filesystem;

namespace {

/// The file with links followed, to compare names of one file.
fs::path resolved(const std::string& file)
{
    std::error_code failed;
    const fs::path absolute = fs::absolute(system_path(file), failed);
    const fs::path path = fs::weakly_canonical(absolute, failed);
    return failed ? absolute.lexically_normal() : path;
}

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

[[noreturn]] void refuse_input(const std::string& output)
{
    throw file_error{system_path(output), "is an input and cannot be the result, too"};
}

[[noreturn]] void refuse_second(const std::string& output)
{
    throw file_error{system_path(output), "two results would have this name"};
}

std::string output_in_folder(const std::string& input, const destination& where)
{
    const fs::path name = system_path(input).filename();
    const std::string own = lower(utf8_path(name.extension()));
    std::string ending = where.ending;
    if (ending.empty()) ending = where.can_be_written && where.can_be_written(own) ? own : ".npy";
    return utf8_path(system_path(where.to) / system_path(utf8_path(name.stem()) + where.suffix + ending));
}

/// Files that would be written, by what has to be unique.
class taken_names
{
  public:
    void add(const std::string& output, const std::string& input)
    {
        const auto [known, is_new] = from_.emplace(lower(utf8_path(resolved(output).replace_extension())), input);
        if (!is_new && known->second != input)
            throw file_error{system_path(known->second),
                             "its result and that of " + input + " would both be called " + output};
    }

  private:
    std::map<std::string, std::string> from_;
};

}  // namespace

bool is_folder(const std::string& to)
{
    const fs::path path = system_path(to);
    std::error_code ignored;
    return !to.empty() && (!path.has_filename() || fs::is_directory(path, ignored));
}

std::vector<file_task> plan_outputs(const std::vector<std::string>& inputs,
                                    const std::vector<destination>& destinations)
{
    std::vector<file_task> tasks;
    for (const std::string& input : inputs) tasks.push_back({input, {}});
    std::set<fs::path> read, written;
    for (const std::string& input : inputs) read.insert(resolved(input));
    for (const destination& where : destinations) {
        taken_names taken;
        const bool to_folder = is_folder(where.to);
        for (file_task& task : tasks) {
            task.outputs.push_back(to_folder ? output_in_folder(task.input, where) : where.to);
            const std::string& output = task.outputs.back();
            if (output.empty()) continue;
            if (read.contains(resolved(output))) refuse_input(output);
            taken.add(output, task.input);
            if (!written.insert(resolved(output)).second) refuse_second(output);
        }
    }
    return tasks;
}

void require_own_names(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs)
{
    std::set<fs::path> read, written;
    for (const std::string& input : inputs)
        if (!input.empty()) read.insert(resolved(input));
    for (const std::string& output : outputs) {
        if (output.empty()) continue;
        if (read.contains(resolved(output))) refuse_input(output);
        if (!written.insert(resolved(output)).second) refuse_second(output);
    }
}

void require_folder(const std::string& output)
{
    const fs::path folder = system_path(output).parent_path();
    std::error_code ignored;
    if (!folder.empty() && !fs::is_directory(folder, ignored))
        throw file_error{system_path(output), "cannot be written: there is no folder " + utf8_path(folder)};
}

void require_places(const std::vector<std::string>& outputs)
{
    for (const std::string& output : outputs)
        if (!output.empty()) const pending_file is_possible{system_path(output)};
}

void create_folders(const std::vector<destination>& destinations)
{
    for (const destination& where : destinations) {
        if (!is_folder(where.to)) continue;
        std::error_code failed;
        fs::create_directories(system_path(where.to), failed);
        if (failed) throw file_error{system_path(where.to), "cannot be created: " + failed.message()};
    }
}

}  // namespace zentrix::host
