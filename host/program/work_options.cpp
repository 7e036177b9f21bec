#include "host/program/work_options.h"

#include <CLI/CLI.hpp>

namespace zentrix::program {

void add_jobs_option(CLI::App& command, many_files& files)
{
    command.add_option("--jobs", files.jobs, "Processes that work at the same time (default: 1)")
        ->check(CLI::Range(1, 256).description(""))
        ->type_name("NUMBER")
        ->group("Many files");
}

void add_result_options(CLI::App& command, many_files& files)
{
    command
        .add_option("--suffix", files.suffix,
                    "Added to the names of results in a folder: _c makes a_c.npy of a.npy, _c.mrc a_c.mrc")
        ->type_name("TEXT")
        ->group("Many files");
    command
        .add_flag("--continue", files.resumes,
                  "Skip files whose result is complete: its record has the same input, parameters and options")
        ->group("Many files");
    add_jobs_option(command, files);
}

void add_timing_option(CLI::App& command, bool& wanted)
{
    command.add_flag("--timing", wanted, "Print how long each step takes, on standard error (in seconds with --json)");
}

}  // namespace zentrix::program
