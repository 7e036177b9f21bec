#pragma once

#include <optional>

#include "host/correction/unwrap_report.h"
#include "host/program/hologram_request.h"
#include "host/program/step_times.h"

/// From a hologram to what is written: wave, aberrations, phase.
namespace zentrix::program {

struct hologram_outcome
{
    host::image_ref wave, result;  ///< the same unless the result is a phase
    host::image_ref radians;       ///< the result, but never in degrees
    host::hologram_report report;
    double hologram_pixel_nm = 0;  ///< 0: unknown
    bool is_corrected = false;
    std::optional<host::unwrap_report> unwrapped;
};

/// Sets the pixel size and the voltage that the command line or the file of parameters gives instead of those of the
/// hologram's file.
void settle_scale(host::image& hologram, const hologram_request& request);

/// The aberrations to remove with the voltage, without a pixel size, which is that of the wave. Nothing if all are 0.
/// hologram  after settle_scale; only its scale is used
/// Throws  usage_error when the pixel size or the voltage is not known
std::optional<host::parameter_set> parameters_to_remove(const hologram_request& request, const host::image& hologram);

/// Reconstructs the wave, removes aberrations, computes and unwraps the phase, as the request has it.
/// vacuum   of the reference; null: none
/// removed  parameters_to_remove
/// Throws  host::script_error
hologram_outcome compute(host::engine& engine, const hologram_request& request, const host::image_ref& hologram,
                         const host::vacuum_wave* vacuum, const std::optional<host::parameter_set>& removed,
                         step_times& times);

}  // namespace zentrix::program
