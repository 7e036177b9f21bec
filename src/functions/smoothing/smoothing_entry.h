#pragma once

#include "entry/script_function.h"

namespace qorv::functions {

/// Moving averages and the Gaussian blur. docs/script-reference.md describes each function.
extern const dm::script_functions smoothing_functions;

}  // namespace qorv::functions
