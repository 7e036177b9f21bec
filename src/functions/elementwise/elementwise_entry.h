#pragma once

#include "entry/script_function.h"

namespace qorv::functions {

/// Script functions of single elements. docs/script-reference.md describes each function.
extern const dm::script_functions elementwise_functions;

}  // namespace qorv::functions
