#pragma once

#include "entry/script_function.h"

namespace qorv::functions {

/// Transposed volumes. docs/script-reference.md describes each function.
extern const dm::script_functions transpose_functions;

}  // namespace qorv::functions
