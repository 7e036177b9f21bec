#pragma once

#include <optional>

#include "host/estimation/phase_solution.h"
#include "host/estimation/search_run.h"

namespace zentrix::host {

/// Even coefficients by least variance of the modulus, in growing bands from many starts; odd ones by greatest skewness
/// of the phase, or by the variance of the modulus where that is surer. Nothing if the search was stopped.
/// Throws  range_too_wide
std::optional<phase_solution> search_phase_object(search_run& run, const search_task& task);

}  // namespace zentrix::host
