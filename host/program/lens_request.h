#pragma once

#include <optional>
#include <string>

#include "host/parameters/parameter_set.h"
#include "host/program/many_files.h"
#include "host/program/picture_options.h"
#include "host/program/sweep.h"
#include "host/program/wave_file.h"

namespace zentrix::program {

/// What "zentrix correct" and "zentrix aberrate" are to do.
struct lens_request
{
    lens::direction way = lens::direction::remove;
    std::string command;
    many_files files;
    std::string output;
    host::parameter_set given;      ///< on the command line
    std::string parameter_file;     ///< --params; empty: none
    host::parameter_set from_file;  ///< what it contains
    std::optional<sweep> swept;
    nan_rule not_finite = nan_rule::refuse;
    picture_options picture;
    bool timing = false;
};

/// The parameters for one wave, and where its scale comes from.
struct settled_parameters
{
    host::parameter_set parameters;
    /// Which of pixel size and voltage are not from the command line: "pixel 0.02 nm from wave.mrc"; may be empty.
    std::string origin;
    /// Differences from the wave's own file, whole lines; may be empty.
    std::string notes;
};

/// The parameters of the command line, else of the file of --params, else the pixel size and voltage of the wave's
/// file. Pixels that are not square, not in a unit of length, or not plausible are not used.
/// wave  the name of the wave's file, for messages
/// Throws  usage_error when the pixel size or the voltage is missing, with the reason why the file's is not used
settled_parameters settle(const lens_request& request, const std::string& wave, const host::calibration& scale);

/// The scale of the result: that of the wave, with the pixel size and voltage that were used.
host::calibration scale_of_result(const host::calibration& of_wave, const host::parameter_set& used);

}  // namespace zentrix::program
