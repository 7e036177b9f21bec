#pragma once

#include <string>
#include <vector>

#include "host/engine/function_table.h"

namespace zentrix::program {

/// The names of the library's script functions, each once, in the order of their registration.
std::vector<std::string> function_names(const host::function_table& functions);

/// The name with which a script calls the function: "ZXMedianFilter" also for "MedianFilter". Functions of the host
/// have other names, which are returned as they are.
/// Throws  host::script_error with a similar name when there is no such function
std::string full_function_name(const host::function_table& functions, const std::string& name);

}  // namespace zentrix::program
