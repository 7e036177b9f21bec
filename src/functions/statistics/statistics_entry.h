#pragma once

#include "entry/script_function.h"

namespace qorv::functions {

/// Sums, extremes and radial means. docs/script-reference.md describes each function.
extern const dm::script_functions statistics_functions;
/// The centre of mass.
extern const dm::script_functions center_of_mass_functions;

}  // namespace qorv::functions
