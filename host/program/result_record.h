#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/batch/file_task.h"
#include "host/parameters/record.h"
#include "host/program/many_files.h"
#include "host/program/picture_options.h"

/// Results with their records, see host/parameters/record.h.
namespace zentrix::program {

/// Files that are made together and have one record: those of the task that are wanted.
std::vector<std::filesystem::path> results_of(const host::file_task& task);

/// The command line that makes the results of one task: that of the whole batch with the task's files in place of all
/// files. `outputs` are the options of the task's outputs, "-o", "--png".
std::vector<std::string> command_for(const host::file_task& task, const many_files& files,
                                     const std::vector<std::string>& outputs, const global_options& global);

/// host::program_facts of this program with its library. Throws  host::file_error, host::script_error
const json& program_with_library(const global_options& global);

/// As host::write_record. If it fails, a former record does not stay, because it would describe other results.
void finish_with_record(const std::filesystem::path& record, const host::provenance& made,
                        const std::vector<host::recorded_result>& results);

/// The outcome for a result that host::is_recorded.
host::file_outcome done_before(const host::file_task& task);

}  // namespace zentrix::program
