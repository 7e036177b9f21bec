#pragma once

#include <vector>

#include "host/estimation/band_model.h"
#include "host/estimation/search_run.h"

namespace zentrix::host {

/// A set of coefficients that a search has come to.
struct candidate
{
    imaging lens;
    double value = 0;           ///< of the criterion; less is better
    std::size_t followers = 1;  ///< starts that led here
};

/// Moves each candidate to the nearest minimum of the variance of the modulus, or maximum of the skewness of the phase
/// (whose negative is the value), and sorts them, best first. Only the unknowns of the model are changed: coefficients
/// that the model does not have are those of its base for all candidates.
/// usual  null, or the size of each unknown [nm] that is plausible; the variance of the modulus is multiplied by
///        1 + 1e-3 * the sum of (unknown / usual)^2, so that unknowns which hardly change it do not drift far away
/// Returns false if the search was stopped
bool descend_all(search_run& run, const band_model& model, criterion what, std::vector<candidate>& candidates,
                 const search_limits& limits, const std::vector<double>* usual = nullptr);

/// Joins candidates whose aberration functions in the model's band differ by less than `distance` [rad rms] with the
/// better one, and keeps the `most` best. They must be sorted.
void join_close(const band_model& model, std::vector<candidate>& candidates, double distance, std::size_t most);

}  // namespace zentrix::host
