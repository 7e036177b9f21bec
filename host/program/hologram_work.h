#pragma once

#include <optional>
#include <string>

#include "host/correction/unwrap_report.h"
#include "host/hologram/reconstruct.h"
#include "host/parameters/parameter_set.h"
#include "host/program/picture_options.h"
#include "host/program/session.h"
#include "host/program/step_times.h"

namespace zentrix::program {

/// What "zentrix hologram" is to do.
struct hologram_request
{
    std::string hologram, reference, output;
    std::string wave;  ///< file for the wave if `output` is a phase; empty: not wanted
    host::hologram_options options;
    host::parameter_set given;
    lens::aberrations coefficients;  ///< of the command line
    std::string params;              ///< file; empty: none
    bool wants_phase = false, wants_unwrapped = false, in_degrees = false;
    picture_options picture;
    bool timing = false;

    bool result_is_phase() const { return wants_phase || wants_unwrapped; }
    bool has_picture() const { return !picture.png.empty() || is_picture_name(output) || is_picture_name(wave); }
};

/// What the command computed.
struct hologram_outcome
{
    host::image_ref wave, result;  ///< the same unless the result is a phase
    host::hologram_report report;
    double hologram_pixel_nm = 0;  ///< 0: unknown
    std::optional<host::parameter_set> corrected;
    std::optional<host::unwrap_report> unwrapped;
    bool is_doubtful() const { return report.is_doubtful(); }
};

/// Reads the files and computes the wave: reconstruction, removal of aberrations, phase, unwrapping.
/// Throws  host::file_error; usage_error when aberrations are to be removed and pixel size or voltage are not known
hologram_outcome compute(const hologram_request& request, const global_options& global, step_times& times);

/// The report in lines for a person, and as JSON.
std::string text_of(const hologram_request& request, const hologram_outcome& done);
json as_json(const hologram_request& request, const hologram_outcome& done);

}  // namespace zentrix::program
