#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "host/parameters/parameter_set.h"

/// The entries of a JSON object of parameters. docs/parameters.md describes them.
namespace zentrix::host {

/// The parameters in an object.
/// Throws  std::invalid_argument naming the entry that is not understood
parameter_set parameters_in(const nlohmann::ordered_json& object);

/// Whether an entry of this name is a parameter.
bool is_parameter(const std::string& name);

/// "auto", "on" or "off".
const char* name_of(lens::damping envelope);

}  // namespace zentrix::host
