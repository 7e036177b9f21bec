#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/estimation/certainty.h"
#include "host/estimation/search_task.h"

namespace zentrix::host {

/// What the end of the band moves a stationary point by.
struct band_end_effect
{
    std::vector<std::vector<double>> shifts;  ///< of the unknowns; each is one standard deviation [nm]
    std::string even_doubt, odd_doubt;        ///< why these coefficients are not determined; empty if they are
};

/// A phase object whose spectrum is cut off is not quite one any more: its modulus varies, and its phase may be
/// sharpest at wrong coefficients. All tiles of a crystal have the same such error, so that their scatter does not show
/// it. It changes with the end of the band, and what it changes by over the last tenth of the band counts as a standard
/// deviation.
/// odd      the criterion of the odd unknowns
/// found    the stationary point in the whole band
/// Returns  nothing if the search was stopped
std::optional<band_end_effect> band_end_shifts(search_run& run, const search_task& task,
                                               const std::vector<unknown>& unknowns, criterion odd,
                                               const imaging& found);

}  // namespace zentrix::host
