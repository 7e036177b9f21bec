#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// The work on one of many files, and what came of it. All names are UTF-8.
namespace zentrix::host {

struct file_task
{
    std::string input;
    std::vector<std::string> outputs;  ///< what each is, is up to the command; empty: not wanted
};

enum class file_state
{
    done,
    skipped,  ///< it was done before
    failed
};

struct file_outcome
{
    file_state state = file_state::done;
    std::string text;              ///< for standard output; after a failure: the reason
    std::string notes;             ///< for standard error, whole lines
    nlohmann::ordered_json facts;  ///< for --json
};

/// As lines of text between processes.
std::string line_of(const file_task& task);
std::string line_of(const file_outcome& outcome);
/// Throw  nlohmann::json::exception for other lines
file_task task_of(const std::string& line);
file_outcome outcome_of(const std::string& line);

}  // namespace zentrix::host
