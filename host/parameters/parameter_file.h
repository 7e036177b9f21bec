#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>

#include "host/parameters/other_notation.h"
#include "host/parameters/parameter_set.h"

/// Sets of parameters as JSON. docs/parameters.md describes the format.
namespace zentrix::host {

/// Reads a set from a record that was written next to a result, from a file written by hand, and from the names of
/// other notations (NeXus, C10/C12/phi12).
/// Throws  file_error naming the entry that is not understood
parameter_set read_parameters(const std::filesystem::path& file);

/// The same for the contents of a file. `name` is its name in errors. Throws as read_parameters
parameter_set parse_parameters(const std::string& text, const std::filesystem::path& name);

/// The set as the object "parameters" of a record; read_parameters reads it again to the same numbers.
nlohmann::ordered_json as_json(const parameter_set& parameters);

/// The set with its coefficients in another notation. read_parameters reads it, too: angles and products with powers of
/// ten differ in the last bits at most.
/// frame  units and directions of the result; nm and degrees where it has no unit
nlohmann::ordered_json as_json(const parameter_set& parameters, other_notation notation, const file_frame& frame);

/// Writes a file that holds nothing but the set. Throws  file_error
void write_parameters(const std::filesystem::path& file, const parameter_set& parameters);

}  // namespace zentrix::host
