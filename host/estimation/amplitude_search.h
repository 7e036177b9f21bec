#pragma once

#include <optional>

#include "host/estimation/search_run.h"
#include "host/estimation/search_task.h"

namespace zentrix::host {

/// What the search for an amplitude object has come to.
struct amplitude_solution
{
    lens::aberrations lens;               ///< C1 and A1, the others as at the start
    std::complex<double> a1_uncertainty;  ///< standard deviations of the components [nm]
    double c1_uncertainty = 0;            ///< standard deviation [nm]
    std::size_t agreeing = 0;             ///< how many of the four quarters have their focus near the result
    bool is_at_end = false;               ///< of the range of C1
    bool is_maximum = true;               ///< the sharpness falls in all directions
    bool has_rival = false;               ///< another focus is as sharp in some quarters
    double prominence = 0;                ///< the criterion over its median in the range
    double contrast_in_focus = 0;         ///< variance of the modulus beyond noise, over that far from this focus
    double chi_uncertainty = 0;           ///< standard deviation of chi from C1 and A1, rms to the resolution [rad]
    double c1_chi = 0;                    ///< of that, from C1 alone [rad]
    double a1_chi = 0;                    ///< of that, from the less sure component of A1 alone [rad]
    double resolution = 0;
};

/// C1, and A1 if it is free, by the greatest Tamura coefficient of the gradient of the modulus: for the whole wave,
/// then for each quarter. Nothing if the search was stopped.
/// Throws  range_too_wide
std::optional<amplitude_solution> search_amplitude_object(search_run& run, const search_task& task);

}  // namespace zentrix::host
