#pragma once

#include "host/estimation/amplitude_search.h"
#include "host/estimation/estimate.h"
#include "host/estimation/phase_solution.h"

/// What a search has come to, as an answer: which coefficients are determined, and why not.
namespace zentrix::host {

/// Whether the variance of the modulus fits to an object that changes the phase only.
bool changes_phase_only(const phase_solution& found);

/// Fills in everything that follows from the solution.
/// result  has the noise, the optics of the call, and the coefficients that were searched with their start values
void judge(estimate& result, const phase_solution& found);
/// setup   the optics of the call: `result` may be the answer for a phase object
void judge(estimate& result, const lens::optics& setup, const amplitude_solution& found);

}  // namespace zentrix::host
