#include "host/batch/file_task.h"

namespace zentrix::host {

using json = nlohmann::ordered_json;

namespace {

/// One line: line breaks in texts are escaped.
std::string line_of_json(const json& value) { return value.dump(-1, ' ', false, json::error_handler_t::replace); }

}  // namespace

std::string line_of(const file_task& task) { return line_of_json({{"input", task.input}, {"outputs", task.outputs}}); }

std::string line_of(const file_outcome& outcome)
{
    return line_of_json({{"state", static_cast<int>(outcome.state)},
                         {"text", outcome.text},
                         {"notes", outcome.notes},
                         {"facts", outcome.facts}});
}

file_task task_of(const std::string& line)
{
    const json read = json::parse(line);
    return {read.at("input"), read.at("outputs")};
}

file_outcome outcome_of(const std::string& line)
{
    const json read = json::parse(line);
    return {static_cast<file_state>(read.at("state").get<int>()), read.at("text"), read.at("notes"), read.at("facts")};
}

}  // namespace zentrix::host
