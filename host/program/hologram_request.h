#pragma once

#include <optional>
#include <string>

#include "host/hologram/reconstruct.h"
#include "host/parameters/parameter_set.h"
#include "host/parameters/record.h"
#include "host/program/many_files.h"
#include "host/program/picture_options.h"

namespace zentrix::program {

enum class hologram_result
{
    wave,
    phase,     ///< wrapped
    unwrapped  ///< phase
};

/// What "zentrix hologram" is to do.
struct hologram_request
{
    many_files files;
    std::string output, wave;  ///< files or folders; `wave` is for the wave besides a phase, empty: not wanted
    std::string reference, parameter_file;       ///< empty: none
    std::optional<host::recorded_input> vacuum;  ///< the reference
    host::hologram_options options;
    host::parameter_set given;       ///< on the command line
    host::parameter_set parameters;  ///< with those of the file
    hologram_result result = hologram_result::wave;
    bool in_degrees = false;
    picture_options picture;
    bool timing = false;

    bool result_is_phase() const { return result != hologram_result::wave; }
};

/// What decides on the result, besides parameters and files: for the record.
json options_as_json(const hologram_request& request);

}  // namespace zentrix::program
