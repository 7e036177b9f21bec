#pragma once

#include "entry/script_function.h"

namespace qorv::functions {

/// Choice of files and raw files. docs/script-reference.md describes each function.
extern const dm::script_functions file_functions;
/// Sorting of numbered names.
extern const dm::script_functions name_functions;

}  // namespace qorv::functions
