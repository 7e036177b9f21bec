#pragma once

#include <string>
#include <vector>

#include "host/batch/file_task.h"
#include "host/program/kept_session.h"
#include "host/program/many_files.h"

namespace zentrix::program {

/// Stands in the arguments of a call for the file that the call is made with.
inline constexpr char each_file[] = "{}";

/// What "zentrix call" is to do.
struct call_request
{
    std::string name;
    std::vector<std::string> words;
    std::vector<std::string> outputs;  ///< FILE or name=FILE
    many_files files;                  ///< --each; no inputs: a single call
};

/// FILE of "FILE" or "name=FILE".
std::string file_of_output(const std::string& output);

/// Calls the function once for each file.
class call_work
{
  public:
    /// The arguments must outlive this object.
    call_work(const call_request& request, const global_options& global)
        : request_{request}, global_{global}, session_{global}
    {}

    /// task  its input replaces each_file in the words; its outputs are the files of the request's outputs
    /// Throws  host::file_error, host::script_error
    host::file_outcome operator()(const host::file_task& task);

  private:
    const call_request& request_;
    const global_options& global_;
    kept_session session_;
};

}  // namespace zentrix::program
