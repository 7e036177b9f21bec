#pragma once

#include <string>

#include "host/estimation/estimate.h"
#include "host/parameters/parameter_set.h"
#include "host/program/json.h"
#include "host/program/session.h"

/// What "zentrix estimate" prints and writes.
namespace zentrix::program {

/// The parameters with the coefficients that were determined.
host::parameter_set parameters_with(const host::parameter_set& settled, const host::estimate& found);

/// "command", "parameters", "estimate" and so on: host::read_parameters reads it, and --json prints it.
/// Throws  host::file_error when the wave's file cannot be read
json record_of(const std::string& wave, const host::parameter_set& parameters, const host::estimate& found,
               const global_options& global);

/// One line for each coefficient, then criterion, noise, evaluations and time.
std::string table_of(const host::estimate& found);

}  // namespace zentrix::program
