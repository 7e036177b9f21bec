#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/batch/file_runner.h"
#include "host/batch/output_files.h"
#include "host/objects/element.h"
#include "host/program/session.h"

namespace zentrix::program {

/// The options of commands that take many files.
struct many_files
{
    std::vector<std::string> inputs;  ///< files, folders and patterns
    std::vector<std::string> others;  ///< read for each input, such as a reference: not inputs of a folder or pattern
    std::string suffix;               ///< --suffix, see destination_of
    int jobs = 1;
    bool resumes = false;        ///< --continue: the command skips what host::is_recorded says
    bool prints_values = false;  ///< the texts are what the user wants: no bar in their place
};

/// The destination of results with such elements: a file or a folder. Files in a folder have the input's name, the
/// suffix and the ending that it may bring ("_c.mrc"); without it the input's ending, if such files can be written.
host::destination destination_of(const std::string& output, const many_files& files,
                                 host::element_class meaning = host::element_class::real);
/// The destination of pictures, "<input><suffix>.png" in a folder.
host::destination destination_of_pictures(const std::string& output, const many_files& files);

/// A name of a result at the destination, to check its ending before any work is done; empty if none is wanted.
std::string example_of(const host::destination& where);

/// Prints the outcome of a single task.
void print_outcome(const host::file_outcome& outcome, const global_options& global);

/// Processes all files and prints what comes of them: for one file its text; for several a line for each, or a bar on a
/// terminal, then what failed. With --json prints the facts, one line for each file. In a worker process, does the
/// tasks that come from the program that started it.
/// prepare  called once before any file is processed, and not in worker processes: for what would make all files fail
/// Throws   usage_error when several results would go to one file; as input_files, plan_outputs and `prepare`; as
///          `process` for a single file; std::runtime_error "2 of 10 files failed" after the others are done
void process_files(
    const many_files& files, const std::vector<host::destination>& destinations, const global_options& global,
    const host::file_process& process, const std::function<void()>& prepare = [] {});

}  // namespace zentrix::program
