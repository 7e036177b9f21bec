#pragma once

#include "entry/script_function.h"

namespace qorv::functions {

/// Radial weights. docs/script-reference.md describes each function.
extern const dm::script_functions weight_functions;
/// Masks in reciprocal space.
extern const dm::script_functions mask_functions;

}  // namespace qorv::functions
