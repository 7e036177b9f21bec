#pragma once

#include "entry/script_function.h"

namespace qorv::functions {

/// Rank filters and medians. docs/script-reference.md describes each function.
extern const dm::script_functions rank_functions;

}  // namespace qorv::functions
