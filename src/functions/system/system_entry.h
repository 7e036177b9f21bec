#pragma once

#include "entry/script_function.h"

namespace qorv::functions {

/// FFT sizes, type codes, threads and folders. docs/script-reference.md describes each function.
extern const dm::script_functions utility_functions;
/// Commands and documents.
extern const dm::script_functions process_functions;

}  // namespace qorv::functions
