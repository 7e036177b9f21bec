#pragma once

#include <vector>

#include "host/estimation/candidates.h"
#include "host/estimation/search_task.h"

namespace zentrix::host {

/// Where an amplitude object may be in focus.
struct amplitude_foci
{
    std::vector<candidate> best;  ///< maxima of the sharpness in the whole band, sharpest first; their values are its
                                  ///< negatives
    double prominence = 0;        ///< the sharpness over its median in the range of C1, in the lowest band
    double tolerance = 0;         ///< how far parts of the wave may differ [nm]
    bool is_at_end = false;       ///< the best one, of the range of C1
};

/// Over the range of C1 in a low band, with astigmatism from the best of these, in growing bands.
/// unknowns  of C1 and A1, at least one
/// Throws    search_stopped; range_too_wide
amplitude_foci search_amplitude_foci(search_run& run, const search_task& task, const std::vector<unknown>& unknowns);

}  // namespace zentrix::host
