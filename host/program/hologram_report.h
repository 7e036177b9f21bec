#pragma once

#include <string>

#include "host/program/hologram_wave.h"

/// What was found in a hologram, for a person and for programs.
namespace zentrix::program {

/// In lines. output  the name of the result
std::string text_of(const hologram_request& request, const hologram_outcome& done, const std::string& output);

/// Sideband, fringes, filter and resolution, and the report on unwrapping.
json as_json(const hologram_outcome& done);

/// "wave" or "phase in degrees"
std::string quantity_of(const hologram_request& request);

}  // namespace zentrix::program
