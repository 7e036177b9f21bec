#pragma once

#include <optional>
#include <string>

#include "host/batch/file_task.h"
#include "host/program/kept_session.h"
#include "host/program/many_files.h"
#include "host/program/mask_file.h"
#include "host/program/picture_options.h"

namespace zentrix::program {

/// What "zentrix unwrap" is to do.
struct unwrap_request
{
    many_files files;
    std::string phase;               ///< the file that is being unwrapped
    std::string output;              ///< its result, or the folder of all
    std::string mask;                ///< file; empty: none
    std::string cuts;                ///< file or folder; empty: not wanted
    std::optional<double> pixel_nm;  ///< instead of the file's
    std::int32_t box = 0;
    bool is_wave = false;
    picture_options picture;
    bool timing = false;
};

/// Unwraps the phase of one file for each call, a volume plane by plane.
class unwrap_work
{
  public:
    /// The arguments must outlive this object.
    unwrap_work(const unwrap_request& request, const global_options& global)
        : request_{request}, global_{global}, session_{global}
    {}

    /// Reads the mask, if there is one, before the first file: when it is bad, no file can be done.
    /// Throws  host::file_error
    void prepare() { mask(); }

    /// task  with three outputs: the result, its picture, the cuts
    /// Throws  host::file_error, host::script_error
    host::file_outcome operator()(const host::file_task& task);

  private:
    /// Null: none.
    const mask_file* mask();

    const unwrap_request& request_;
    const global_options& global_;
    kept_session session_;
    std::optional<mask_file> mask_;
};

}  // namespace zentrix::program
