#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/batch/file_task.h"

/// One task after the other, in this process or in several. A task that fails does not stop the others.
namespace zentrix::host {

/// Does the work on one file. May throw; the text is then the reason of the failure.
using file_process = std::function<file_outcome(const file_task&)>;
/// Gets each outcome as soon as it is there, one at a time.
using file_listener = std::function<void(const file_task&, const file_outcome&)>;

/// Calls `process`. An exception becomes an outcome. What the call writes to std::cerr goes to the outcome's notes.
file_outcome attempt(const file_process& process, const file_task& task);

void process_here(const std::vector<file_task>& tasks, const file_process& process, const file_listener& listen);

/// The same by worker processes, each of which gets the next task when it has done one. A worker that ends in between
/// fails the file that it was working on, and another one takes its place.
/// workers  number of processes, 1 or more, which share the processors
/// words    the command line, without the program's name, that the workers parse; UTF-8
/// listen   is called on other threads
/// Throws   std::system_error when a worker cannot be started
void process_in_workers(const std::vector<file_task>& tasks, int workers, const std::vector<std::string>& words,
                        const file_listener& listen);

/// In a worker: the words of the command line that process_in_workers sent. Ends the process with EXIT_FAILURE when the
/// input has ended, as that of a worker does whose parent has. Throws  std::runtime_error for other input
std::vector<std::string> read_words_of_worker();
/// In a worker: does the tasks that come on standard input until it ends. `process` must not write to standard output.
void serve_tasks(const file_process& process);

}  // namespace zentrix::host
