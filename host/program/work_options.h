#pragma once

#include "host/program/many_files.h"
#include "host/program/parser.h"

/// Options of the commands that work on many files. The variables that they set must outlive `command`.
namespace zentrix::program {

/// Adds --jobs.
void add_jobs_option(CLI::App& command, many_files& files);
/// Adds --suffix and --continue, for commands that write results.
void add_result_options(CLI::App& command, many_files& files);

/// Adds the option --timing.
void add_timing_option(CLI::App& command, bool& wanted);

}  // namespace zentrix::program
