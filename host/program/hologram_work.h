#pragma once

#include <optional>

#include "host/batch/file_task.h"
#include "host/program/hologram_request.h"
#include "host/program/kept_session.h"

namespace zentrix::program {

/// Computes the wave or the phase of one hologram, or of a stack, for each call. The reference is transformed once.
class hologram_work
{
  public:
    /// The arguments must outlive this object.
    hologram_work(const hologram_request& request, const global_options& global)
        : request_{request}, global_{global}, session_{global}
    {}

    /// Transforms the reference, if there is one, before the first file: when it is bad, no file can be done.
    /// Throws  host::file_error
    void prepare();

    /// task  with three outputs: the result, its picture, the wave
    /// Throws  host::file_error, host::script_error, usage_error when aberrations are to be removed and the pixel size
    ///         or the voltage is not known
    host::file_outcome operator()(const host::file_task& task);

  private:
    /// That of the reference; null: none.
    const host::vacuum_wave* vacuum(step_times& times);

    const hologram_request& request_;
    const global_options& global_;
    kept_session session_;
    std::optional<host::vacuum_wave> vacuum_;
    step_times preparing_;  ///< counts for the first file
};

}  // namespace zentrix::program
