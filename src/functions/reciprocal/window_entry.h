#pragma once

#include "entry/script_function.h"

namespace qorv::functions {

/// Apodisation windows. docs/script-reference.md describes each function.
extern const dm::script_functions window_functions;

}  // namespace qorv::functions
