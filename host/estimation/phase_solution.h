#pragma once

#include <string>
#include <vector>

#include "host/estimation/certainty.h"
#include "host/estimation/search_task.h"

namespace zentrix::host {

/// What the search for a phase object has come to.
struct phase_solution
{
    imaging lens;
    std::vector<unknown> unknowns;
    matrix covariance{0};               ///< of the unknowns, with what shifts them together [nm^2]
    matrix chi_covariance{0};           ///< of the variables of the last band, without that [rad^2]
    matrix chi_of_shifts{0};            ///< what a wrong envelope and the end of the band add to them [rad^2]
    std::vector<double> chi_per_unit;   ///< rms of chi in the band that 1 nm of each unknown makes
    std::string even_doubt, odd_doubt;  ///< why these coefficients are not determined; empty if they are
    bool used_skewness = false;
    bool has_signal = true;  ///< wave_spectrum::has_signal
    double resolution = 0;
    double misfit = 0;     ///< variance of the modulus beyond noise, over that of an arbitrary defocus
    double scattered = 0;  ///< wave_spectrum::scattered
    std::size_t starts = 0, agreeing = 0;
};

/// Fills in the coefficients, their covariances, and a doubt if they are implausible.
/// last    the model of the whole band; effects on chi are those in this band
/// of      the model that `found` is of, with the same unknowns
/// shifts  of the unknowns by a wrong envelope and by the end of the band, each one standard deviation [nm]
void describe(phase_solution& solution, const search_task& task, const band_model& last, const band_model& of,
              const stationary_point& found, const std::vector<std::vector<double>>& shifts);

}  // namespace zentrix::host
