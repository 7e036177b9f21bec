#pragma once

#include <optional>
#include <vector>

#include "host/estimation/candidates.h"
#include "host/estimation/search_task.h"

namespace zentrix::host {

/// Where a phase object may be free of aberrations.
struct phase_minima
{
    std::vector<candidate> minima;     ///< of the variance of the modulus in the whole band, best first
    std::vector<candidate> proposals;  ///< odd coefficients by skewness of the phase, with the even ones of the best
                                       ///< minimum; greatest first; none without odd coefficients
    std::size_t starts = 0, agreeing = 0;
};

/// Even coefficients by least variance of the modulus, in growing bands from many starts; odd ones by greatest skewness
/// of the phase from several starts. Nothing if the search was stopped.
/// Throws  range_too_wide
std::optional<phase_minima> search_phase_minima(search_run& run, const search_task& task);

/// What a coefficient of a microscope that is far out of trim changes chi by in the whole band. [rad rms]
double usual_chi(lens::coefficient which);

}  // namespace zentrix::host
