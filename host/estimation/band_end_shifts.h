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

/// A stationary point in a part of the band.
struct settled_in_band
{
    double part;  ///< of the signal's resolution; may be more than 1
    band_model model;
    stationary_point point;
};

/// Widens the band, up to Nyquist, as long as that changes the even coefficients by more than their noise. The part of
/// the signal beyond the resolution is small, but a strong phase object is not one without it.
/// first  in the whole band
/// odd    the criterion of the odd unknowns
/// Returns  nothing if the search was stopped
std::optional<settled_in_band> widen_band(search_run& run, const search_task& task, criterion odd,
                                          settled_in_band first);

/// A phase object whose spectrum is cut off is not quite one any more: its modulus varies, and its phase may be
/// sharpest at wrong coefficients. All tiles of a crystal have the same such error, so that their scatter does not show
/// it. It changes with the end of the band, and what it changes by over the last tenth of the band counts as a standard
/// deviation.
/// Returns  nothing if the search was stopped
std::optional<band_end_effect> band_end_shifts(search_run& run, const search_task& task, criterion odd,
                                               const settled_in_band& found);

}  // namespace zentrix::host
